// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/FeatureTracks.h"

#include <ceres/ceres.h>
#include <Eigen/Geometry>

#include <memory>

namespace nexomap {

constexpr double kViewSigma = 0.06 * kDegree; // of a bearing
constexpr double kViewCauchy = 2.0;           // whitened
constexpr double kViewRangeSigma_m = 0.02;    // and a hundredth of the range

/// Chordal distance between a bearing and the direction of the point. Three rows, as all of a point's
/// residuals have: the solver has a faster elimination for such.
struct BearingResidual
{
    Eigen::Vector3d bearing;

    template <class T>
    bool operator()(const T* quaternion, const T* centre, const T* point, T* residual) const
    {
        const Eigen::Map<const Eigen::Quaternion<T>> q(quaternion);
        const Eigen::Matrix<T, 3, 1> ray(point[0] - centre[0], point[1] - centre[1], point[2] - centre[2]);
        const Eigen::Matrix<T, 3, 1> local = q.conjugate() * ray;
        const T length = local.norm() + T(1e-12);
        for (int k = 0; k < 3; ++k)
            residual[k] = (local[k] / length - T(bearing[k])) / T(kViewSigma);
        return true;
    }
};

/// The point's distance against a measured range.
struct RangeResidual
{
    double range_m;

    template <class T>
    bool operator()(const T* centre, const T* point, T* residual) const
    {
        const Eigen::Matrix<T, 3, 1> ray(point[0] - centre[0], point[1] - centre[1], point[2] - centre[2]);
        residual[0] = (ray.norm() + T(1e-12) - T(range_m)) / T(kViewRangeSigma_m + 0.01 * range_m);
        residual[1] = residual[2] = T(0);
        return true;
    }
};

/// What one panorama says of a point.
inline void addView(const TrackView& view, double* quaternion, double* centre, double* point,
                    ceres::Problem& problem)
{
    problem.AddResidualBlock(
        new ceres::AutoDiffCostFunction<BearingResidual, 3, 4, 3, 3>(new BearingResidual{view.bearing}),
        new ceres::CauchyLoss(kViewCauchy), quaternion, centre, point);
    if (view.range_m > 0)
        problem.AddResidualBlock(
            new ceres::AutoDiffCostFunction<RangeResidual, 3, 3, 3>(new RangeResidual{view.range_m}),
            new ceres::CauchyLoss(kViewCauchy), centre, point);
}

/// The panorama's vertical against the world's.
struct TiltResidual
{
    double sigma; ///< radians
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

/// Keeps a pair's distance about where it was, within its deviation: parts that share no feature with the
/// rest, and the whole where no range tells its size, could else shrink or grow freely.
struct LengthResidual
{
    double length, deviation; ///< the latter relative
    template <class T>
    bool operator()(const T* centre_i, const T* centre_j, T* residual) const
    {
        T d2(1e-12);
        for (int k = 0; k < 3; ++k)
            d2 += (centre_i[k] - centre_j[k]) * (centre_i[k] - centre_j[k]);
        residual[0] = (sqrt(d2) / T(length) - T(1)) / T(deviation);
        return true;
    }
};

/// A panorama among the unknowns. The solver takes unknowns in the order of their addresses: only side by
/// side they come in the same order, and the result with the same bits, wherever the heap puts them.
struct StationUnknowns
{
    Eigen::Quaterniond rotation;
    Eigen::Vector3d centre;
};

/// Points first: none touches another, and what is left couples stations that share features only.
inline std::shared_ptr<ceres::ParameterBlockOrdering> pointsFirst(const ceres::Problem& problem,
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

/// Solves in place, in one thread.
/// @return false without a usable solution: nothing is to be taken from the unknowns
inline bool solveAdjustment(ceres::Problem& problem, std::vector<Eigen::Vector3d>& points, int iterations)
{
    ceres::Solver::Options options;
    options.linear_solver_type = ceres::SPARSE_SCHUR;
    if (!points.empty()) options.linear_solver_ordering = pointsFirst(problem, points);
    options.num_threads = 1;
    options.max_num_iterations = iterations;
    options.function_tolerance = 1e-5; // what is left moves no pose by a tenth of its deviation
    options.logging_type = ceres::SILENT;
    ceres::Solver::Summary summary;
    ceres::Solve(options, &problem, &summary);
    return summary.IsSolutionUsable();
}

} // namespace nexomap
