// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// What the range maps say about a relative pose, as shares of the samples that both could see.
struct RangeAgreement
{
    int samples = 0;        ///< that fell on a measured cell, both directions
    double agree = 0.0;     ///< on the other's surface
    double violation = 0.0; ///< in front of it: where the other saw through
    double occluded = 0.0;  ///< behind it: says nothing
    double covisible = 0.0; ///< mean over the directions of agree
};

/// Projects samples of each range map into the other, level surfaces left out.
/// @param company_m  what stands nearer to its camera may have been carried along, and is no violation
RangeAgreement checkRanges(const RangeMap& map_0, const RangeMap& map_1, const RigidPose& pose_0_from_1,
                           double company_m = 0.0);

} // namespace nexomap
