// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/StationSurvey.h"
#include "nexomap/src/merge/SurfaceCells.h"

#include <functional>

namespace nexomap {

/// What decides which points of a station belong to the cloud.
struct PointRules
{
    std::vector<const SeenSpace*> others; ///< stations that may see through its points
    const CeilingMap* ceilings = nullptr; ///< of its storey; null: nothing is taken away
    double cell_m = 0.01;
    bool interpolate = false;
};

/// Calls `take` with the wanted surfaces of a station in the world, coloured, some at a time and always in
/// the same order.
void forEachWantedSurfel(const MergeStation& station, const RangePyramid& pyramid,
                         const StationColours& colours, const PointRules& rules,
                         const std::function<void(const std::vector<Surfel>&)>& take);

} // namespace nexomap
