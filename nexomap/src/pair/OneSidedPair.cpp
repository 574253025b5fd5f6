// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Relative pose of two panoramas of which one carries range.
#include "nexomap/src/pair/OneSidedPair.h"

#include "nexomap/src/pair/GuidedMatching.h"
#include "nexomap/src/pair/OneSidedRansac.h"
#include "nexomap/src/pair/OneSidedRefinement.h"
#include "nexomap/src/pair/PairSolver.h"
#include "nexomap/src/pair/Sphere.h"

#include <Eigen/Eigenvalues>
#include <Eigen/LU>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

std::vector<Correspondence> turnedRound(std::vector<Correspondence> matches)
{
    for (Correspondence& match : matches) {
        std::swap(match.bearing_0, match.bearing_1);
        std::swap(match.range_0, match.range_1);
    }
    return matches;
}

RefinedPose refineTwice(const std::vector<Correspondence>& matches, const RigidPose& start,
                        std::vector<int>* inliers)
{
    RefinedPose refined;
    refined.pose = start;
    for (int round = 0; round < 2; ++round) {
        *inliers = oneSidedInliers(matches, refined.pose, 1.0);
        refined = refineOneSidedPose(matches, *inliers, refined.pose, 10);
    }
    *inliers = oneSidedInliers(matches, refined.pose, 1.0);
    return refined;
}

/// Largest standard deviation of the translation, metres.
double positionSigma(const Matrix6d& information)
{
    Matrix6d held = information;
    held.diagonal().array() += 1e-3;
    const Matrix6d covariance = held.inverse();
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> axes(
        Eigen::Matrix3d(covariance.bottomRightCorner<3, 3>()));
    return std::sqrt(std::max(0.0, axes.eigenvalues()[2]));
}

/// Number 0 is the one without range.
std::optional<PairPose> solveBareFirst(const Panorama& bare, const Panorama& ranged,
                                       const std::vector<Correspondence>& tentative, PairRandom& random,
                                       Evidence* evidence)
{
    const auto hypothesis = estimateOneSidedPose(tentative, {}, random);
    if (!hypothesis) return std::nullopt;
    const auto other = estimateOneSidedPose(
        tentative, flagged(tentative.size(), oneSidedInliers(tentative, hypothesis->pose, 3.0)), random);
    evidence->second_share = other ? double(other->inliers.size()) / double(hypothesis->inliers.size()) : 0.0;
    countPlaces(tentative, hypothesis->inliers, evidence);

    const int alike = alikeDistance2(tentative, hypothesis->inliers);
    std::vector<int> inliers;
    RefinedPose refined = refineTwice(tentative, hypothesis->pose, &inliers);
    std::vector<Correspondence> matches = guidedByRange(bare.features, ranged.features, refined.pose, alike);
    if (oneSidedInliers(matches, refined.pose, 1.0).size() < inliers.size()) matches = tentative;
    refined = refineTwice(matches, refined.pose, &inliers);

    const std::vector<Correspondence> guided =
        guidedByRange(bare.features, ranged.features, refined.pose, alike);
    evidence->guided = int(guided.size());
    evidence->chance = matchesByChance(bare.features, ranged.features, refined.pose, alike);
    evidence->sight = oneSidedSight(ranged, refined.pose, guided);
    evidence->lean = leanOf(refined.pose.R);
    evidence->rms = refined.rms;
    const Eigen::Vector3d vertical = (Eigen::Vector3d::UnitZ() + refined.pose.R.col(2)).normalized();
    evidence->elevation = std::asin(
        std::clamp(refined.pose.t.dot(vertical) / std::max(1e-9, refined.pose.t.norm()), -1.0, 1.0));
    evidence->floor_step_m = refined.pose.t.dot(vertical);
    evidence->position_sigma_m = positionSigma(refined.information * kInformationShare);

    PairPose pose;
    pose.R_0_from_1 = refined.pose.R;
    pose.t_0_from_1 = refined.pose.t;
    pose.metric = true;
    pose.information = refined.information * kInformationShare;
    pose.reliability = oneSidedReliability(*evidence);
    pose.inliers = pairInliers(matches, inliers);
    return pose;
}

} // namespace

std::optional<PairPose> solveOneSided(const Panorama& p0, const Panorama& p1,
                                      const std::vector<Correspondence>& matches, PairRandom& random,
                                      Evidence* evidence)
{
    if (p1.metric()) return solveBareFirst(p0, p1, matches, random, evidence);
    const auto pose = solveBareFirst(p1, p0, turnedRound(matches), random, evidence);
    if (!pose) return std::nullopt;
    return inverted(*pose);
}

} // namespace nexomap
