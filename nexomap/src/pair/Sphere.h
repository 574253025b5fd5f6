// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <Eigen/Geometry>
#include <opencv2/core.hpp>

#include <cmath>

namespace nexomap {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegree = kPi / 180.0;

/// Unit vector of an azimuth and a polar angle, radians: x toward azimuth 0, y toward azimuth +pi/2, z up.
inline Eigen::Vector3d directionFromAngles(double azimuth, double polar)
{
    return {std::sin(polar) * std::cos(azimuth), std::sin(polar) * std::sin(azimuth), std::cos(polar)};
}

inline double azimuthOf(const Eigen::Vector3d& direction)
{
    return std::atan2(direction.y(), direction.x());
}

/// Polar angle from the upper pole; well conditioned at both poles, unlike the arc cosine.
inline double polarOf(const Eigen::Vector3d& direction)
{
    return std::atan2(std::hypot(direction.x(), direction.y()), direction.z());
}

/// An equirectangular picture of the sphere: columns run from azimuth +pi to -pi, rows from polar_min to
/// polar_max. Pixel coordinates have their origin at the corner of the top-left pixel; its centre is (0.5,
/// 0.5).
struct EquirectGrid
{
    int width = 0, height = 0;               ///< pixels
    double polar_min = 0.0, polar_max = kPi; ///< radians from the upper pole

    Eigen::Vector3d direction(double x, double y) const
    {
        return directionFromAngles(kPi - 2.0 * kPi * x / width,
                                   polar_min + (polar_max - polar_min) * y / height);
    }
    /// Of a vector of any length. x in [0, width); y may lie outside the picture when the extent is partial.
    Eigen::Vector2d pixel(const Eigen::Vector3d& direction) const
    {
        double x = (kPi - azimuthOf(direction)) / (2.0 * kPi) * width;
        if (x >= width) x -= width;
        return {x, (polarOf(direction) - polar_min) / (polar_max - polar_min) * height};
    }
};

} // namespace nexomap
