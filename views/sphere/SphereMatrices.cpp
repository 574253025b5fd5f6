// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/SphereMatrices.h"

#include <algorithm>
#include <cmath>

namespace sphere {

std::array<float, 16> perspectiveMatrix(ViewSize size, double zoom)
{
    const float aspect = static_cast<float>(size.width) / static_cast<float>(size.height);
    const double larger = std::max(size.width, size.height);
    const double fieldOfView = 2.0 * std::atan(size.height / ((larger + 0.001) * zoom));
    const float tangent = static_cast<float>(std::tan(0.5 * fieldOfView));

    std::array<float, 16> matrix{};
    matrix[0] = 1.0f / (tangent * aspect);
    matrix[5] = 1.0f / tangent;
    matrix[10] = -1.0001999139785767f;
    matrix[11] = -1.0f;
    matrix[14] = -0.20002000033855438f;
    return matrix;
}

std::array<float, 16> modelMatrix(double yaw, double polar)
{
    const double elevation = kHalfPi - polar;
    const double sinE = std::sin(elevation), cosE = std::cos(elevation);
    const double sinA = std::sin(-yaw), cosA = std::cos(-yaw);
    const auto f = [](double value) { return static_cast<float>(value); };
    return {f(cosA * cosE),
            f(sinA),
            f(-cosA * sinE),
            0.0f, //
            f(-sinA * cosE),
            f(cosA),
            f(sinA * sinE),
            0.0f, //
            f(sinE),
            0.0f,
            f(cosE),
            0.0f, //
            0.0f,
            0.0f,
            0.0f,
            1.0f};
}

} // namespace sphere
