// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/CloudCamera.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cloud {
namespace {

using Matrix = std::array<float, 16>; // column-major

struct Axis
{
    float x, y, z;
};

/// matrix * rotation by the right-hand rule (Rodrigues' formula).
Matrix rotated(const Matrix& matrix, double angle, Axis axis)
{
    const float length = std::sqrt(axis.x * axis.x + axis.y * axis.y + axis.z * axis.z);
    const float x = axis.x / length, y = axis.y / length, z = axis.z / length;
    const float c = std::cos(static_cast<float>(angle)), s = std::sin(static_cast<float>(angle));
    const float t = 1.0f - c;
    const float rotation[3][3] = {// column by column
                                  {c + t * x * x, t * x * y + s * z, t * x * z - s * y},
                                  {t * x * y - s * z, c + t * y * y, t * y * z + s * x},
                                  {t * x * z + s * y, t * y * z - s * x, c + t * z * z}};
    Matrix product = matrix;
    for (std::size_t column = 0; column < 3; ++column) {
        for (std::size_t row = 0; row < 4; ++row)
            product[4 * column + row] = matrix[row] * rotation[column][0] +
                                        matrix[4 + row] * rotation[column][1] +
                                        matrix[8 + row] * rotation[column][2];
    }
    return product;
}

/// matrix * translation.
Matrix translated(const Matrix& matrix, float x, float y)
{
    Matrix product = matrix;
    for (std::size_t row = 0; row < 4; ++row)
        product[12 + row] = matrix[row] * x + matrix[4 + row] * y + matrix[12 + row];
    return product;
}

int wholePart(double place)
{
    constexpr double least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(place, least, most));
}

} // namespace

PixelPlace placeOf(ScenePoint point, const Camera& camera, ViewSize size)
{
    const double a = kHalfPi - camera.rotation;
    const double x = point.x - camera.pan_x, y = point.y - camera.pan_y;
    const double right = std::cos(a) * x - std::sin(a) * y;
    const double ahead = std::sin(a) * x + std::cos(a) * y;
    const double up = std::cos(camera.tilt) * ahead + std::sin(camera.tilt) * point.z;
    return {size.width * 0.5 + camera.zoom * right * camera.scale + 0.5,
            size.height * 0.5 - camera.zoom * up * camera.scale + 0.5};
}

Pixel pixelOf(ScenePoint point, const Camera& camera, ViewSize size)
{
    const PixelPlace place = placeOf(point, camera, size);
    return {wholePart(place.x), wholePart(place.y)};
}

std::array<float, 16> cameraMatrix(const Camera& camera, ViewSize size)
{
    const double k = camera.pixelsPerUnit();
    Matrix matrix{};
    matrix[0] = static_cast<float>(k / (size.width / 2.0));
    matrix[5] = static_cast<float>(k / (size.height / 2.0));
    matrix[15] = 1.0f;
    matrix = rotated(matrix, -camera.tilt, {1, 0, 0});
    matrix = rotated(matrix, kHalfPi - camera.rotation, {0, 0, 1});
    // Half a step: the middle of a cell, at which points stand, comes to the middle of a pixel.
    return translated(matrix, static_cast<float>(-camera.pan_x - 0.5 / camera.scale),
                      static_cast<float>(-camera.pan_y - 0.5 / camera.scale));
}

} // namespace cloud
