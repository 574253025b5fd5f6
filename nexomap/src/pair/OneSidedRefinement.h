// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/MetricRefinement.h"

namespace nexomap {

/// Refines the pose of a panorama without range (number 0) against one that has it (Gauss-Newton): bearings
/// against points, whitened by the covariance of both bearings and of the range as number 0 sees them, the
/// epipolar angle where a match has no range, a Cauchy loss, and a prior that both stand upright.
/// `information` is of [rotation, translation], right perturbation, no priors; rms of the whitened residuals.
RefinedPose refineOneSidedPose(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                               const RigidPose& start, int iterations);

} // namespace nexomap
