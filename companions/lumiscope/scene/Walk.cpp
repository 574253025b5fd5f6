// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/scene/Walk.h"

#include "views/sphere/SphereMatrices.h"

#include <algorithm>
#include <cmath>

namespace lumiscope {

namespace {

constexpr double kLongestShift = 0.3;
constexpr double kSphereRadius = 100.0;

} // namespace

WalkFrame walkFrame(double elapsed_s)
{
    const double t = std::clamp(elapsed_s / kWalk_s, 0.0, 1.0);
    const double smooth = t * t * (3.0 - 2.0 * t);
    return {static_cast<float>(1.0 - smooth), kLongestShift * smooth, kLongestShift * (smooth - 1.0)};
}

Matrix4 spherePlacement(const sphere::Camera& camera, sphere::ViewSize size, double azimuth, double shift)
{
    const double away = -shift * kSphereRadius;
    Matrix4 shifted = IdentityMatrix();
    shifted[12] = static_cast<float>(away * std::cos(azimuth));
    shifted[13] = static_cast<float>(away * std::sin(azimuth));
    const Matrix4 view = LookAt({0, 0, 0}, {1, 0, 0}, {0, 0, 1});
    const Matrix4 turned = Multiply(sphere::modelMatrix(camera.yaw, camera.polar), shifted);
    return Multiply(Multiply(sphere::perspectiveMatrix(size, camera.zoom), view), turned);
}

} // namespace lumiscope
