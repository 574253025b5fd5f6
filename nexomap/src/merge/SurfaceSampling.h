// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/FrontEnd.h"
#include "nexomap/src/Geometry.h"

#include <functional>
#include <vector>

namespace nexomap {

/// A station as the merge sees it.
struct MergeStation
{
    const Panorama* panorama = nullptr;
    Pose pose; ///< world_from_pano
    Eigen::Vector3d up = Eigen::Vector3d::UnitZ();
    double ceiling_m = 0.0; ///< above the station; 0: none found
};

/// Height of the ceiling above a station: the strongest level surface well above the horizon, by its area; 0
/// without one.
double ceilingAbove(const Panorama& panorama, const Pose& pose, const Eigen::Vector3d& up);

/// Calls `take` with every range cell's world point, its range and its direction in the panorama, leaving out
/// depth edges and surfaces seen at less than 8 degrees.
void forEachSurfacePoint(const MergeStation& station,
                         const std::function<void(const Eigen::Vector3d& world, double range_m,
                                                  const Eigen::Vector3d& direction)>& take);

/// Whether a world point belongs to the ceiling (or lies above it) by the nearest station that has one.
bool isCeiling(const std::vector<MergeStation>& stations, const Eigen::Vector3d& world);

} // namespace nexomap
