// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Geometry.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// The share of what one panorama measured that the other measured too if they stand as the poses say, the
/// mean of both directions. Range maps may be packed. 0 without both.
double predictedCovisibility(const RangeMap& map_0, const RangeMap& map_1, const Pose& pose_0_from_1);

} // namespace nexomap
