// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The last digits of a relative pose from bearings.
#include "nexomap/src/pair/BearingRefinement.h"

#include "nexomap/src/pair/Sphere.h"

#include <Eigen/Cholesky>

#include <cmath>

namespace nexomap {
namespace {

using Vector6d = Eigen::Matrix<double, 6, 1>;

constexpr double kBearingSigma = 0.06 * kDegree; // one match, both ends
constexpr double kCauchy = 0.05 * kDegree;
constexpr double kTiltSigma = 0.7 * kDegree; // of a pair on tripods; a hand-held camera leaves it behind

} // namespace

RefinedBearingPose refineBearingPose(const std::vector<Correspondence>& matches,
                                     const std::vector<int>& inliers, const RigidPose& start, int iterations)
{
    RefinedBearingPose refined;
    refined.pose = start;
    for (int iteration = 0; iteration < iterations; ++iteration) {
        const RigidPose& pose = refined.pose;
        Matrix6d normal = Matrix6d::Zero();
        Vector6d right = Vector6d::Zero();
        double squares = 0.0;
        for (const int i : inliers) {
            const Eigen::Vector3d& a = matches[i].bearing_0;
            const Eigen::Vector3d b = pose.R * matches[i].bearing_1;
            const Eigen::Vector3d n0 = pose.t.cross(b);
            const double gradient = std::sqrt(n0.squaredNorm() + pose.t.cross(a).squaredNorm());
            if (gradient < 1e-9) continue;
            const double residual = a.dot(n0) / gradient;
            // a . (t x R b): R turns by its right perturbation, t moves by R * translation.
            Vector6d jacobian;
            jacobian.head<3>() = matches[i].bearing_1.cross(pose.R.transpose() * a.cross(pose.t)) / gradient;
            jacobian.tail<3>() = pose.R.transpose() * b.cross(a) / gradient;
            const double weight =
                1.0 / (kBearingSigma * kBearingSigma * (1.0 + residual * residual / (kCauchy * kCauchy)));
            normal += weight * jacobian * jacobian.transpose();
            right -= weight * jacobian * residual;
            squares += residual * residual;
        }
        refined.rms = inliers.empty() ? 0.0 : std::sqrt(squares / double(inliers.size()));
        // The length of t is free: take its direction out of what is known, then hold it.
        const Eigen::Vector3d along = pose.R.transpose() * pose.t;
        Matrix6d project = Matrix6d::Identity();
        project.bottomRightCorner<3, 3>() -= along * along.transpose();
        refined.information = project * normal * project;

        Eigen::Matrix<double, 2, 6> lean = Eigen::Matrix<double, 2, 6>::Zero();
        lean.leftCols<3>() = (-pose.R * crossMatrix(Eigen::Vector3d::UnitZ())).topRows<2>();
        const Eigen::Vector2d lean_now = pose.R.col(2).head<2>();
        const double prior = 1.0 / (kTiltSigma * kTiltSigma + 0.25 * lean_now.squaredNorm());
        normal += prior * lean.transpose() * lean;
        right -= prior * lean.transpose() * lean_now;
        normal.bottomRightCorner<3, 3>() += 1e8 * along * along.transpose();
        normal.diagonal().array() += 1e-3;
        Vector6d step = normal.ldlt().solve(right);
        if (!step.allFinite()) break;
        const double length = step.norm();
        if (length > 0.3) step *= 0.3 / length;
        refined.pose = perturbed(pose, step);
        refined.pose.t.normalize();
        if (length < 1e-7) break;
    }
    return refined;
}

Matrix6d rotationInformation(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                             const Eigen::Matrix3d& R)
{
    Matrix6d information = Matrix6d::Zero();
    for (const int i : inliers) {
        const Eigen::Matrix3d jacobian = R * crossMatrix(matches[i].bearing_1);
        information.topLeftCorner<3, 3>() +=
            jacobian.transpose() * jacobian / (kBearingSigma * kBearingSigma);
    }
    return information;
}

} // namespace nexomap
