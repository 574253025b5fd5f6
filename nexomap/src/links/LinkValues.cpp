// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/links/LinkValues.h"

#include <Eigen/Geometry>

#include <cmath>

namespace nexomap {
namespace {

/// Axes along a walk: x ahead, z as near to the given vertical as being square to x allows.
Eigen::Matrix3d walkFrame(const Eigen::Vector3d& ahead, const Eigen::Vector3d& vertical)
{
    Eigen::Matrix3d frame;
    frame.col(0) = ahead.normalized();
    Eigen::Vector3d left = vertical.cross(frame.col(0));
    if (left.norm() < 1e-6) left = frame.col(0).unitOrthogonal();
    frame.col(1) = left.normalized();
    frame.col(2) = frame.col(0).cross(frame.col(1));
    return frame;
}

double elevationOf(const Eigen::Vector3d& v)
{
    return v.norm() < 1e-12 ? 0.0 : 0.5 * kPi - polarOf(v);
}

/// Angle about the walk from the world's vertical to the panorama's.
double rollOf(const Eigen::Matrix3d& world_from_pano, const Eigen::Vector3d& walk, const Eigen::Vector3d& up)
{
    const Eigen::Matrix3d frame = walkFrame(walk, up);
    const Eigen::Vector3d pole = frame.transpose() * world_from_pano.col(2);
    return std::hypot(pole.y(), pole.z()) < 1e-6 ? 0.0 : std::atan2(-pole.y(), pole.z());
}

Eigen::Matrix3d rotationAboutX(double angle)
{
    return expRotation(Eigen::Vector3d(wrapAngle(angle), 0, 0)); // saved values may be of any size
}

} // namespace

LinkValues linkValues(const Pose& world_from_0, const Pose& world_from_1, double height_0_m,
                      double height_1_m, const Eigen::Vector3d& up)
{
    const Pose pano0_from_world = world_from_0.inverse(), pano1_from_world = world_from_1.inverse();
    const Eigen::Vector3d walk = world_from_1.t - world_from_0.t;
    const Eigen::Vector3d station_1_in_0 = pano0_from_world * world_from_1.t;
    const Eigen::Vector3d station_0_in_1 = pano1_from_world * world_from_0.t;
    LinkValues values;
    values.spacing = walk.norm();
    values.rot_0 = wrapAngle(-azimuthOf(station_1_in_0));
    values.rot_1 = wrapAngle(-azimuthOf(station_0_in_1) - kPi);
    values.tilt_y0 = elevationOf(station_1_in_0);
    if (values.spacing > 1e-9) {
        values.tilt_x0 = rollOf(world_from_0.R, walk, up);
        values.tilt_x1 = rollOf(world_from_1.R, walk, up);
    }
    values.icon_y0 = polarOf(pano1_from_world * (world_from_0.t - height_0_m * up));
    values.icon_y1 = polarOf(pano0_from_world * (world_from_1.t - height_1_m * up));
    return values;
}

Pose relativePose(const LinkValues& values)
{
    const Eigen::Vector3d ahead_in_0 = directionFromAngles(-values.rot_0, 0.5 * kPi - values.tilt_y0);
    const Eigen::Vector3d ahead_in_1 = directionFromAngles(-values.rot_1, 0.5 * kPi - values.tilt_y0);
    const Eigen::Vector3d z = Eigen::Vector3d::UnitZ();
    const Eigen::Matrix3d walk_from_0 = rotationAboutX(values.tilt_x0) * walkFrame(ahead_in_0, z).transpose();
    const Eigen::Matrix3d walk_from_1 = rotationAboutX(values.tilt_x1) * walkFrame(ahead_in_1, z).transpose();
    return {walk_from_0.transpose() * walk_from_1, values.spacing * ahead_in_0};
}

} // namespace nexomap
