// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/links/HandMadeBearings.h"

#include "nexomap/src/Geometry.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kPickSigma = 0.2 * kDegree;          // a careful to careless click
constexpr double kTiltSigma = 0.5 * 1.4142 * kDegree; // of two panoramas against each other
constexpr double kDistinct = 5.0 * kDegree;
constexpr double kFlat = 0.5 * kDegree; // out of a plane by no more than careless clicks are
constexpr int kHeadings = 720;
constexpr double kSamePose = 1.0 * kDegree;
constexpr double kMissFactor = 9.0; // squared misses of a right pose stay below this times the pairs

struct Bearings
{
    Eigen::Vector3d a, b;
};

struct Candidate
{
    Pose pose; ///< |t| = 1
    Matrix6d information = Matrix6d::Zero();
    double cost = 0.0; ///< squared whitened residuals, the lean's among them
};

std::vector<Bearings> bearingsOf(const std::vector<PickedPair>& picks)
{
    std::vector<Bearings> all;
    for (const PickedPair& pick : picks)
        all.push_back({directionFromAngles(pick.azimuth_0, pick.polar_0),
                       directionFromAngles(pick.azimuth_1, pick.polar_1)});
    return all;
}

double angleBetween(const Eigen::Vector3d& u, const Eigen::Vector3d& v)
{
    return std::atan2(u.cross(v).norm(), u.dot(v));
}

/// Pairs that look somewhere else than all before them, on both sides.
int distinctPairs(const std::vector<Bearings>& pairs)
{
    std::vector<Bearings> distinct;
    for (const Bearings& pair : pairs) {
        const bool fresh = std::none_of(distinct.begin(), distinct.end(), [&](const Bearings& other) {
            return angleBetween(pair.a, other.a) < kDistinct || angleBetween(pair.b, other.b) < kDistinct;
        });
        if (fresh) distinct.push_back(pair);
    }
    return int(distinct.size());
}

/// Directions that lie in one plane on both sides belong to points of one line, or to points level with both
/// stations: any number of them leaves open where the stations stand.
bool onOneLine(const std::vector<Bearings>& pairs)
{
    Eigen::Matrix3d A = Eigen::Matrix3d::Zero(), B = Eigen::Matrix3d::Zero();
    for (const Bearings& pair : pairs) {
        A += pair.a * pair.a.transpose();
        B += pair.b * pair.b.transpose();
    }
    const auto flat = [&](const Eigen::Matrix3d& M) {
        const double mean_square =
            Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d>(M).eigenvalues()[0] / double(pairs.size());
        return mean_square < kFlat * kFlat;
    };
    return flat(A) && flat(B);
}

/// Both rays meet in front of their cameras; rays that are parallel within the noise may meet anywhere.
bool inFront(const Bearings& pair, const Pose& pose)
{
    const Eigen::Vector3d b = pose.R * pair.b;
    const double cosine = pair.a.dot(b);
    const double sine2 = 1.0 - cosine * cosine;
    const double sigma = 3.0 * kPickSigma;
    if (sine2 < sigma * sigma && cosine > 0.0) return true;
    const double depth_0 = pair.a.dot(pose.t) - cosine * b.dot(pose.t);
    const double depth_1 = cosine * pair.a.dot(pose.t) - b.dot(pose.t);
    return depth_0 > -sigma && depth_1 > -sigma;
}

Eigen::Vector2d leanResidual(const Pose& pose)
{
    return pose.R.col(2).head<2>() / kTiltSigma;
}

/// Whitened epipolar angle of one pair.
double epipolar(const Bearings& pair, const Pose& pose, Eigen::Matrix<double, 1, 6>* jacobian)
{
    const Eigen::Vector3d b = pose.R * pair.b;
    const Eigen::Vector3d plane = pose.t.cross(b);
    const double size = std::sqrt(plane.squaredNorm() + pose.t.cross(pair.a).squaredNorm());
    const double scale = 1.0 / (kPickSigma * std::max(size, 1e-6));
    if (jacobian) {
        jacobian->head<3>() = pair.b.cross(pose.R.transpose() * pair.a.cross(pose.t)).transpose() * scale;
        jacobian->tail<3>() = (pose.R.transpose() * b.cross(pair.a)).transpose() * scale;
    }
    return pair.a.dot(plane) * scale;
}

double costOf(const std::vector<Bearings>& pairs, const Pose& pose)
{
    double cost = leanResidual(pose).squaredNorm();
    for (const Bearings& pair : pairs)
        cost += std::pow(epipolar(pair, pose, nullptr), 2);
    return cost;
}

Candidate refined(const std::vector<Bearings>& pairs, Pose pose)
{
    Candidate result;
    for (int round = 0; round < 20; ++round) {
        Matrix6d N = Matrix6d::Zero();
        Vector6d g = Vector6d::Zero();
        for (const Bearings& pair : pairs) {
            Eigen::Matrix<double, 1, 6> J;
            const double miss = epipolar(pair, pose, &J);
            N += J.transpose() * J;
            g += J.transpose() * miss;
        }
        // The length of t is free: its direction along t is no knowledge.
        const Eigen::Vector3d along = pose.R.transpose() * pose.t;
        Matrix6d project = Matrix6d::Identity();
        project.bottomRightCorner<3, 3>() -= along * along.transpose();
        result.information = project * N * project;
        Eigen::Matrix<double, 2, 6> lean = Eigen::Matrix<double, 2, 6>::Zero();
        lean.leftCols<3>() = (-pose.R * skew(Eigen::Vector3d::UnitZ())).topRows<2>() / kTiltSigma;
        N += lean.transpose() * lean;
        g += lean.transpose() * leanResidual(pose);
        N.bottomRightCorner<3, 3>() += 1e8 * along * along.transpose();
        N.diagonal().array() += 1e-3;
        Vector6d step = -N.ldlt().solve(g);
        if (!step.allFinite()) break;
        if (step.norm() > 0.2) step *= 0.2 / step.norm();
        pose.t = (pose.t + pose.R * step.tail<3>()).normalized();
        pose.R = nearestRotation(pose.R * expRotation(step.head<3>()));
        if (step.norm() < 1e-9) break;
    }
    result.pose = pose;
    result.cost = costOf(pairs, pose);
    return result;
}

/// Smallest eigenvalue of the constraints' square at one heading; its vector is the baseline.
double misfit(const std::vector<Bearings>& pairs, double heading, Eigen::Vector3d* baseline)
{
    const Eigen::Matrix3d R = rotationAboutZ(heading);
    Eigen::Matrix3d M = Eigen::Matrix3d::Zero();
    for (const Bearings& pair : pairs) {
        const Eigen::Vector3d c = (R * pair.b).cross(pair.a);
        M += c * c.transpose();
    }
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> eigen(M);
    *baseline = eigen.eigenvectors().col(0);
    return eigen.eigenvalues()[0];
}

/// Every pose up to scale that a minimum over the headings leads to and that has all pairs in front.
std::vector<Candidate> candidatesOf(const std::vector<Bearings>& pairs)
{
    std::array<double, kHeadings> misfits;
    std::array<Eigen::Vector3d, kHeadings> baselines;
    for (int k = 0; k < kHeadings; ++k)
        misfits[std::size_t(k)] = misfit(pairs, 2.0 * kPi * k / kHeadings, &baselines[std::size_t(k)]);
    std::vector<Candidate> found;
    for (int k = 0; k < kHeadings; ++k) {
        const double here = misfits[std::size_t(k)];
        if (here > misfits[std::size_t((k + 1) % kHeadings)] ||
            here > misfits[std::size_t((k + kHeadings - 1) % kHeadings)])
            continue;
        for (const double sign : {1.0, -1.0}) {
            const Candidate candidate =
                refined(pairs, {rotationAboutZ(2.0 * kPi * k / kHeadings), sign * baselines[std::size_t(k)]});
            const bool seen = std::any_of(found.begin(), found.end(), [&](const Candidate& other) {
                return rotationAngle(candidate.pose.R, other.pose.R) < kSamePose &&
                       angleBetween(candidate.pose.t, other.pose.t) < kSamePose;
            });
            const bool whole = std::all_of(pairs.begin(), pairs.end(), [&](const Bearings& pair) {
                return inFront(pair, candidate.pose);
            });
            if (!seen && whole) found.push_back(candidate);
        }
    }
    std::sort(found.begin(), found.end(),
              [](const Candidate& x, const Candidate& y) { return x.cost < y.cost; });
    return found;
}

/// One turn that explains all pairs, when there is one; the panoramas then stand in one place.
std::optional<Eigen::Matrix3d> turnOnly(const std::vector<Bearings>& pairs)
{
    Eigen::Matrix3d S = Eigen::Matrix3d::Zero();
    for (const Bearings& pair : pairs)
        S += pair.a * pair.b.transpose();
    const Eigen::Matrix3d R = nearestRotation(S);
    double squares = 0.0;
    for (const Bearings& pair : pairs)
        squares += std::pow(angleBetween(pair.a, R * pair.b) / kPickSigma, 2);
    // Two angles a pair, each of two clicks.
    if (squares > 2.0 * 2.0 * 2.0 * double(pairs.size())) return std::nullopt;
    return R;
}

PairPose describe(const std::vector<Bearings>& pairs, const Pose& pose)
{
    PairPose result;
    result.R_0_from_1 = pose.R;
    result.t_0_from_1 = pose.t;
    result.matches = int(pairs.size());
    for (const Bearings& pair : pairs)
        result.inliers.push_back({pair.a.cast<float>(), pair.b.cast<float>(), 0.0f, 0.0f});
    return result;
}

std::optional<PairPose> solve(const std::vector<Bearings>& pairs, double* cost_per_pair)
{
    const std::vector<Candidate> candidates = candidatesOf(pairs);
    if (candidates.empty()) return std::nullopt;
    const Candidate& best = candidates.front();
    *cost_per_pair = best.cost / double(pairs.size());
    if (*cost_per_pair > kMissFactor) return std::nullopt;
    double all = 0.0;
    for (const Candidate& candidate : candidates)
        all += std::exp(-0.5 * (candidate.cost - best.cost));
    PairPose result = describe(pairs, best.pose);
    result.information = best.information;
    // Each pair beyond the three that any answer fits makes chance less likely.
    const double most = std::min(0.97, 1.0 - std::pow(0.5, double(pairs.size()) - 2.0));
    result.reliability = std::min(most, 1.0 / all);
    return result;
}

/// Of five pairs and more: all but the one without which the others agree, when that is one only.
std::vector<Bearings> withoutTheOdd(const std::vector<Bearings>& pairs)
{
    double best = 1e300;
    std::vector<Bearings> kept = pairs;
    for (std::size_t odd = 0; odd < pairs.size(); ++odd) {
        std::vector<Bearings> others = pairs;
        others.erase(others.begin() + std::ptrdiff_t(odd));
        double cost = 1e300;
        if (distinctPairs(others) >= 4 && solve(others, &cost) && cost < best) best = cost, kept = others;
    }
    return kept;
}

} // namespace

std::optional<PairPose> poseFromBearingPicks(const std::vector<PickedPair>& picks)
{
    const std::vector<Bearings> pairs = bearingsOf(picks);
    for (const Bearings& pair : pairs)
        if (!pair.a.allFinite() || !pair.b.allFinite()) return std::nullopt;
    if (distinctPairs(pairs) < 3) return std::nullopt;
    if (const auto R = turnOnly(pairs)) {
        PairPose result = describe(pairs, {*R, Eigen::Vector3d::Zero()});
        result.rotation_only = true;
        result.information.setZero();
        for (const Bearings& pair : pairs) {
            const Eigen::Matrix3d J = *R * skew(pair.b);
            result.information.topLeftCorner<3, 3>() += J.transpose() * J / (2.0 * kPickSigma * kPickSigma);
        }
        result.reliability = pairs.size() == 3 ? 0.5 : 0.9;
        return result;
    }
    if (onOneLine(pairs)) return std::nullopt;
    double cost = 0.0;
    std::optional<PairPose> all = solve(pairs, &cost);
    constexpr double kAllAgree = 3.0;
    if ((all && cost < kAllAgree) || distinctPairs(pairs) < 5) return all;
    const std::vector<Bearings> kept = withoutTheOdd(pairs);
    if (kept.size() == pairs.size()) return all;
    double without = 0.0;
    std::optional<PairPose> rest = solve(kept, &without);
    if (!rest || (all && without > 0.3 * cost)) return all;
    rest->matches = int(pairs.size());
    rest->reliability *= 0.9;
    return rest;
}

} // namespace nexomap
