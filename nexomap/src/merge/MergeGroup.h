// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

struct MergeOptions
{
    bool indoor = false;    ///< take ceilings away and interpolate
    bool pts = false;       ///< also write the cloud as PTS text
    bool binary = false;    ///< also write it in binary form
    int density = 2;        ///< 0: 5 cm cells, 1: 2 cm, 2: 1 cm
    bool cloud_map = false; ///< the map is the coloured cloud; otherwise the black-and-white plan
    std::size_t memory_bytes = std::size_t(192) << 20; ///< for measurements; what is more goes to disk
};

/// Merges the range of the largest group into one cloud, writes the map's files and notes in every node of
/// the group where it stands on the plan. Of the range pictures one is in memory at a time.
/// @return one line for each panorama that was left out, as it has no lidar or it cannot be read
/// @throws Failure(NEXOMAP_CANNOT_SOLVE) when no panorama of the group has range,
/// Failure(NEXOMAP_CANNOT_WRITE);
///         then the working folder is as it was
std::vector<std::string> mergeGroup(Model& model, const Workplace& workplace, const MergeOptions& options);

} // namespace nexomap
