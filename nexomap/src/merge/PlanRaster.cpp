// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PlanRaster.h"

#include <cmath>

namespace nexomap {
namespace {
constexpr double kMargin_m = 0.5;
constexpr double kMostPixels = 4e7;
} // namespace

Eigen::Vector2i PlanRaster::pixelOf(const Eigen::Vector3d& world) const
{
    return {int(std::floor((right.dot(world) - left) / pixel_m)),
            int(std::floor((down.dot(world) - top) / pixel_m))};
}

bool PlanRaster::has(const Eigen::Vector2i& pixel) const
{
    return pixel.x() >= 0 && pixel.y() >= 0 && pixel.x() < width && pixel.y() < height;
}

PlanRaster planRaster(const CloudBlocks& cloud, const std::vector<PlanStation>& stations, double pixel_m)
{
    PlanRaster raster;
    Eigen::Vector2d low = Eigen::Vector2d::Constant(1e300), high = -low;
    const auto add = [&](const Eigen::Vector3d& world) {
        const Eigen::Vector2d at(raster.right.dot(world), raster.down.dot(world));
        low = low.cwiseMin(at);
        high = high.cwiseMax(at);
    };
    for (const PlanStation& station : stations)
        add(station.position);
    cloud.forEachBlock([&](const CloudPoint* points, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k)
            add(worldOf(points[k], cloud.grid()));
    });
    const Eigen::Vector2d size = high - low + Eigen::Vector2d::Constant(2 * kMargin_m);
    raster.pixel_m = std::max(pixel_m, std::sqrt(size.x() * size.y() / kMostPixels));
    raster.left = low.x() - kMargin_m;
    raster.top = low.y() - kMargin_m;
    raster.width = int(std::ceil(size.x() / raster.pixel_m));
    raster.height = int(std::ceil(size.y() / raster.pixel_m));
    return raster;
}

} // namespace nexomap
