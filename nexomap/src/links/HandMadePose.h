// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/PairPose.h"
#include "nexomap/src/Panorama.h"

#include <optional>
#include <vector>

namespace nexomap {

/// A feature that a person marked in both panoramas: azimuth and polar angle in each, radians.
struct PickedPair
{
    double azimuth_0 = 0.0, polar_0 = 0.0;
    double azimuth_1 = 0.0, polar_1 = 0.0;
};

/// Relative pose from picked pairs and the range at them: absolute orientation (Umeyama 1991, without scale)
/// of the best triple's consensus, then least squares with the noise of picks and ranges and the prior that
/// both panoramas stand upright; then the range pictures laid onto each other where the pairs bear it out.
/// Deterministic.
/// @return nullopt when fewer than three pairs have a range on both sides, or when they are degenerate: all
/// within a few degrees, or all on one line
std::optional<PairPose> poseFromPicks(const Panorama& panorama_0, const Panorama& panorama_1,
                                      const std::vector<PickedPair>& picks);

} // namespace nexomap
