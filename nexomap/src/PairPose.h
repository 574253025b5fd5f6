// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Panorama.h"

#include <Eigen/Geometry>

#include <optional>
#include <string>
#include <vector>

namespace nexomap {

using Matrix6d = Eigen::Matrix<double, 6, 6>;

/// One matched feature: where both panoramas see it.
struct PairInlier
{
    Eigen::Vector3f bearing_0, bearing_1;   ///< unit vectors, each in its panorama's frame
    float range_0_m = 0.f, range_1_m = 0.f; ///< metres; 0: none
};

/// What is known of a pose's length beside another pair's, beyond the features that both share.
struct LengthTie
{
    std::string name_0, name_1; ///< identities of the other pair
    double log_ratio = 0.0;     ///< log(this length / the other's)
    double sigma = 1.0;         ///< of log_ratio
};

/// Relative pose of two panoramas: point_in_0 = R * point_in_1 + t.
struct PairPose
{
    Eigen::Matrix3d R_0_from_1 = Eigen::Matrix3d::Identity();
    Eigen::Vector3d t_0_from_1 =
        Eigen::Vector3d::Zero(); ///< metres when metric, else of length 1 (0: rotation only)
    bool metric = false;         ///< t has a scale
    bool rotation_only = false;  ///< the baseline is too short to see; t is meaningless
    /// Inverse covariance of the error [rotation (radians), translation], right perturbation:
    /// R * exp(rotation), t + R * translation. For a pose without scale, translation counts in units of |t| =
    /// 1 and the direction along t carries no information.
    Matrix6d information = Matrix6d::Identity();
    double reliability = 0.0; ///< probability that the pose is right, 0 to 1
    int matches = 0;          ///< tentative feature matches
    std::vector<PairInlier> inliers;
    std::vector<LengthTie> ties; ///< without scale only
};

/// Matches two panoramas and estimates their relative pose; metric when both carry range. Deterministic: the
/// same two panoramas give the same result whatever the number of threads and the order of calls.
/// @return nullopt when no pose deserves belief
std::optional<PairPose> matchPair(const Panorama& panorama_0, const Panorama& panorama_1);

} // namespace nexomap
