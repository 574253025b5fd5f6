// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/PairPose.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// Makes a pose without scale metric where one of its panoramas carries range: the median, over the inliers,
/// of the measured range over the triangulated one.
/// @return false, and the pose as it was: metric already, rotation only, fewer than three usable inliers, or
/// ranges that contradict each other
bool giveScaleByRanges(const Panorama& panorama_0, const Panorama& panorama_1, PairPose* pose);

} // namespace nexomap
