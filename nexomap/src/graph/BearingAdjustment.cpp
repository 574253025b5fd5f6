// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/BearingAdjustment.h"

#include "nexomap/src/graph/ScaleRecovery.h"

#include <ceres/ceres.h>
#include <Eigen/Dense>

#include <array>
#include <cstring>
#include <map>

namespace nexomap {
namespace {

constexpr double kBearingSigma = 0.06 * kDegree;
constexpr double kRangeSigma_m = 0.02;

struct Observation
{
    int node;
    Eigen::Vector3d bearing;
    double range_m;
};

using Track = std::vector<Observation>;

/// Joins the inliers of all edges into tracks: one feature of one panorama belongs to one track.
std::vector<Track> tracksOf(const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    using Key = std::array<std::uint32_t, 4>;
    std::map<Key, int> numbers;
    std::vector<Observation> observations;
    std::vector<int> parent;
    const auto root = [&](int k) {
        while (parent[k] != k)
            k = parent[k] = parent[parent[k]];
        return k;
    };
    const auto number = [&](int node, const Eigen::Vector3f& bearing, float range) {
        Key key{std::uint32_t(node)};
        std::memcpy(key.data() + 1, bearing.data(), 3 * sizeof(float));
        const auto [place, fresh] = numbers.emplace(key, int(observations.size()));
        if (fresh) {
            observations.push_back({node, bearing.cast<double>().normalized(), range});
            parent.push_back(place->second);
        }
        return place->second;
    };
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!kept[e] || edges[e].pose->rotation_only) continue;
        for (const PairInlier& inlier : edges[e].pose->inliers) {
            const int a = root(number(edges[e].i, inlier.bearing_0, inlier.range_0_m));
            const int b = root(number(edges[e].j, inlier.bearing_1, inlier.range_1_m));
            parent[std::max(a, b)] = std::min(a, b);
        }
    }
    std::vector<Track> all(observations.size());
    for (std::size_t k = 0; k < observations.size(); ++k)
        all[root(int(k))].push_back(observations[k]);
    std::vector<Track> tracks;
    for (Track& track : all) {
        std::map<int, int> seen;
        bool once = track.size() >= 2;
        for (const Observation& observation : track)
            once = once && ++seen[observation.node] == 1;
        if (once) tracks.push_back(std::move(track));
    }
    return tracks;
}

/// The point nearest to all rays of a track; false when it lies behind a station or too far to tell.
bool triangulate(const Track& track, const std::vector<Pose>& poses, Eigen::Vector3d* point)
{
    Eigen::Matrix3d A = Eigen::Matrix3d::Zero();
    Eigen::Vector3d b = Eigen::Vector3d::Zero();
    for (const Observation& o : track) {
        const Eigen::Vector3d u = poses[o.node].R * o.bearing;
        const Eigen::Matrix3d P = Eigen::Matrix3d::Identity() - u * u.transpose();
        A += P;
        b += P * poses[o.node].t;
    }
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> eigen(A);
    if (eigen.eigenvalues()[0] < 5e-4 * double(track.size())) return false;
    *point = eigen.eigenvectors() * eigen.eigenvalues().cwiseInverse().asDiagonal() *
             eigen.eigenvectors().transpose() * b;
    for (const Observation& o : track) {
        const Eigen::Vector3d ray = *point - poses[o.node].t;
        const double cosine = ray.normalized().dot(poses[o.node].R * o.bearing);
        if (!(cosine > std::cos(2.0 * kDegree))) return false;
    }
    return true;
}

/// Chordal distance between a bearing and the direction of the point. Three rows and no more where there is
/// no range: the solver has a faster elimination for blocks that are all of three.
struct BearingResidual
{
    Observation observation;

    template <class T>
    T compare(const T* quaternion, const T* centre, const T* point, T* residual) const
    {
        const Eigen::Map<const Eigen::Quaternion<T>> q(quaternion);
        const Eigen::Matrix<T, 3, 1> ray(point[0] - centre[0], point[1] - centre[1], point[2] - centre[2]);
        const Eigen::Matrix<T, 3, 1> local = q.conjugate() * ray;
        const T length = local.norm() + T(1e-12);
        for (int k = 0; k < 3; ++k)
            residual[k] = (local[k] / length - T(observation.bearing[k])) / T(kBearingSigma);
        return length;
    }
    template <class T>
    bool operator()(const T* quaternion, const T* centre, const T* point, T* residual) const
    {
        compare(quaternion, centre, point, residual);
        return true;
    }
};

/// The same with the point's distance.
struct RangedBearingResidual : BearingResidual
{
    template <class T>
    bool operator()(const T* quaternion, const T* centre, const T* point, T* residual) const
    {
        const T length = compare(quaternion, centre, point, residual);
        residual[3] = (length - T(observation.range_m)) / T(kRangeSigma_m + 0.01 * observation.range_m);
        return true;
    }
};

ceres::CostFunction* costOf(const Observation& observation)
{
    if (observation.range_m > 0)
        return new ceres::AutoDiffCostFunction<RangedBearingResidual, 4, 4, 3, 3>(
            new RangedBearingResidual{{observation}});
    return new ceres::AutoDiffCostFunction<BearingResidual, 3, 4, 3, 3>(new BearingResidual{observation});
}

struct TiltResidual
{
    double sigma;
    template <class T>
    bool operator()(const T* quaternion, T* residual) const
    {
        const Eigen::Map<const Eigen::Quaternion<T>> q(quaternion);
        const Eigen::Matrix<T, 3, 1> up = q * Eigen::Matrix<T, 3, 1>(T(0), T(0), T(1));
        residual[0] = up[0] / T(sigma);
        residual[1] = up[1] / T(sigma);
        return true;
    }
};

/// Keeps a pair's distance about where it was: parts that share no feature with the rest, and the whole where
/// no range tells its size, could else shrink or grow freely.
struct LengthResidual
{
    double length;
    template <class T>
    bool operator()(const T* centre_i, const T* centre_j, T* residual) const
    {
        T d2(1e-12);
        for (int k = 0; k < 3; ++k)
            d2 += (centre_i[k] - centre_j[k]) * (centre_i[k] - centre_j[k]);
        residual[0] = (sqrt(d2) / T(length) - T(1)) / T(0.03);
        return true;
    }
};

/// Points first: none touches another, and what is left couples stations that share features only.
std::shared_ptr<ceres::ParameterBlockOrdering> eliminationOrder(const ceres::Problem& problem,
                                                                std::vector<Eigen::Vector3d>& points)
{
    auto order = std::make_shared<ceres::ParameterBlockOrdering>();
    std::vector<double*> blocks;
    problem.GetParameterBlocks(&blocks);
    for (double* block : blocks)
        order->AddElementToGroup(block, 1);
    for (Eigen::Vector3d& point : points)
        order->AddElementToGroup(point.data(), 0);
    return order;
}

} // namespace

void adjustBearings(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                    const std::vector<int>& component, double tilt_sigma_rad, std::vector<Pose>& poses)
{
    std::vector<char> scaleless(component.size(), 0);
    std::vector<char> chosen = kept;
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (kept[e] && !edges[e].pose->metric) scaleless[component[edges[e].i]] = 1;
    for (std::size_t e = 0; e < edges.size(); ++e)
        chosen[e] = kept[e] && scaleless[component[edges[e].i]];

    const int nodes = int(poses.size());
    std::vector<Eigen::Quaterniond> rotations;
    std::vector<Eigen::Vector3d> centres;
    for (const Pose& pose : poses) {
        rotations.emplace_back(pose.R);
        centres.push_back(pose.t);
    }
    std::vector<Track> tracks;
    std::vector<Eigen::Vector3d> points;
    std::vector<char> used(nodes, 0);
    for (Track& track : tracksOf(edges, chosen)) {
        Eigen::Vector3d point;
        if (!triangulate(track, poses, &point)) continue;
        for (const Observation& o : track) {
            used[o.node] = 1;
        }
        tracks.push_back(std::move(track));
        points.push_back(point);
    }
    if (tracks.empty()) return;

    ceres::Problem problem;
    for (std::size_t k = 0; k < tracks.size(); ++k)
        for (const Observation& o : tracks[k])
            problem.AddResidualBlock(costOf(o), new ceres::CauchyLoss(2.0), rotations[o.node].coeffs().data(),
                                     centres[o.node].data(), points[k].data());
    std::map<int, int> members; // of each component the first
    for (int n = 0; n < nodes; ++n) {
        if (!used[n]) continue;
        members.emplace(component[n], n);
        problem.SetManifold(rotations[n].coeffs().data(), new ceres::EigenQuaternionManifold);
        // The prior counts like a few features only, so that it settles the vertical without bending the
        // poses.
        problem.AddResidualBlock(
            new ceres::AutoDiffCostFunction<TiltResidual, 2, 4>(new TiltResidual{tilt_sigma_rad}), nullptr,
            rotations[n].coeffs().data());
    }
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const int i = edges[e].i, j = edges[e].j;
        const double length = (centres[i] - centres[j]).norm();
        if (!chosen[e] || !used[i] || !used[j] || length < 1e-6) continue;
        problem.AddResidualBlock(
            new ceres::AutoDiffCostFunction<LengthResidual, 1, 3, 3>(new LengthResidual{length}), nullptr,
            centres[i].data(), centres[j].data());
    }
    for (const auto& [group, first] : members)
        problem.SetParameterBlockConstant(centres[first].data());
    ceres::Solver::Options options;
    options.linear_solver_type = ceres::SPARSE_SCHUR;
    options.linear_solver_ordering = eliminationOrder(problem, points);
    options.num_threads = 1;
    options.max_num_iterations = 50;
    options.function_tolerance = 1e-5; // what is left moves no pose by a tenth of its deviation
    options.logging_type = ceres::SILENT;
    ceres::Solver::Summary summary;
    ceres::Solve(options, &problem, &summary);
    if (!summary.IsSolutionUsable()) return;
    for (int n = 0; n < nodes; ++n) {
        if (!used[n]) continue;
        poses[n].R = rotations[n].normalized().toRotationMatrix();
        poses[n].t = centres[n];
    }
}

} // namespace nexomap
