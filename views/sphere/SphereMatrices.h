// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/sphere/SphereCamera.h"

#include <array>

/// The matrices with which the panorama sphere is drawn: 4 x 4, single precision, column-major.
namespace sphere {

/// Perspective of the view: near plane 0.1, far plane about 1000; at zoom 1 the larger side of the view spans
/// 90 degrees.
std::array<float, 16> perspectiveMatrix(ViewSize size, double zoom);

/// Rotation that turns the viewed direction (yaw, polar angle) onto +x, and up onto +z.
std::array<float, 16> modelMatrix(double yaw, double polar);

} // namespace sphere
