// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Where a panorama without range stands among the points that another one measured, among many false matches.
#include "nexomap/src/pair/OneSidedRansac.h"

#include "nexomap/src/pair/OneSidedRefinement.h"
#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace nexomap {
namespace {

constexpr int kMaxDraws = 6000;
constexpr int kMinDraws = 600;
constexpr std::size_t kMinSupport = 8;
constexpr int kGlance = 48;                   // matches looked at before a hypothesis is scored in full
constexpr int kPromising = 30;                // hypotheses polished though others fit better at first
constexpr double kWide = 3.0;                 // times the tolerance, before the lean is solved for
constexpr double kLeanSpread = 3.0 * kDegree; // of cameras held by hand, against each other
constexpr double kMaxLean = 12.0 * kDegree;
constexpr double kAngle = 0.3 * kDegree; // of a bearing, tolerated
constexpr double kNearest_m = 0.2, kFarthest_m = 60.0;

double matchScore(const RigidPose& pose, const Correspondence& match, double widening)
{
    const double share = oneSidedError2(pose, match) / (widening * widening);
    return share < 1.0 ? 1.0 - share : 0.0;
}

/// Sum over the matches; gives up early on a hypothesis that a glance shows to be hopeless.
double scoreOf(const std::vector<Correspondence>& matches, const RigidPose& pose, double widening,
               double best)
{
    const std::size_t count = matches.size(), stride = std::max<std::size_t>(1, count / kGlance);
    double score = 0.0;
    std::size_t seen = 0;
    for (std::size_t i = 0; i < count; i += stride, ++seen)
        score += matchScore(pose, matches[i], widening);
    if (stride == 1) return score;
    if (score / double(seen) < 0.4 * best / double(count)) return 0.0;
    score = 0.0;
    for (const Correspondence& match : matches)
        score += matchScore(pose, match, widening);
    return score;
}

/// A small rotation about a level axis: how a camera that is held by hand leans against another.
Eigen::Matrix3d randomLean(PairRandom& random)
{
    const auto spread = [&] { // about normal, the same on every machine
        double sum = -2.0;
        for (int k = 0; k < 4; ++k)
            sum += random.below(1 << 20) / double(1 << 20);
        return sum * std::sqrt(3.0) * kLeanSpread;
    };
    const double x = spread(), y = spread();
    return rotationFromVector({x, y, 0.0});
}

/// Six degrees of freedom on the inliers, the bounds drawn in step by step.
RigidPose polished(const std::vector<Correspondence>& matches, const RigidPose& start)
{
    RigidPose pose = start;
    for (const double widening : {2.0 * kWide, kWide, 1.5, 1.0}) {
        const std::vector<int> inliers = oneSidedInliers(matches, pose, widening);
        if (inliers.size() < 6) break;
        const RigidPose refined = refineOneSidedPose(matches, inliers, pose, 4).pose;
        if (leanOf(refined.R) > kMaxLean || refined.t.norm() > kFarthest_m) break;
        pose = refined;
    }
    return pose;
}

} // namespace

std::vector<RigidPose> solveUprightAbsolute(const std::array<Eigen::Vector3d, 2>& u,
                                            const std::array<Eigen::Vector3d, 2>& points)
{
    // Depths l0, l1 along the bearings: l0 u0 - l1 u1 = Rz (p0 - p1). The vertical of it is one linear
    // equation, its horizontal length one quadratic equation.
    const Eigen::Vector3d d = points[0] - points[1];
    const double across2 = d.head<2>().squaredNorm();
    const Eigen::Vector2d normal(u[0].z(), -u[1].z());
    const double n2 = normal.squaredNorm();
    if (across2 < 0.09 || n2 < 1e-3) return {};
    const Eigen::Vector2d base = normal * (d.z() / n2),
                          along = Eigen::Vector2d(u[1].z(), u[0].z()) / std::sqrt(n2);
    const Eigen::Vector2d h0 = u[0].head<2>(), h1 = u[1].head<2>();
    const Eigen::Vector2d a = base[0] * h0 - base[1] * h1, b = along[0] * h0 - along[1] * h1;
    const double A = b.squaredNorm(), B = a.dot(b), C = a.squaredNorm() - across2;
    const double root2 = B * B - A * C;
    if (A < 1e-9 || root2 < 0.0) return {};
    std::vector<RigidPose> poses;
    for (const double sign : {1.0, -1.0}) {
        const Eigen::Vector2d depths = base + along * ((-B + sign * std::sqrt(root2)) / A);
        if (depths.minCoeff() < kNearest_m || depths.maxCoeff() > kFarthest_m) continue;
        const Eigen::Vector2d seen = depths[0] * h0 - depths[1] * h1;
        RigidPose pose;
        pose.R = headingRotation(std::atan2(seen.y(), seen.x()) - std::atan2(d.y(), d.x()));
        pose.t = 0.5 * (depths[0] * u[0] + depths[1] * u[1] - pose.R * (points[0] + points[1]));
        poses.push_back(pose);
    }
    return poses;
}

double oneSidedError2(const RigidPose& pose, const Correspondence& match)
{
    constexpr double kNever = std::numeric_limits<double>::infinity();
    if (!(match.range_1 > 0.0)) return kNever;
    const Eigen::Vector3d along = pose.R * match.bearing_1;
    const Eigen::Vector3d point = match.range_1 * along + pose.t;
    const double distance = point.norm();
    if (distance < kNearest_m) return kNever;
    const Eigen::Vector3d direction = point / distance;
    if (direction.dot(match.bearing_0) < 0.5) return kNever;
    // Covariance a I + s s': both bearings, and the range as it is seen from the other place; inverted in
    // closed form.
    const Eigen::Vector3d s =
        (along - direction * direction.dot(along)) * ((0.03 + 0.01 * match.range_1) / distance);
    const double a = kAngle * kAngle * (1.0 + std::pow(match.range_1 / distance, 2));
    const Eigen::Vector3d error = match.bearing_0 - direction;
    return (error.squaredNorm() - std::pow(s.dot(error), 2) / (a + s.squaredNorm())) / a;
}

std::vector<int> oneSidedInliers(const std::vector<Correspondence>& matches, const RigidPose& pose,
                                 double widening)
{
    std::vector<int> inliers;
    for (std::size_t i = 0; i < matches.size(); ++i)
        if (oneSidedError2(pose, matches[i]) < widening * widening) inliers.push_back(int(i));
    return inliers;
}

std::optional<PoseHypothesis> estimateOneSidedPose(const std::vector<Correspondence>& matches,
                                                   const std::vector<bool>& skip, PairRandom& random)
{
    std::vector<Correspondence> pool;
    for (std::size_t i = 0; i < matches.size(); ++i)
        if (matches[i].range_1 > 0.0 && (skip.empty() || !skip[i])) pool.push_back(matches[i]);
    const int count = int(pool.size());
    if (count < int(kMinSupport)) return std::nullopt;

    double best_score = 0.0, polished_score = 0.0;
    RigidPose best;
    int draws = kMaxDraws, promising = kPromising;
    for (int draw = 0; draw < draws; ++draw) {
        // Every second draw among the better half: descriptors that agree well are right more often.
        const int reach = draw % 2 ? count : std::max(int(kMinSupport), count / 2);
        const int i = random.below(reach), j = random.below(reach);
        if (i == j) continue;
        // Every third draw leans: level cameras are found by the others, and the polish mends a degree.
        const Eigen::Matrix3d lean = draw % 3 == 2 ? randomLean(random) : Eigen::Matrix3d::Identity();
        for (RigidPose pose : solveUprightAbsolute({pool[i].bearing_0, pool[j].bearing_0},
                                                   {lean * pool[i].point_1(), lean * pool[j].point_1()})) {
            pose.R = pose.R * lean;
            const double score = scoreOf(pool, pose, kWide, best_score);
            if (score <= 0.0 || (score <= best_score && (score < 0.7 * best_score || --promising < 0)))
                continue;
            best_score = std::max(best_score, score);
            const RigidPose fine = polished(pool, pose);
            const double fine_score = scoreOf(pool, fine, 1.0, 0.0);
            if (fine_score <= polished_score) continue;
            polished_score = fine_score;
            best = fine;
            const double share = fine_score / count;
            const double needed = std::log(1e-4) / std::log1p(-std::min(0.99, share * share));
            draws = std::clamp(int(std::min(3.0 * needed, double(kMaxDraws))), kMinDraws, kMaxDraws);
        }
    }
    if (polished_score <= 0.0) return std::nullopt;
    PoseHypothesis hypothesis;
    hypothesis.pose = best;
    for (const int i : oneSidedInliers(matches, best, 1.0))
        if (skip.empty() || !skip[std::size_t(i)]) hypothesis.inliers.push_back(i);
    if (hypothesis.inliers.size() < kMinSupport) return std::nullopt;
    return hypothesis;
}

} // namespace nexomap
