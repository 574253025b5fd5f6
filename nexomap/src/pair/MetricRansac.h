// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/PairRandom.h"
#include "nexomap/src/pair/RigidPose.h"

#include <optional>

namespace nexomap {

struct PoseHypothesis
{
    RigidPose pose;
    std::vector<int> inliers; ///< ascending indices of the correspondences
};

/// Least-squares rotation and translation between two point sets (Umeyama 1991, without scale).
/// @param points_0, points_1  same size, at least 3
/// @return nullopt when the points lie on one line
std::optional<RigidPose> alignPoints(const std::vector<Eigen::Vector3d>& points_0,
                                     const std::vector<Eigen::Vector3d>& points_1);

/// How far two observations of one point may lie apart, metres: range noise and what a lean of a few tenths
/// of a degree does at that distance.
double pointTolerance(const Correspondence& match);

/// Inliers of a pose among the matches with both ranges.
std::vector<int> rangedInliers(const std::vector<Correspondence>& matches, const RigidPose& pose,
                               double widening);

/// Relative pose of two nearly upright panoramas from matches with ranges on both sides: RANSAC over pairs of
/// matches (heading and translation), each new best one polished with all six degrees of freedom on its
/// inliers (Chum et al. 2003, locally optimised).
/// @param skip  correspondences left out, or empty: flags by index
/// @param level_0, level_1  turn each panorama's vertical onto z
std::optional<PoseHypothesis>
estimateMetricPose(const std::vector<Correspondence>& matches, const std::vector<bool>& skip,
                   PairRandom& random, const Eigen::Matrix3d& level_0 = Eigen::Matrix3d::Identity(),
                   const Eigen::Matrix3d& level_1 = Eigen::Matrix3d::Identity());

} // namespace nexomap
