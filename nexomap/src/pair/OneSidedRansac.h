// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/MetricRansac.h"

#include <array>

namespace nexomap {

/// Poses of an upright camera that sees two known points in two directions (Kukelova et al. 2010, closed form
/// for a known vertical). Heading and translation; both points stand in front of the camera.
/// @param bearings  unit vectors in the camera's frame 0
/// @param points    metres, frame 1
/// @return none, one or two poses 0 from 1
std::vector<RigidPose> solveUprightAbsolute(const std::array<Eigen::Vector3d, 2>& bearings,
                                            const std::array<Eigen::Vector3d, 2>& points);

/// How far the match's bearing in panorama 0 lies from its point in panorama 1, in units of what is
/// tolerated: squared. The tolerance is that of both bearings and of the range, as seen from panorama 0.
/// Infinite where there is no range_1, or behind the camera.
double oneSidedError2(const RigidPose& pose, const Correspondence& match);

/// Indices of the matches within `widening` times the tolerance.
std::vector<int> oneSidedInliers(const std::vector<Correspondence>& matches, const RigidPose& pose,
                                 double widening);

/// Metric pose of two nearly upright panoramas of which only number 1 carries range: RANSAC over the upright
/// two-point solver, new best ones refined with six degrees of freedom (locally optimised, Chum et al. 2003).
/// @param skip  correspondences left out, or empty: flags by index
std::optional<PoseHypothesis> estimateOneSidedPose(const std::vector<Correspondence>& matches,
                                                   const std::vector<bool>& skip, PairRandom& random);

} // namespace nexomap
