// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The last digits of a pose from bearings against points in space.
#include "nexomap/src/pair/OneSidedRefinement.h"

#include "nexomap/src/pair/Sphere.h"

#include <Eigen/Cholesky>

#include <cmath>

namespace nexomap {
namespace {

using Vector6d = Eigen::Matrix<double, 6, 1>;

constexpr double kRangeSigma_m = 0.010;
constexpr double kBearingSigma = 0.04 * kDegree; // of one panorama; a match joins two
constexpr double kTiltSigma = 0.7 * kDegree;     // of one panorama against the other: half a degree each
constexpr double kCauchy = 2.0;                  // whitened

struct Normal
{
    Matrix6d matrix = Matrix6d::Zero();
    Vector6d right = Vector6d::Zero();
    double squares = 0.0;
    int rows = 0;

    template <class Residual, class Jacobian>
    void add(const Residual& residual, const Jacobian& jacobian)
    {
        const double square = residual.squaredNorm(), weight = 1.0 / (1.0 + square / (kCauchy * kCauchy));
        matrix += weight * jacobian.transpose() * jacobian;
        right -= weight * jacobian.transpose() * residual;
        squares += square;
        rows += int(residual.rows());
    }
};

/// Two directions across a unit vector, as rows.
Eigen::Matrix<double, 2, 3> across(const Eigen::Vector3d& u)
{
    const Eigen::Vector3d a = u.unitOrthogonal();
    Eigen::Matrix<double, 2, 3> rows;
    rows << a.transpose(), u.cross(a).transpose();
    return rows;
}

void addPoint(const Correspondence& m, const RigidPose& pose, Normal* normal)
{
    const Eigen::Vector3d point_1 = m.point_1(), point = pose * point_1;
    const double distance = point.norm();
    if (distance < 0.05) return;
    const Eigen::Vector3d direction = point / distance;
    const Eigen::Matrix<double, 2, 3> basis = across(m.bearing_0);
    const Eigen::Matrix<double, 2, 3> turn =
        basis * (Eigen::Matrix3d::Identity() - direction * direction.transpose()) / distance;
    const Eigen::Vector3d along = pose.R * m.bearing_1;
    const Eigen::Vector2d range = turn * along * kRangeSigma_m;
    const Eigen::Matrix<double, 2, 3> sideways = // what the other's bearing moves
        turn * (Eigen::Matrix3d::Identity() - along * along.transpose()) * (m.range_1 * kBearingSigma);
    const Eigen::Matrix2d covariance = kBearingSigma * kBearingSigma * Eigen::Matrix2d::Identity() +
                                       range * range.transpose() + sideways * sideways.transpose();
    const Eigen::LLT<Eigen::Matrix2d> factor(covariance);
    Eigen::Matrix<double, 3, 6> motion;
    motion.leftCols<3>() = -pose.R * crossMatrix(point_1);
    motion.rightCols<3>() = pose.R;
    const Eigen::Vector2d white = factor.matrixL().solve(basis * direction);
    const Eigen::Matrix<double, 2, 6> jacobian = factor.matrixL().solve(turn * motion);
    normal->add(white, jacobian);
}

void addEpipolar(const Correspondence& m, const RigidPose& pose, Normal* normal)
{
    const Eigen::Vector3d& a = m.bearing_0;
    const Eigen::Vector3d b = pose.R * m.bearing_1, n = pose.t.cross(b);
    const double gradient = std::sqrt(n.squaredNorm() + pose.t.cross(a).squaredNorm());
    if (gradient < 1e-3) return;
    const double scale = 1.0 / (gradient * kBearingSigma);
    Eigen::Matrix<double, 1, 6> jacobian;
    jacobian.head<3>() = scale * m.bearing_1.cross(pose.R.transpose() * a.cross(pose.t));
    jacobian.tail<3>() = scale * (pose.R.transpose() * b.cross(a));
    normal->add(Eigen::Matrix<double, 1, 1>(scale * a.dot(n)), jacobian);
}

} // namespace

RefinedPose refineOneSidedPose(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                               const RigidPose& start, int iterations)
{
    RefinedPose refined;
    refined.pose = start;
    for (int iteration = 0; iteration < iterations; ++iteration) {
        Normal normal;
        for (const int i : inliers) {
            const Correspondence& match = matches[std::size_t(i)];
            if (match.range_1 > 0.0)
                addPoint(match, refined.pose, &normal);
            else
                addEpipolar(match, refined.pose, &normal);
        }
        refined.rms = normal.rows > 0 ? std::sqrt(normal.squares / normal.rows) : 0.0;
        refined.information = normal.matrix;
        Eigen::Matrix<double, 2, 6> lean = Eigen::Matrix<double, 2, 6>::Zero();
        lean.leftCols<3>() = (-refined.pose.R * crossMatrix(Eigen::Vector3d::UnitZ())).topRows<2>();
        const Eigen::Vector2d lean_now = refined.pose.R.col(2).head<2>();
        // A camera that is held by hand leaves the prior behind.
        const double prior = 1.0 / (kTiltSigma * kTiltSigma + 0.25 * lean_now.squaredNorm());
        normal.matrix += prior * lean.transpose() * lean;
        normal.right -= prior * lean.transpose() * lean_now;
        normal.matrix.diagonal().array() += 1e-6;
        Vector6d step = normal.matrix.ldlt().solve(normal.right);
        if (!step.allFinite()) break;
        const double turned = step.head<3>().norm(), moved = step.tail<3>().norm();
        step *= std::min({1.0, 0.3 / std::max(turned, 1e-12), 1.0 / std::max(moved, 1e-12)});
        refined.pose = perturbed(refined.pose, step);
        if (step.norm() < 1e-7) break;
    }
    return refined;
}

} // namespace nexomap
