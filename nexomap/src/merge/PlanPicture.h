// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudFile.h"

#include <opencv2/core.hpp>

namespace nexomap {

/// Pictures of a cloud from above: x to the right, y up, one pixel a square of the world.
struct PlanRaster
{
    double left = 0.0, top = 0.0; ///< world x of the left edge, world y of the upper edge, metres
    double pixel_m = 0.02;
    int width = 0, height = 0;

    /// Pixel in which a world point lies.
    Eigen::Vector2i pixelOf(const Eigen::Vector3d& world) const;
};

/// Raster of a box with half a metre of room about it, coarser where it would have more than 100 million
/// pixels.
PlanRaster rasterFor(const Eigen::Vector3d& low, const Eigen::Vector3d& high, double pixel_m);

/// Walls black on white: pixels above which most of the heights between 0.9 m and 2 m above the floor are
/// filled.
/// @param floor_m  world height of the floor
cv::Mat1b wallPlan(const std::vector<CloudPoint>& points, const CloudGrid& grid, const PlanRaster& raster,
                   double floor_m);

/// Colour of the highest point of each pixel, white where there is none. BGR.
cv::Mat3b topView(const std::vector<CloudPoint>& points, const CloudGrid& grid, const PlanRaster& raster);

/// World coordinates of a point of the file.
Eigen::Vector3d worldOf(const CloudPoint& point, const CloudGrid& grid);

} // namespace nexomap
