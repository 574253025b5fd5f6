// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// What one range map alone says about the place of a panorama without range.
struct OneSidedSight
{
    int lines = 0;        ///< lines of sight to matched points, judged
    double crossed = 0.0; ///< of them, the share that passes through a measured surface
    double open = 0.0;    ///< of them, the share that runs in what the range map saw through, all the way
    int places = 0;       ///< cells of about 15 degrees that the panorama without range must show
    double silent = 0.0;  ///< of them, the share in which next to nothing matches
};

/// Follows the lines of sight from the other camera to matched points through the range map, and asks where
/// features that it certainly sees, from a like side and distance, found no partner.
/// @param ranged           panorama 1; the other one (0) has no range
/// @param pose_0_from_1    to be judged
/// @param matches          found where the pose says they must lie; bearing_1 belongs to `ranged`
OneSidedSight oneSidedSight(const Panorama& ranged, const RigidPose& pose_0_from_1,
                            const std::vector<Correspondence>& matches);

} // namespace nexomap
