// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudBlocks.h"

#include <Eigen/Geometry>

#include <vector>

namespace nexomap {

/// Where a panorama was taken, as the map sees it.
struct PlanStation
{
    Eigen::Vector3d position;                      ///< world, metres
    Eigen::Vector3d up = Eigen::Vector3d::UnitZ(); ///< the vertical in the world frame
    double height_m = 0.0;                         ///< above its floor; 0: unknown, taken as 1.5
};

/// Pictures of a cloud from above: one pixel a square of the ground, its axes turned to the building's walls.
struct PlanRaster
{
    Eigen::Vector3d right = Eigen::Vector3d::UnitX(); ///< world direction along a row
    Eigen::Vector3d down = -Eigen::Vector3d::UnitY(); ///< world direction along a column
    double left = 0.0, top = 0.0;                     ///< of the picture's corner along them, metres
    double pixel_m = 0.02;
    int width = 0, height = 0;
    int legend_top = 0; ///< first row of the strip below the map, where the scale bar stands

    Eigen::Vector3d up() const { return right.cross(-down); }
    /// Pixel in which a world point lies; outside the picture for points outside.
    Eigen::Vector2i pixelOf(const Eigen::Vector3d& world) const;
    bool has(const Eigen::Vector2i& pixel) const;
};

/// Raster of everything in the cloud, the stations among it, with half a metre of room about it. Turned by at
/// most 45 degrees, so that most walls run along rows and columns. Coarser where it would have more than 40
/// million pixels.
/// @param stations  at least one
PlanRaster planRaster(const CloudBlocks& cloud, const std::vector<PlanStation>& stations, double pixel_m);

} // namespace nexomap
