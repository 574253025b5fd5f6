// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/pair/SurfaceSamples.h"
#include "nexomap/src/PairPose.h"

namespace nexomap {

struct RefinedPose
{
    RigidPose pose;
    Matrix6d information =
        Matrix6d::Identity(); ///< of [rotation, translation], right perturbation, no priors
    double rms = 0.0;         ///< of the whitened residuals of the matches; about 1 when right
    int surface_pairs = 0;    ///< surface samples that took part
};

/// Refines a metric pose over its matches, each weighted by the covariance of its bearings and ranges
/// (bearing only where one range is missing), with a Cauchy loss and a prior that both panoramas stand
/// upright. With surface samples it also aligns the two range maps point to plane (Chen and Medioni 1992),
/// keeping only what both see.
/// @param surfaces_0, surfaces_1  null: matches alone
/// @param up_0, up_1  the vertical in each panorama's frame, unit vectors
RefinedPose refineMetricPose(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                             const RigidPose& start, const RangeMap* map_0, const RangeMap* map_1,
                             const std::vector<SurfaceSample>* surfaces_0,
                             const std::vector<SurfaceSample>* surfaces_1,
                             const Eigen::Vector3d& up_0 = Eigen::Vector3d::UnitZ(),
                             const Eigen::Vector3d& up_1 = Eigen::Vector3d::UnitZ());

/// The last millimetre of a pose that is known to be right: four times as many surface samples, which count
/// far more beside the matches. Costs about 30 ms.
RefinedPose refineDensely(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                          const RigidPose& start, const RangeMap& map_0, const RangeMap& map_1,
                          const Eigen::Vector3d& up_0 = Eigen::Vector3d::UnitZ(),
                          const Eigen::Vector3d& up_1 = Eigen::Vector3d::UnitZ());

} // namespace nexomap
