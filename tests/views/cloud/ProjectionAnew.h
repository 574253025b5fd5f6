// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/CloudCamera.h"

#include <array>
#include <cmath>

/// The view's projection written once more, as a product of 4 x 4 matrices and a viewport, with none of the
/// code under test.
namespace anew {

using Matrix = std::array<std::array<double, 4>, 4>; // rows

inline Matrix multiply(const Matrix& a, const Matrix& b)
{
    Matrix product{};
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            for (std::size_t k = 0; k < 4; ++k)
                product[i][j] += a[i][k] * b[k][j];
        }
    }
    return product;
}

/// Scene to normalised device coordinates.
/// @param shift  what is subtracted from both horizontal coordinates besides the pan
inline Matrix matrix(const cloud::Camera& camera, cloud::ViewSize size, double shift)
{
    const double k = camera.zoom * camera.scale;
    const double ct = std::cos(camera.tilt), st = std::sin(camera.tilt);
    const double ca = std::sin(camera.rotation), sa = std::cos(camera.rotation); // of pi/2 - rotation
    const Matrix scale{{{2 * k / size.width, 0, 0, 0}, {0, 2 * k / size.height, 0, 0}, {}, {0, 0, 0, 1}}};
    const Matrix tilt{{{1, 0, 0, 0}, {0, ct, st, 0}, {0, -st, ct, 0}, {0, 0, 0, 1}}};
    const Matrix turn{{{ca, -sa, 0, 0}, {sa, ca, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    const Matrix move{
        {{1, 0, 0, -camera.pan_x - shift}, {0, 1, 0, -camera.pan_y - shift}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    return multiply(multiply(multiply(scale, tilt), turn), move);
}

/// Where a point stands in the widget, half a pixel added on both axes.
inline cloud::PixelPlace place(const cloud::ScenePoint& point, const cloud::Camera& camera,
                               cloud::ViewSize size)
{
    const Matrix m = matrix(camera, size, 0);
    const double u = m[0][0] * point.x + m[0][1] * point.y + m[0][2] * point.z + m[0][3];
    const double v = m[1][0] * point.x + m[1][1] * point.y + m[1][2] * point.z + m[1][3];
    return {(u + 1) / 2 * size.width + 0.5, (1 - v) / 2 * size.height + 0.5};
}

} // namespace anew
