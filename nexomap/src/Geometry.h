// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Sphere.h"

namespace nexomap {

using Matrix6d = Eigen::Matrix<double, 6, 6>;
using Vector6d = Eigen::Matrix<double, 6, 1>;

/// A rigid motion: point_target = R * point_source + t.
struct Pose
{
    Eigen::Matrix3d R = Eigen::Matrix3d::Identity();
    Eigen::Vector3d t = Eigen::Vector3d::Zero();

    Pose inverse() const { return {R.transpose(), -(R.transpose() * t)}; }
    Eigen::Vector3d operator*(const Eigen::Vector3d& point) const { return R * point + t; }
    Pose operator*(const Pose& other) const { return {R * other.R, R * other.t + t}; }
};

Eigen::Matrix3d skew(const Eigen::Vector3d& v);
/// Rotation by |v| radians about v (Rodrigues), and back.
Eigen::Matrix3d expRotation(const Eigen::Vector3d& v);
Eigen::Vector3d logRotation(const Eigen::Matrix3d& R);
/// Inverse of the right Jacobian of SO(3): logRotation(R * expRotation(d)) = logRotation(R) + result * d.
Eigen::Matrix3d inverseRightJacobian(const Eigen::Vector3d& v);
/// Carries the error [rotation, translation] of a pose from its source frame to its target frame.
Matrix6d adjoint(const Pose& pose);
Eigen::Matrix3d rotationAboutZ(double radians);
/// The nearest rotation to a matrix that rounding has bent (polar decomposition).
Eigen::Matrix3d nearestRotation(const Eigen::Matrix3d& R);

/// Brings an angle into (-pi, pi].
double wrapAngle(double radians);
/// Heading of azimuth 0.
double headingOf(const Eigen::Matrix3d& world_from_pano);
/// Angle between two rotations, radians.
double rotationAngle(const Eigen::Matrix3d& a, const Eigen::Matrix3d& b);

} // namespace nexomap
