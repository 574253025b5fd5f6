// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/links/HandMadePose.h"

namespace nexomap {

/// Relative pose up to scale from picked pairs alone, for panoramas without range. Both stand nearly upright:
/// every heading is tried, the baseline is the one least at odds with the epipolar constraint
/// a . (t x (Rz b)) = 0 (Fraundorfer, Tanskanen and Pollefeys 2010), and each heading that leaves a minimum
/// is refined with the lean let free under a prior. Three pairs leave several answers that fit alike: the
/// reliability is the best answer's share of the probability, at most 0.5 for three pairs. Of five and more,
/// one that contradicts the others is left out. Pairs that one turn explains give a pose of rotation only.
/// Deterministic.
/// @return nullopt for fewer than three pairs in different directions, or when no pose fits
std::optional<PairPose> poseFromBearingPicks(const std::vector<PickedPair>& picks);

} // namespace nexomap
