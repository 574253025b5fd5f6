// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Relative pose from matched bearings, among many false matches.
#include "nexomap/src/pair/BearingRansac.h"

#include "nexomap/src/pair/BearingRefinement.h"
#include "nexomap/src/pair/Sphere.h"
#include "nexomap/src/pair/UprightSolver.h"

#include <Eigen/SVD>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr int kMaxDraws = 6000;
constexpr int kMinDraws = 600;
constexpr std::size_t kMinSupport = 12;
constexpr int kGlance = 48;    // matches looked at before a hypothesis is scored in full
constexpr int kPromising = 30; // hypotheses that are polished though others fit better at first
constexpr double kLeanSpread = 3.0 * kDegree;  // of cameras held by hand, against each other
constexpr double kWallsSpread = 1.2 * kDegree; // how far off the walls of two pictures are told

double matchScore(const RigidPose& pose, const Correspondence& match, double tolerance)
{
    const double angle = epipolarAngle(pose, match);
    if (angle < 0.0 || angle > tolerance) return 0.0;
    const double share = angle / tolerance;
    return 1.0 - share * share;
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
    return (Eigen::AngleAxisd(x, Eigen::Vector3d::UnitX()) * Eigen::AngleAxisd(y, Eigen::Vector3d::UnitY()))
        .toRotationMatrix();
}

/// Of three matches of level cameras, or of cameras that lean a little against each other.
std::vector<RigidPose> leaningPoses(const Correspondence& a, const Correspondence& b, const Correspondence& c,
                                    bool leaning, PairRandom& random)
{
    // Level cameras are found without leaning draws, and the polish mends a degree.
    const Eigen::Matrix3d lean = leaning ? randomLean(random) : Eigen::Matrix3d::Identity();
    auto poses = solveUpright({a.bearing_0, b.bearing_0, c.bearing_0},
                              {lean * a.bearing_1, lean * b.bearing_1, lean * c.bearing_1});
    for (RigidPose& pose : poses)
        pose.R = pose.R * lean;
    return poses;
}

/// Two matches tell the direction where the heading is known: one of the four that lay the walls onto each
/// other.
std::vector<RigidPose> posesAlongWalls(const Correspondence& a, const Correspondence& b, double walls_turn,
                                       PairRandom& random)
{
    const double off = (2.0 * random.below(1 << 20) / double(1 << 20) - 1.0) * kWallsSpread;
    RigidPose pose;
    pose.R = headingRotation(walls_turn + 0.5 * kPi * random.below(4) + off);
    const Eigen::Vector3d t =
        a.bearing_0.cross(pose.R * a.bearing_1).cross(b.bearing_0.cross(pose.R * b.bearing_1));
    if (t.norm() < 1e-6) return {}; // both on one plane through the stations
    pose.t = t.normalized();
    return {pose};
}

/// Sum over the matches; gives up early on a hypothesis that a glance shows to be hopeless.
double scoreOf(const std::vector<const Correspondence*>& matches, const RigidPose& pose, double tolerance,
               double best)
{
    double score = 0.0;
    const std::size_t count = matches.size();
    // A glance at every stride-th match: the list is sorted, a prefix would not be fair.
    const std::size_t stride = std::max<std::size_t>(1, count / kGlance);
    std::size_t seen = 0;
    for (std::size_t i = 0; i < count; i += stride, ++seen)
        score += matchScore(pose, *matches[i], tolerance);
    if (stride == 1) return score;
    if (score / double(seen) < 0.4 * best / double(count)) return 0.0;
    score = 0.0;
    for (const Correspondence* match : matches)
        score += matchScore(pose, *match, tolerance);
    return score;
}

} // namespace

double epipolarAngle(const RigidPose& pose, const Correspondence& match)
{
    const Eigen::Vector3d b = pose.R * match.bearing_1;
    const Eigen::Vector3d n0 = pose.t.cross(b), n1 = pose.t.cross(match.bearing_0);
    const double gradient = std::sqrt(n0.squaredNorm() + n1.squaredNorm());
    if (gradient < 1e-9) return -1.0; // on the baseline: seen by both, says nothing
    const double angle = std::abs(match.bearing_0.dot(n0)) / gradient;
    const Eigen::Vector3d crossing = match.bearing_0.cross(b);
    // Rays that all but agree point to something far: on which side they meet is noise.
    constexpr double kFar = 0.5 * kDegree;
    if (crossing.squaredNorm() > kFar * kFar && (crossing.dot(n0) < 0.0 || crossing.dot(n1) < 0.0))
        return -1.0;
    return angle;
}

std::vector<int> epipolarInliers(const std::vector<Correspondence>& matches, const RigidPose& pose,
                                 double tolerance)
{
    std::vector<int> inliers;
    for (std::size_t i = 0; i < matches.size(); ++i) {
        const double angle = epipolarAngle(pose, matches[i]);
        if (angle >= 0.0 && angle < tolerance) inliers.push_back(int(i));
    }
    return inliers;
}

std::vector<int> rotationInliers(const std::vector<Correspondence>& matches, const Eigen::Matrix3d& R,
                                 double tolerance)
{
    const double chord2 = std::pow(2.0 * std::sin(0.5 * tolerance), 2);
    std::vector<int> inliers;
    for (std::size_t i = 0; i < matches.size(); ++i)
        if ((matches[i].bearing_0 - R * matches[i].bearing_1).squaredNorm() < chord2)
            inliers.push_back(int(i));
    return inliers;
}

std::optional<PoseHypothesis> estimateBearingPose(const std::vector<Correspondence>& matches,
                                                  const std::vector<bool>& skip,
                                                  std::optional<double> walls_turn, PairRandom& random)
{
    std::vector<const Correspondence*> pool;
    std::vector<Correspondence> kept;
    for (std::size_t i = 0; i < matches.size(); ++i)
        if (skip.empty() || !skip[i]) kept.push_back(matches[i]);
    for (const Correspondence& match : kept)
        pool.push_back(&match);
    const int count = int(pool.size());
    if (count < int(kMinSupport)) return std::nullopt;

    constexpr double kWide = 2.0 * kEpipolarTolerance; // before the lean is solved for
    double best_score = 0.0, polished_score = 0.0;
    RigidPose best;
    int draws = kMaxDraws, promising = kPromising;
    for (int draw = 0; draw < draws; ++draw) {
        // Every second draw among the better half: descriptors that agree well are right more often.
        const int reach = draw % 2 ? count : std::max(int(kMinSupport), count / 2);
        const int i = random.below(reach), j = random.below(reach), k = random.below(reach);
        if (i == j || j == k || i == k) continue;
        const bool along_walls = walls_turn && draw % 4 == 3;
        const auto poses = along_walls ? posesAlongWalls(*pool[i], *pool[j], *walls_turn, random)
                                       : leaningPoses(*pool[i], *pool[j], *pool[k], draw % 3 == 2, random);
        for (RigidPose pose : poses) {
            // The sign of t: the first sample stands in front of both.
            if (epipolarAngle(pose, *pool[i]) < 0.0) pose.t = -pose.t;
            if (epipolarAngle(pose, *pool[j]) < 0.0) continue;
            if (!along_walls && epipolarAngle(pose, *pool[k]) < 0.0) continue;
            const double score = scoreOf(pool, pose, kWide, best_score);
            if (score <= best_score && (score < 0.7 * best_score || --promising < 0)) continue;
            best_score = std::max(best_score, score);
            RigidPose fine = pose;
            for (const double tolerance : {2.0 * kWide, kWide, kEpipolarTolerance}) {
                const auto inliers = epipolarInliers(kept, fine, tolerance);
                if (inliers.size() < 8) break;
                fine = refineBearingPose(kept, inliers, fine, 4).pose;
            }
            const double fine_score = scoreOf(pool, fine, kEpipolarTolerance, 0.0);
            if (fine_score <= polished_score) continue;
            polished_score = fine_score;
            best = fine;
            const double share = fine_score / count;
            const double needed = std::log(1e-4) / std::log1p(-std::min(0.99, share * share * share));
            draws = std::clamp(int(std::min(3.0 * needed, double(kMaxDraws))), kMinDraws, kMaxDraws);
        }
    }
    if (polished_score <= 0.0) return std::nullopt;
    PoseHypothesis hypothesis;
    hypothesis.pose = best;
    for (const int i : epipolarInliers(matches, best, kEpipolarTolerance))
        if (skip.empty() || !skip[i]) hypothesis.inliers.push_back(i);
    if (hypothesis.inliers.size() < kMinSupport) return std::nullopt;
    return hypothesis;
}

std::optional<PoseHypothesis> estimateRotation(const std::vector<Correspondence>& matches)
{
    // One match fixes the heading of an upright rotation: each votes, half a degree a bin.
    constexpr int kBins = 720;
    std::vector<int> votes(kBins, 0);
    const auto binOf = [](const Correspondence& m) {
        const double yaw = azimuthOf(m.bearing_0) - azimuthOf(m.bearing_1);
        return (int(std::floor((yaw / (2.0 * kPi) + 2.0) * kBins)) % kBins + kBins) % kBins;
    };
    for (const Correspondence& m : matches)
        if (std::abs(polarOf(m.bearing_0) - polarOf(m.bearing_1)) < 3.0 * kDegree) ++votes[binOf(m)];
    int best = 0;
    const auto around = [&](int bin) {
        return votes[bin] + votes[(bin + 1) % kBins] + votes[(bin + kBins - 1) % kBins];
    };
    for (int bin = 0; bin < kBins; ++bin)
        if (around(bin) > around(best)) best = bin;
    PoseHypothesis hypothesis;
    hypothesis.pose.R = headingRotation(2.0 * kPi * (best + 0.5) / kBins);
    for (const double tolerance :
         {3.0 * kDegree, 1.5 * kDegree, 2.0 * kEpipolarTolerance, kEpipolarTolerance}) {
        hypothesis.inliers = rotationInliers(matches, hypothesis.pose.R, tolerance);
        if (hypothesis.inliers.size() < kMinSupport) return std::nullopt;
        Eigen::Matrix3d sum = Eigen::Matrix3d::Zero();
        for (const int i : hypothesis.inliers)
            sum += matches[i].bearing_0 * matches[i].bearing_1.transpose();
        const Eigen::JacobiSVD<Eigen::Matrix3d> svd(sum, Eigen::ComputeFullU | Eigen::ComputeFullV);
        const double sign = svd.matrixU().determinant() * svd.matrixV().determinant() < 0.0 ? -1.0 : 1.0;
        hypothesis.pose.R =
            svd.matrixU() * Eigen::Vector3d(1.0, 1.0, sign).asDiagonal() * svd.matrixV().transpose();
    }
    hypothesis.inliers = rotationInliers(matches, hypothesis.pose.R, kEpipolarTolerance);
    if (hypothesis.inliers.size() < kMinSupport) return std::nullopt;
    return hypothesis;
}

} // namespace nexomap
