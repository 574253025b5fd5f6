// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The last digits of a metric relative pose.
#include "nexomap/src/pair/MetricRefinement.h"

#include "nexomap/src/pair/Sphere.h"

#include <Eigen/Cholesky>

#include <cmath>

namespace nexomap {
namespace {

using Vector6d = Eigen::Matrix<double, 6, 1>;

constexpr double kRangeSigma_m = 0.010;
constexpr double kBearingSigma = 0.03 * kDegree;
constexpr double kTiltSigma = 0.7 * kDegree; // of one panorama against the other: half a degree each
constexpr double kCauchy = 2.0;              // whitened
constexpr double kPlaneSigma_m = 0.010;
constexpr int kDenseSamples = 12000; // a map
constexpr double kWideGate_m = 0.15, kGate_m = 0.05;

/// How a refinement goes.
struct Schedule
{
    int iterations = 12;
    int wide = 3;               ///< of them, those in which surfaces may still be far apart
    double plane_pairs = 250.0; ///< neighbouring samples err together: all of them count as so many
};
/// From a pose that is right to a few millimetres. The noise of range samples is hardly shared by samples two
/// degrees apart: so many more of them count so much more.
constexpr Schedule kDense{4, 0, 4000.0};

struct Normal
{
    Matrix6d matrix = Matrix6d::Zero();
    Vector6d right = Vector6d::Zero();

    /// residual + J * step, weighted
    template <class Residual, class Jacobian>
    void add(const Residual& residual, const Jacobian& jacobian, double weight)
    {
        matrix += weight * jacobian.transpose() * jacobian;
        right -= weight * jacobian.transpose() * residual;
    }
};

double cauchyWeight(double squared)
{
    return 1.0 / (1.0 + squared / (kCauchy * kCauchy));
}

Eigen::Matrix3d pointCovariance(const Eigen::Vector3d& bearing, double range)
{
    const Eigen::Matrix3d along = bearing * bearing.transpose();
    return kRangeSigma_m * kRangeSigma_m * along +
           std::pow(range * kBearingSigma, 2) * (Eigen::Matrix3d::Identity() - along);
}

/// Moves of a point R p + t under the right perturbation.
Eigen::Matrix<double, 3, 6> motionJacobian(const RigidPose& pose, const Eigen::Vector3d& point)
{
    Eigen::Matrix<double, 3, 6> jacobian;
    jacobian.leftCols<3>() = -pose.R * crossMatrix(point);
    jacobian.rightCols<3>() = pose.R;
    return jacobian;
}

/// @return squared whitened residual
double addPointPair(const Correspondence& m, const RigidPose& pose, Normal* normal)
{
    const Eigen::Vector3d residual = pose * m.point_1() - m.point_0();
    const Eigen::Matrix3d covariance = pointCovariance(m.bearing_0, m.range_0) +
                                       pose.R * pointCovariance(m.bearing_1, m.range_1) * pose.R.transpose();
    const Eigen::LLT<Eigen::Matrix3d> factor(covariance);
    const Eigen::Vector3d white = factor.matrixL().solve(residual);
    const Eigen::Matrix<double, 3, 6> jacobian = factor.matrixL().solve(motionJacobian(pose, m.point_1()));
    normal->add(white, jacobian, cauchyWeight(white.squaredNorm()));
    return white.squaredNorm();
}

void addSurfaces(const std::vector<SurfaceSample>& samples, const RangeMap& map, const RigidPose& pose,
                 bool inverse, double gate_m, std::vector<std::pair<double, Vector6d>>* rows)
{
    const EquirectGrid grid{map.range_m.cols, map.range_m.rows};
    const RigidPose map_from_samples = inverse ? pose.inverse() : pose;
    for (const SurfaceSample& sample : samples) {
        const Eigen::Vector3d point = map_from_samples * sample.point;
        const double range = point.norm();
        if (range < 0.2) continue;
        const Eigen::Vector2d pixel = grid.pixel(point);
        const int column = std::min(grid.width - 1, int(pixel.x())),
                  row = std::min(grid.height - 1, int(pixel.y()));
        const double measured = map.range_m(row, column);
        if (!(measured > 0.0) || std::abs(measured - range) > gate_m + 0.01 * range) continue;
        const auto target = surfaceAt(map, column, row);
        if (!target || target->normal.dot(map_from_samples.R * sample.normal) < 0.9) continue;
        const double distance = target->normal.dot(point - target->point);
        if (std::abs(distance) > gate_m) continue;
        Vector6d jacobian;
        if (!inverse) {
            jacobian = motionJacobian(pose, sample.point).transpose() * target->normal;
        } else {
            // The sample belongs to 0, the plane to 1: R^T (p - t) moves by p' x rotation - translation.
            jacobian.head<3>() = target->normal.cross(point);
            jacobian.tail<3>() = -target->normal;
        }
        rows->push_back({distance, jacobian});
    }
}

int addSurfaceTerms(const std::vector<std::pair<double, Vector6d>>& rows, double plane_pairs, Normal* normal)
{
    if (rows.size() < 50) return 0;
    const double weight = std::min(1.0, plane_pairs / double(rows.size())) / (kPlaneSigma_m * kPlaneSigma_m);
    for (const auto& [distance, jacobian] : rows) {
        const double loss = cauchyWeight(distance * distance / (kPlaneSigma_m * kPlaneSigma_m));
        normal->matrix += weight * loss * jacobian * jacobian.transpose();
        normal->right -= weight * loss * jacobian * distance;
    }
    return int(rows.size());
}

void addTiltPrior(const RigidPose& pose, const Eigen::Vector3d& up_0, const Eigen::Vector3d& up_1,
                  Normal* normal)
{
    Eigen::Matrix<double, 2, 3> across; // the two level directions of 0
    across.row(0) = up_0.unitOrthogonal().transpose();
    across.row(1) = up_0.cross(up_0.unitOrthogonal()).transpose();
    Eigen::Matrix<double, 2, 6> jacobian = Eigen::Matrix<double, 2, 6>::Zero();
    jacobian.leftCols<3>() = -across * pose.R * crossMatrix(up_1);
    const Eigen::Vector2d residual = across * (pose.R * up_1);
    normal->add(residual, jacobian, 1.0 / (kTiltSigma * kTiltSigma));
}

RefinedPose refine(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                   const RigidPose& start, const Schedule& schedule, const RangeMap* map_0,
                   const RangeMap* map_1, const std::vector<SurfaceSample>* surfaces_0,
                   const std::vector<SurfaceSample>* surfaces_1, const Eigen::Vector3d& up_0,
                   const Eigen::Vector3d& up_1)
{
    RefinedPose refined;
    refined.pose = start;
    for (int iteration = 0; iteration < schedule.iterations; ++iteration) {
        Normal normal;
        double squares = 0.0;
        for (const int i : inliers)
            squares += addPointPair(matches[i], refined.pose, &normal);
        refined.rms = inliers.empty() ? 0.0 : std::sqrt(squares / (3.0 * double(inliers.size())));
        if (surfaces_0 && surfaces_1) {
            const double gate_m = iteration < schedule.wide ? kWideGate_m : kGate_m;
            std::vector<std::pair<double, Vector6d>> rows;
            addSurfaces(*surfaces_1, *map_0, refined.pose, false, gate_m, &rows);
            addSurfaces(*surfaces_0, *map_1, refined.pose, true, gate_m, &rows);
            refined.surface_pairs = addSurfaceTerms(rows, schedule.plane_pairs, &normal);
        }
        refined.information = normal.matrix;
        addTiltPrior(refined.pose, up_0, up_1, &normal);
        normal.matrix.diagonal().array() += 1e-6;
        const Vector6d step = normal.matrix.ldlt().solve(normal.right);
        if (!step.allFinite() || step.head<3>().norm() > 0.5 || step.tail<3>().norm() > 2.0) break;
        refined.pose = perturbed(refined.pose, step);
        if (iteration > 4 && step.norm() < 1e-7) break;
    }
    return refined;
}

} // namespace

RefinedPose refineMetricPose(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                             const RigidPose& start, const RangeMap* map_0, const RangeMap* map_1,
                             const std::vector<SurfaceSample>* surfaces_0,
                             const std::vector<SurfaceSample>* surfaces_1, const Eigen::Vector3d& up_0,
                             const Eigen::Vector3d& up_1)
{
    return refine(matches, inliers, start, {}, map_0, map_1, surfaces_0, surfaces_1, up_0, up_1);
}

RefinedPose refineDensely(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                          const RigidPose& start, const RangeMap& map_0, const RangeMap& map_1,
                          const Eigen::Vector3d& up_0, const Eigen::Vector3d& up_1)
{
    const auto surfaces_0 = sampleSurfaces(map_0, kDenseSamples),
               surfaces_1 = sampleSurfaces(map_1, kDenseSamples);
    return refine(matches, inliers, start, kDense, &map_0, &map_1, &surfaces_0, &surfaces_1, up_0, up_1);
}

} // namespace nexomap
