// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <Eigen/Geometry>

namespace nexomap {

/// point_in_0 = R * point_in_1 + t
struct RigidPose
{
    Eigen::Matrix3d R = Eigen::Matrix3d::Identity();
    Eigen::Vector3d t = Eigen::Vector3d::Zero();

    Eigen::Vector3d operator*(const Eigen::Vector3d& point) const { return R * point + t; }
    RigidPose inverse() const { return {R.transpose(), -(R.transpose() * t)}; }
};

inline Eigen::Matrix3d crossMatrix(const Eigen::Vector3d& v)
{
    Eigen::Matrix3d m;
    m << 0, -v.z(), v.y(), v.z(), 0, -v.x(), -v.y(), v.x(), 0;
    return m;
}

inline Eigen::Matrix3d rotationFromVector(const Eigen::Vector3d& v)
{
    const double angle = v.norm();
    return angle < 1e-12 ? Eigen::Matrix3d(Eigen::Matrix3d::Identity() + crossMatrix(v))
                         : Eigen::AngleAxisd(angle, v / angle).toRotationMatrix();
}

inline Eigen::Matrix3d headingRotation(double yaw)
{
    return Eigen::AngleAxisd(yaw, Eigen::Vector3d::UnitZ()).toRotationMatrix();
}

/// Right perturbation: R * exp(step.head), t + R * step.tail.
inline RigidPose perturbed(const RigidPose& pose, const Eigen::Matrix<double, 6, 1>& step)
{
    RigidPose moved;
    moved.R = Eigen::Quaterniond(pose.R * rotationFromVector(step.head<3>())).normalized().toRotationMatrix();
    moved.t = pose.t + pose.R * step.tail<3>();
    return moved;
}

/// Angle between z and its image: what the two panoramas lean against each other, radians.
inline double leanOf(const Eigen::Matrix3d& R)
{
    return std::atan2(std::hypot(R(0, 2), R(1, 2)), R(2, 2));
}

} // namespace nexomap
