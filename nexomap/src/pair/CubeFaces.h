// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Sphere.h"

#include <vector>

namespace nexomap {

/// A pinhole view of the sphere.
struct Face
{
    Eigen::Vector3d forward, right, down;
    cv::Size size;                       ///< pixels
    double focal = 0.0;                  ///< pixels
    double reach_x = 0.0, reach_y = 0.0; ///< tangents of the angles from the axis up to which it counts
    bool outer =
        false; ///< only what stands more than 45 degrees to a side counts: another sees the rest sharper

    /// @param x, y  pixels, (0, 0) the corner of the top-left one
    Eigen::Vector3d ray(double x, double y) const
    {
        return forward + right * ((x - 0.5 * size.width) / focal) + down * ((y - 0.5 * size.height) / focal);
    }
    bool counts(const Eigen::Vector3d& ray) const;
};

/// The six sides of a cube that is turned by `yaw`, `size` pixels each with 96 degrees of view, and behind
/// each a wider one of half the resolution, for the ring that it sees beyond the cube's edges: a wall is
/// shown without foreshortening as far as it goes, if the yaw is the walls'.
std::vector<Face> cubeFaces(int size, double yaw);

/// What the face sees of an equirectangular picture.
cv::Mat1b renderFace(const cv::Mat1b& gray, const EquirectGrid& grid, const Face& face);

} // namespace nexomap
