// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/PairRandom.h"
#include "nexomap/src/pair/Reliability.h"
#include "nexomap/src/PairPose.h"

namespace nexomap {

/// Errors of model and calibration on top of what noise explains. Measured on made-up buildings: the squared
/// error in units of the handed-out covariance then has a median of 2 to 3 where 5.3 would be exact.
constexpr double kInformationShare = 0.5;

/// Metric pose of two panoramas with range maps.
std::optional<PairPose> solveMetric(const Panorama& panorama_0, const Panorama& panorama_1,
                                    const std::vector<Correspondence>& matches, PairRandom& random,
                                    Evidence* evidence);

/// Pose up to scale, or rotation alone, from bearings.
/// @param walls_turn  by how much panorama 1's walls are turned against panorama 0's, radians, a quarter turn
///                    more or less; none where either picture shows no right angles
std::optional<PairPose> solveBearings(const std::vector<Correspondence>& matches,
                                      std::optional<double> walls_turn, PairRandom& random,
                                      Evidence* evidence);

/// One flag a match, set for the listed ones.
std::vector<bool> flagged(std::size_t count, const std::vector<int>& indices);
/// The inliers as they are handed out.
std::vector<PairInlier> pairInliers(const std::vector<Correspondence>& matches,
                                    const std::vector<int>& inliers);
/// Descriptor distance that nine in ten of the inliers stay below.
int alikeDistance2(const std::vector<Correspondence>& matches, const std::vector<int>& inliers);

} // namespace nexomap
