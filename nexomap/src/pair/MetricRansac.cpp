// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Relative pose from matched points in space, among many false matches.
#include "nexomap/src/pair/MetricRansac.h"

#include "nexomap/src/pair/Sphere.h"

#include <Eigen/SVD>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr int kMaxDraws = 12000;
constexpr int kMinDraws = 1500;
constexpr double kConfidence = 0.9999;
constexpr double kMaxLean = 8.0 * kDegree;
constexpr std::size_t kMinSupport = 5;

struct Points
{
    std::vector<int> index; ///< into the correspondences
    std::vector<Eigen::Vector3d> p0, p1;
    std::vector<double> tolerance2;
};

double scoreOf(const Points& points, const RigidPose& pose, double widening2)
{
    double score = 0.0;
    for (std::size_t i = 0; i < points.p0.size(); ++i) {
        const double share =
            (pose * points.p1[i] - points.p0[i]).squaredNorm() / (points.tolerance2[i] * widening2);
        if (share < 1.0) score += 1.0 - share;
    }
    return score;
}

/// Heading and translation from two matches; nullopt when their two segments cannot be one.
std::optional<RigidPose> poseFromTwo(const Points& points, int i, int j)
{
    const Eigen::Vector3d d0 = points.p0[j] - points.p0[i], d1 = points.p1[j] - points.p1[i];
    const double length_0 = d0.head<2>().norm(), length_1 = d1.head<2>().norm();
    if (length_0 < 0.3 || length_1 < 0.3) return std::nullopt;
    const double slack = 0.05 + 0.03 * std::max(d0.norm(), d1.norm());
    if (std::abs(d0.z() - d1.z()) > 2.0 * slack || std::abs(length_0 - length_1) > slack) return std::nullopt;
    RigidPose pose;
    pose.R = headingRotation(std::atan2(d0.y(), d0.x()) - std::atan2(d1.y(), d1.x()));
    pose.t = 0.5 * (points.p0[i] + points.p0[j] - pose.R * (points.p1[i] + points.p1[j]));
    return pose;
}

/// Six degrees of freedom on the inliers, the bounds drawn in step by step.
RigidPose polished(const Points& points, RigidPose pose)
{
    for (const double widening : {3.0, 2.0, 1.5, 1.0}) {
        std::vector<Eigen::Vector3d> p0, p1;
        for (std::size_t i = 0; i < points.p0.size(); ++i)
            if ((pose * points.p1[i] - points.p0[i]).squaredNorm() <
                points.tolerance2[i] * widening * widening) {
                p0.push_back(points.p0[i]);
                p1.push_back(points.p1[i]);
            }
        if (p0.size() < 4) break;
        const auto aligned = alignPoints(p0, p1);
        if (!aligned || leanOf(aligned->R) > kMaxLean) break;
        pose = *aligned;
    }
    return pose;
}

} // namespace

std::optional<RigidPose> alignPoints(const std::vector<Eigen::Vector3d>& points_0,
                                     const std::vector<Eigen::Vector3d>& points_1)
{
    if (points_0.size() < 3 || points_0.size() != points_1.size()) return std::nullopt;
    Eigen::Vector3d mean_0 = Eigen::Vector3d::Zero(), mean_1 = Eigen::Vector3d::Zero();
    for (std::size_t i = 0; i < points_0.size(); ++i)
        mean_0 += points_0[i], mean_1 += points_1[i];
    mean_0 /= double(points_0.size());
    mean_1 /= double(points_0.size());
    Eigen::Matrix3d covariance = Eigen::Matrix3d::Zero();
    for (std::size_t i = 0; i < points_0.size(); ++i)
        covariance += (points_0[i] - mean_0) * (points_1[i] - mean_1).transpose();
    if (!covariance.allFinite()) return std::nullopt;
    const Eigen::JacobiSVD<Eigen::Matrix3d> svd(covariance, Eigen::ComputeFullU | Eigen::ComputeFullV);
    if (!(svd.singularValues()[1] > 1e-6 * svd.singularValues()[0]) || svd.singularValues()[0] < 1e-9)
        return std::nullopt;
    Eigen::Vector3d signs(1.0, 1.0,
                          svd.matrixU().determinant() * svd.matrixV().determinant() < 0.0 ? -1.0 : 1.0);
    RigidPose pose;
    pose.R = svd.matrixU() * signs.asDiagonal() * svd.matrixV().transpose();
    pose.t = mean_0 - pose.R * mean_1;
    return pose;
}

double pointTolerance(const Correspondence& match)
{
    return 0.03 + 0.01 * std::max(match.range_0, match.range_1);
}

std::vector<int> rangedInliers(const std::vector<Correspondence>& matches, const RigidPose& pose,
                               double widening)
{
    std::vector<int> inliers;
    for (std::size_t i = 0; i < matches.size(); ++i)
        if (matches[i].ranged() && (pose * matches[i].point_1() - matches[i].point_0()).norm() <
                                       widening * pointTolerance(matches[i]))
            inliers.push_back(int(i));
    return inliers;
}

std::optional<PoseHypothesis> estimateMetricPose(const std::vector<Correspondence>& matches,
                                                 const std::vector<bool>& skip, PairRandom& random,
                                                 const Eigen::Matrix3d& level_0,
                                                 const Eigen::Matrix3d& level_1)
{
    Points points;
    for (std::size_t i = 0; i < matches.size(); ++i) {
        if (!matches[i].ranged() || (!skip.empty() && skip[i])) continue;
        points.index.push_back(int(i));
        points.p0.push_back(level_0 * matches[i].point_0());
        points.p1.push_back(level_1 * matches[i].point_1());
        points.tolerance2.push_back(std::pow(pointTolerance(matches[i]), 2));
    }
    const int count = int(points.index.size());
    if (count < int(kMinSupport)) return std::nullopt;

    constexpr double kWide2 = 4.0; // before the lean is solved for
    RigidPose best;
    double best_score = 0.0, polished_score = 0.0;
    RigidPose best_polished;
    int draws = kMaxDraws;
    for (int draw = 0; draw < draws; ++draw) {
        const int i = random.below(count), j = random.below(count);
        if (i == j) continue;
        const auto pose = poseFromTwo(points, i, j);
        if (!pose) continue;
        const double score = scoreOf(points, *pose, kWide2);
        if (score <= best_score) continue;
        best_score = score;
        best = *pose;
        const RigidPose fine = polished(points, best);
        const double fine_score = scoreOf(points, fine, 1.0);
        if (fine_score <= polished_score) continue;
        polished_score = fine_score;
        best_polished = fine;
        const double share = fine_score / count;
        const double needed = std::log(1.0 - kConfidence) / std::log1p(-std::min(0.99, share * share));
        draws = std::clamp(int(std::min(needed, double(kMaxDraws))), kMinDraws, kMaxDraws);
    }
    if (polished_score <= 0.0) return std::nullopt;
    PoseHypothesis hypothesis;
    hypothesis.pose.R = level_0.transpose() * best_polished.R * level_1;
    hypothesis.pose.t = level_0.transpose() * best_polished.t;
    for (std::size_t i = 0; i < points.p0.size(); ++i)
        if ((best_polished * points.p1[i] - points.p0[i]).squaredNorm() < points.tolerance2[i])
            hypothesis.inliers.push_back(points.index[i]);
    if (hypothesis.inliers.size() < kMinSupport) return std::nullopt;
    return hypothesis;
}

} // namespace nexomap
