// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/Geometry.h"

#include <Eigen/SVD>

#include <algorithm>
#include <cmath>

namespace nexomap {

Eigen::Matrix3d skew(const Eigen::Vector3d& v)
{
    Eigen::Matrix3d m;
    m << 0, -v.z(), v.y(), v.z(), 0, -v.x(), -v.y(), v.x(), 0;
    return m;
}

Eigen::Matrix3d expRotation(const Eigen::Vector3d& v)
{
    const double angle2 = v.squaredNorm();
    const Eigen::Matrix3d K = skew(v);
    if (angle2 < 1e-12) return Eigen::Matrix3d::Identity() + K + 0.5 * K * K;
    const double angle = std::sqrt(angle2);
    return Eigen::Matrix3d::Identity() + std::sin(angle) / angle * K +
           (1.0 - std::cos(angle)) / angle2 * K * K;
}

Eigen::Vector3d logRotation(const Eigen::Matrix3d& R)
{
    const Eigen::Vector3d axis(R(2, 1) - R(1, 2), R(0, 2) - R(2, 0), R(1, 0) - R(0, 1));
    const double sine = 0.5 * axis.norm();
    const double cosine = 0.5 * (R.trace() - 1.0);
    const double angle = std::atan2(sine, cosine);
    if (angle < 1e-6) return 0.5 * axis;
    if (angle < 3.0) return angle / (2.0 * sine) * axis;
    // Near half a turn the antisymmetric part fades: the axis is the largest column of R + R^T.
    const Eigen::Matrix3d S = 0.5 * (R + R.transpose()) - cosine * Eigen::Matrix3d::Identity();
    int column = 0;
    S.diagonal().maxCoeff(&column);
    Eigen::Vector3d u = S.col(column).normalized();
    if (u.dot(axis) < 0) u = -u;
    return angle * u;
}

Eigen::Matrix3d inverseRightJacobian(const Eigen::Vector3d& v)
{
    const double angle2 = v.squaredNorm();
    const Eigen::Matrix3d K = skew(v);
    double c = 1.0 / 12.0;
    if (angle2 > 1e-8) {
        const double angle = std::sqrt(angle2);
        c = 1.0 / angle2 - (1.0 + std::cos(angle)) / (2.0 * angle * std::max(1e-9, std::sin(angle)));
    }
    return Eigen::Matrix3d::Identity() + 0.5 * K + c * K * K;
}

Matrix6d adjoint(const Pose& pose)
{
    Matrix6d A = Matrix6d::Zero();
    A.topLeftCorner<3, 3>() = pose.R;
    A.bottomRightCorner<3, 3>() = pose.R;
    A.bottomLeftCorner<3, 3>() = skew(pose.t) * pose.R;
    return A;
}

Eigen::Matrix3d rotationAboutZ(double radians)
{
    const double c = std::cos(radians), s = std::sin(radians);
    Eigen::Matrix3d R;
    R << c, -s, 0, s, c, 0, 0, 0, 1;
    return R;
}

Eigen::Matrix3d nearestRotation(const Eigen::Matrix3d& R)
{
    const Eigen::JacobiSVD<Eigen::Matrix3d> svd(R, Eigen::ComputeFullU | Eigen::ComputeFullV);
    Eigen::Matrix3d D = Eigen::Matrix3d::Identity();
    D(2, 2) = (svd.matrixU() * svd.matrixV().transpose()).determinant() < 0 ? -1 : 1;
    return svd.matrixU() * D * svd.matrixV().transpose();
}

double wrapAngle(double angle)
{
    double wrapped = std::remainder(angle, 2.0 * kPi);
    if (wrapped <= -kPi) wrapped += 2.0 * kPi;
    return wrapped;
}

double headingOf(const Eigen::Matrix3d& world_from_pano)
{
    return std::atan2(world_from_pano(1, 0), world_from_pano(0, 0));
}

double rotationAngle(const Eigen::Matrix3d& a, const Eigen::Matrix3d& b)
{
    return logRotation(a.transpose() * b).norm();
}

} // namespace nexomap
