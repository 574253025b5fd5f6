// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/MetricRansac.h"

namespace nexomap {

/// How far a match lies from the epipolar constraint of a pose, radians: first-order angle by which both
/// bearings must move (Sampson's distance, on the sphere). Negative when the point would stand behind a
/// camera.
double epipolarAngle(const RigidPose& pose, const Correspondence& match);

/// Indices of the matches within `tolerance` radians.
std::vector<int> epipolarInliers(const std::vector<Correspondence>& matches, const RigidPose& pose,
                                 double tolerance);
/// Indices of the matches that the rotation alone explains within `tolerance` radians.
std::vector<int> rotationInliers(const std::vector<Correspondence>& matches, const Eigen::Matrix3d& R,
                                 double tolerance);

constexpr double kEpipolarTolerance = 0.3 * 3.14159265358979323846 / 180.0;

/// Relative pose up to scale, |t| = 1, of two nearly upright panoramas from bearings alone: RANSAC over the
/// upright three-point solver, new best ones refined with all degrees of freedom (locally optimised).
/// Where the walls are told, every fourth draw takes one of the four headings that lay them onto each other.
/// @param skip        correspondences left out, or empty: flags by index
/// @param walls_turn  heading of panorama 1's walls against panorama 0's, radians, quarter turns aside
std::optional<PoseHypothesis> estimateBearingPose(const std::vector<Correspondence>& matches,
                                                  const std::vector<bool>& skip,
                                                  std::optional<double> walls_turn, PairRandom& random);

/// The same from one rotation, for two panoramas taken in one place; t is zero.
std::optional<PoseHypothesis> estimateRotation(const std::vector<Correspondence>& matches);

} // namespace nexomap
