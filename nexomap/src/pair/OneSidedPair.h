// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/PairSteps.h"

namespace nexomap {

/// Metric pose of two panoramas of which exactly one carries range: its features are points in space, and the
/// other's bearings to them tell where it stands, length included.
std::optional<PairPose> solveOneSided(const Panorama& panorama_0, const Panorama& panorama_1,
                                      const std::vector<Correspondence>& matches, PairRandom& random,
                                      Evidence* evidence);

} // namespace nexomap
