// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which of a person's pairs is the wrong one, and by how much.
#include "nexomap/src/links/PickResiduals.h"

#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kSamePlace = 1.0 * kDegree; // a pick's point is taken from the surface around it

double angleBetween(const Eigen::Vector3d& u, const Eigen::Vector3d& v)
{
    return std::atan2(u.cross(v).norm(), u.dot(v));
}

PickResidual residualOf(const Panorama& panorama_0, const Panorama& panorama_1, const PickedPair& pick,
                        const PairPose& pose)
{
    PickResidual residual;
    residual.pick = pick;
    const Eigen::Vector3d u_0 = directionFromAngles(pick.azimuth_0, pick.polar_0);
    const Eigen::Vector3d u_1 = directionFromAngles(pick.azimuth_1, pick.polar_1);
    residual.left_out = std::none_of(pose.inliers.begin(), pose.inliers.end(), [&](const PairInlier& inlier) {
        return angleBetween(inlier.bearing_0.cast<double>(), u_0) < kSamePlace &&
               angleBetween(inlier.bearing_1.cast<double>(), u_1) < kSamePlace;
    });
    const double range_0 = panorama_0.range.at(u_0.cast<float>()),
                 range_1 = panorama_1.range.at(u_1.cast<float>());
    const Eigen::Vector3d turned = pose.R_0_from_1 * u_1;
    if (pose.metric && range_0 > 0.0 && range_1 > 0.0) {
        const Eigen::Vector3d there = turned * range_1 + pose.t_0_from_1;
        residual.degrees = angleBetween(there, u_0) / kDegree;
        residual.metres = (there - u_0 * range_0).norm();
    } else if (pose.rotation_only) {
        residual.degrees = angleBetween(turned, u_0) / kDegree;
    } else {
        const Eigen::Vector3d normal = pose.t_0_from_1.cross(turned).normalized();
        residual.degrees = std::abs(std::asin(std::clamp(u_0.dot(normal), -1.0, 1.0))) / kDegree;
    }
    return residual;
}

} // namespace

std::vector<PickResidual> pickResiduals(const Panorama& panorama_0, const Panorama& panorama_1,
                                        const std::vector<PickedPair>& picks, const PairPose& pose)
{
    std::vector<PickResidual> residuals;
    for (const PickedPair& pick : picks)
        residuals.push_back(residualOf(panorama_0, panorama_1, pick, pose));
    return residuals;
}

} // namespace nexomap
