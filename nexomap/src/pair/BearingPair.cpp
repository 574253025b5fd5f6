// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Relative pose of two panoramas from their pictures alone.
#include "nexomap/src/pair/BearingRansac.h"
#include "nexomap/src/pair/BearingRefinement.h"
#include "nexomap/src/pair/PairSteps.h"
#include "nexomap/src/pair/Sphere.h"

#include <Eigen/Eigenvalues>
#include <Eigen/LU>

#include <algorithm>

namespace nexomap {
namespace {

constexpr double kRotationShare = 0.8; // of the inliers that a rotation alone may explain

PairPose rotationPair(const std::vector<Correspondence>& matches, const PoseHypothesis& rotation,
                      Evidence* evidence)
{
    countPlaces(matches, rotation.inliers, evidence);
    evidence->lean = leanOf(rotation.pose.R);
    PairPose pose;
    pose.R_0_from_1 = rotation.pose.R;
    pose.rotation_only = true;
    pose.information = rotationInformation(matches, rotation.inliers, rotation.pose.R) * kInformationShare;
    pose.reliability = rotationReliability(*evidence);
    pose.inliers = pairInliers(matches, rotation.inliers);
    return pose;
}

/// Largest standard deviation of the direction of t, radians.
double directionSigma(const Matrix6d& information)
{
    Matrix6d held = information;
    held.diagonal().array() += 1.0;
    const Matrix6d covariance = held.inverse();
    // The direction along t is unknown by nature: the second-largest axis is what the pair leaves open.
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> axes(
        Eigen::Matrix3d(covariance.bottomRightCorner<3, 3>()));
    return std::sqrt(std::max(0.0, axes.eigenvalues()[1]));
}

/// Median angle under which the inliers' points see the two stations.
double medianParallax(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                      const Eigen::Matrix3d& R)
{
    std::vector<double> angles;
    for (const int i : inliers) {
        const Eigen::Vector3d a = matches[std::size_t(i)].bearing_0,
                              b = R * matches[std::size_t(i)].bearing_1;
        angles.push_back(std::atan2(a.cross(b).norm(), a.dot(b)));
    }
    if (angles.empty()) return 0.0;
    const auto middle = angles.begin() + std::ptrdiff_t(angles.size() / 2);
    std::nth_element(angles.begin(), middle, angles.end());
    return *middle;
}

/// Angle by which walls that run the same way in both pictures would miss each other.
double skewOf(const Eigen::Matrix3d& R, double walls_turn)
{
    const double heading = std::atan2(R(1, 0) - R(0, 1), R(0, 0) + R(1, 1));
    return std::abs(std::remainder(heading - walls_turn, 0.5 * kPi));
}

} // namespace

std::optional<PairPose> solveBearings(const std::vector<Correspondence>& tentative,
                                      std::optional<double> walls_turn, PairRandom& random,
                                      Evidence* evidence)
{
    const auto hypothesis = estimateBearingPose(tentative, {}, walls_turn, random);
    const auto rotation = estimateRotation(tentative);
    if (rotation && (!hypothesis ||
                     double(rotation->inliers.size()) >= kRotationShare * double(hypothesis->inliers.size())))
        return rotationPair(tentative, *rotation, evidence);
    if (!hypothesis) return std::nullopt;
    const auto other = estimateBearingPose(
        tentative,
        flagged(tentative.size(), epipolarInliers(tentative, hypothesis->pose, 3.0 * kEpipolarTolerance)),
        walls_turn, random);
    evidence->second_share = other ? double(other->inliers.size()) / double(hypothesis->inliers.size()) : 0.0;
    // No second matching along the epipolar circles: in texture that repeats, they collect as many false
    // matches as right ones.
    std::vector<int> inliers = hypothesis->inliers;
    RefinedBearingPose refined;
    refined.pose = hypothesis->pose;
    for (const double tolerance : {kEpipolarTolerance, 0.7 * kEpipolarTolerance, 0.5 * kEpipolarTolerance}) {
        inliers = epipolarInliers(tentative, refined.pose, tolerance);
        refined = refineBearingPose(tentative, inliers, refined.pose, 10);
    }
    inliers = epipolarInliers(tentative, refined.pose, kEpipolarTolerance);
    countPlaces(tentative, inliers, evidence);

    evidence->lean = leanOf(refined.pose.R);
    evidence->rms = refined.rms / (0.1 * kDegree);
    // Against the middle of the two verticals: neither camera need stand upright.
    const Eigen::Vector3d vertical = (Eigen::Vector3d::UnitZ() + refined.pose.R.col(2)).normalized();
    evidence->elevation = std::asin(std::clamp(refined.pose.t.dot(vertical), -1.0, 1.0));
    if (walls_turn) evidence->skew = skewOf(refined.pose.R, *walls_turn);
    evidence->parallax = medianParallax(tentative, inliers, refined.pose.R);
    evidence->direction_sigma = directionSigma(refined.information * kInformationShare);
    PairPose pose;
    pose.R_0_from_1 = refined.pose.R;
    pose.t_0_from_1 = refined.pose.t;
    pose.information = refined.information * kInformationShare;
    pose.reliability = bearingReliability(*evidence);
    pose.inliers = pairInliers(tentative, inliers);
    return pose;
}

std::vector<bool> flagged(std::size_t count, const std::vector<int>& indices)
{
    std::vector<bool> flags(count, false);
    for (const int i : indices)
        flags[std::size_t(i)] = true;
    return flags;
}

std::vector<PairInlier> pairInliers(const std::vector<Correspondence>& matches,
                                    const std::vector<int>& inliers)
{
    std::vector<PairInlier> result;
    for (const int i : inliers) {
        const Correspondence& m = matches[std::size_t(i)];
        result.push_back(
            {m.bearing_0.cast<float>(), m.bearing_1.cast<float>(), float(m.range_0), float(m.range_1)});
    }
    return result;
}

int alikeDistance2(const std::vector<Correspondence>& matches, const std::vector<int>& inliers)
{
    std::vector<int> distances;
    for (const int i : inliers)
        distances.push_back(matches[std::size_t(i)].distance2);
    if (distances.empty()) return 0;
    const auto nth = distances.begin() + std::ptrdiff_t(distances.size() * 9 / 10);
    std::nth_element(distances.begin(), nth, distances.end());
    return *nth;
}

} // namespace nexomap
