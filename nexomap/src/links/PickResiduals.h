// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/links/HandMadePose.h"

namespace nexomap {

/// How well one picked pair agrees with the pose that was found from all.
struct PickResidual
{
    PickedPair pick;
    double degrees =
        0.0; ///< between where the pose puts the second panorama's pick in the first, and the pick
    double metres = 0.0;   ///< between the two points in space; 0: not both have a range
    bool left_out = false; ///< the pose does not rest on it
};

/// One entry a pick, in their order.
std::vector<PickResidual> pickResiduals(const Panorama& panorama_0, const Panorama& panorama_1,
                                        const std::vector<PickedPair>& picks, const PairPose& pose);

} // namespace nexomap
