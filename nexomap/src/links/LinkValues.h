// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Geometry.h"

namespace nexomap {

/// The eight numbers of a link, from panorama 0 to panorama 1, and how they follow from two poses.
///
/// With a01 the azimuth of station 1 seen in panorama 0 and a10 that of station 0 seen in panorama 1, both in
/// the panoramas' own frames: rot_0 = -a01 and rot_1 = -a10 - pi. On levelled panoramas rot_0 - rot_1 is
/// therefore the difference of the headings. A view of side 0 marks the floor below station 1 at azimuth
/// -rot_0 and polar angle icon_y1; a view of side 1 marks the floor below station 0 at azimuth -rot_1 - pi
/// and polar angle icon_y0: each picture carries the icon of the other station.
///
/// Lean has three degrees of freedom more than two headings. The link stores those that a walk along it
/// shows: how far each panorama is rolled about the axis of the walk (from station 0 to station 1; positive
/// turns its upper pole from the world's vertical by the right hand about that axis), and how steeply the
/// walk climbs in panorama 0. There is no elevation for panorama 1: on levelled panoramas it is -tilt_y0.
struct LinkValues
{
    double rot_0 = 0.0, rot_1 = 0.0;     ///< (-pi, pi]
    double tilt_x0 = 0.0, tilt_x1 = 0.0; ///< radians
    double tilt_y0 = 0.0;                ///< elevation of station 1 in panorama 0, radians
    double icon_y0 = 0.75 * kPi;         ///< polar angle of the floor below station 0 in panorama 1
    double icon_y1 = 0.75 * kPi;         ///< polar angle of the floor below station 1 in panorama 0
    double spacing = 2.0;                ///< metres
};

/// @param height_0_m, height_1_m  of the stations above their floors
/// @param up                      the vertical in the world frame
LinkValues linkValues(const Pose& world_from_0, const Pose& world_from_1, double height_0_m,
                      double height_1_m, const Eigen::Vector3d& up);

/// The relative pose that the numbers tell, as far as they do: exact when both panoramas lean about the
/// link's axis only.
/// @return point_in_0 = R * point_in_1 + t
Pose relativePose(const LinkValues& values);

} // namespace nexomap
