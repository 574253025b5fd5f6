// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/PairPose.h"

namespace nexomap {

struct RefinedBearingPose
{
    RigidPose pose; ///< |t| = 1
    Matrix6d information =
        Matrix6d::Identity(); ///< of [rotation, translation], right perturbation, no priors
    double rms = 0.0;         ///< epipolar angle, radians
};

/// Refines a pose up to scale over the epipolar angles of its inliers (Gauss-Newton with a Cauchy loss), with
/// a prior that both panoramas stand upright.
RefinedBearingPose refineBearingPose(const std::vector<Correspondence>& matches,
                                     const std::vector<int>& inliers, const RigidPose& start, int iterations);

/// Information of a rotation estimated from bearings; nothing is known about the translation.
Matrix6d rotationInformation(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                             const Eigen::Matrix3d& R);

} // namespace nexomap
