// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/Reliability.h"
#include "nexomap/src/PairPose.h"

namespace nexomap {

/// Below this a pose is not reported.
constexpr double kMinReliability = 0.5;

/// The pose of panorama_1 in panorama_0 from given matches, with the evidence for it, accepted or not. What
/// `matchPair` does after matching; benchmarks look at the evidence.
std::optional<PairPose> solvePair(const Panorama& panorama_0, const Panorama& panorama_1,
                                  const std::vector<Correspondence>& matches, Evidence* evidence);

/// Tentative matches of two panoramas.
std::vector<Correspondence> matchFeatures(const Panorama& panorama_0, const Panorama& panorama_1);

/// The same relation seen from the other panorama.
PairPose inverted(const PairPose& pose);

} // namespace nexomap
