// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Geometry.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// Metres in the map's nearest cell along a direction; 0 without a return.
double rangeAlong(const RangeMap& map, const Eigen::Vector3d& direction);

/// Whether the way from the panorama's centre to a point of its frame is open: at most half of a cone of 2
/// degrees meets a surface more than 10 cm before the point.
bool isOpen(const RangeMap& map, const Eigen::Vector3d& point);

/// Whether two stations see each other: the ray from eye to eye, or the one to half the height above the
/// floor below the other, is open in both maps. False when either has no range map.
/// @param up  the vertical in the world frame
bool seeEachOther(const Panorama& panorama_0, const Pose& world_from_0, const Panorama& panorama_1,
                  const Pose& world_from_1, const Eigen::Vector3d& up);

/// Height of the station above its floor; 1.5 m when the panorama does not know.
double heightOf(const Panorama* panorama);

} // namespace nexomap
