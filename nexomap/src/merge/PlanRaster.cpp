// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PlanRaster.h"

#include "nexomap/src/Geometry.h"
#include "nexomap/src/merge/HeightColumns.h"

#include <bitset>
#include <cmath>
#include <random>

namespace nexomap {
namespace {

constexpr double kMargin_m = 0.5;
constexpr double kMostPixels = 4e7, kMostSketchPixels = 8e6;
constexpr double kSketchPixel_m = 0.04;
constexpr int kLegendRows = 44;
constexpr std::size_t kMostWallPixels = 60000;

using Points = std::vector<Eigen::Vector2d>;

Eigen::Vector3d meanUp(const std::vector<PlanStation>& stations)
{
    Eigen::Vector3d sum = Eigen::Vector3d::Zero();
    for (const PlanStation& station : stations)
        sum += station.up;
    return sum.norm() > 0.0 ? Eigen::Vector3d(sum.normalized()) : Eigen::Vector3d::UnitZ();
}

/// Axes level to `up`, as they are on the map when x points to the right.
void orient(PlanRaster& raster, const Eigen::Vector3d& up, double turn_rad)
{
    const Eigen::Vector3d along(std::cos(turn_rad), std::sin(turn_rad), 0.0);
    raster.right = (along - along.dot(up) * up).normalized();
    raster.down = raster.right.cross(up);
}

/// Puts the raster about the points, which are given as (right, down) in metres.
void enclose(PlanRaster& raster, const Points& points, double margin_m, double most_pixels)
{
    Eigen::Vector2d low = Eigen::Vector2d::Constant(1e300), high = -low;
    for (const Eigen::Vector2d& p : points) {
        low = low.cwiseMin(p);
        high = high.cwiseMax(p);
    }
    const Eigen::Vector2d size = high - low + Eigen::Vector2d::Constant(2 * margin_m);
    raster.pixel_m = std::max(raster.pixel_m, std::sqrt(size.x() * size.y() / most_pixels));
    raster.left = low.x() - margin_m;
    raster.top = low.y() - margin_m;
    raster.width = int(std::ceil(size.x() / raster.pixel_m)) + 1;
    raster.height = int(std::ceil(size.y() / raster.pixel_m)) + 1;
}

/// A raster for all that the grid can hold.
PlanRaster sketchRaster(const CloudGrid& grid, const std::vector<PlanStation>& stations)
{
    PlanRaster raster;
    raster.pixel_m = kSketchPixel_m;
    orient(raster, meanUp(stations), 0.0);
    const Eigen::Vector3d low = -grid.originMetres();
    const double steps = 100.0 / grid.unit_divisor;
    Points corners;
    for (int k = 0; k < 4; ++k) {
        const Eigen::Vector3d corner =
            low + Eigen::Vector3d(k & 1 ? grid.width / steps : 0.0, k & 2 ? grid.height / steps : 0.0, 0.0);
        corners.emplace_back(raster.right.dot(corner), raster.down.dot(corner));
    }
    enclose(raster, corners, kMargin_m, kMostSketchPixels);
    return raster;
}

/// How sharply the points fall into rows and columns when the picture is turned.
double sharpness(const Points& points, double turn_rad, double bin_m)
{
    const double c = std::cos(turn_rad), s = std::sin(turn_rad);
    double sum = 0.0;
    for (const Eigen::Vector2d& axis : {Eigen::Vector2d(c, s), Eigen::Vector2d(-s, c)}) {
        double least = 1e300, most = -1e300;
        for (const Eigen::Vector2d& p : points) {
            least = std::min(least, axis.dot(p));
            most = std::max(most, axis.dot(p));
        }
        std::vector<double> bins(std::size_t((most - least) / bin_m) + 2);
        for (const Eigen::Vector2d& p : points) {
            const double at = (axis.dot(p) - least) / bin_m;
            const std::size_t bin = std::size_t(at);
            bins[bin] += 1.0 - (at - double(bin));
            bins[bin + 1] += at - double(bin);
        }
        for (const double n : bins)
            sum += n * n;
    }
    return sum;
}

/// Middles of the pixels over which most heights are filled.
Points wallPixels(const HeightColumns& columns, const PlanRaster& raster)
{
    const std::uint64_t slice = HeightColumns::bitsBetween(0.9, 2.4);
    const std::size_t enough = std::bitset<64>(slice).count() * 6 / 10;
    // Middles alone would favour the sketch's own axes, whose rows they hit all at once.
    std::mt19937 random(1);
    Points walls;
    for (int y = 0; y < raster.height; ++y)
        for (int x = 0; x < raster.width; ++x) {
            if (std::bitset<64>(columns.at(x, y) & slice).count() < enough) continue;
            walls.emplace_back((x + double(random()) / 4294967296.0) * raster.pixel_m,
                               (y + double(random()) / 4294967296.0) * raster.pixel_m);
        }
    if (walls.size() <= kMostWallPixels) return walls;
    Points some;
    for (std::size_t k = 0; k < kMostWallPixels; ++k)
        some.push_back(walls[k * walls.size() / kMostWallPixels]);
    return some;
}

/// Turn of the picture, in (-45, 45] degrees: positive turns `right` toward `down`.
double dominantTurn(const Points& walls)
{
    if (walls.size() < 50) return 0.0;
    double best = 0.0, most = -1.0;
    const auto search = [&](double from_deg, double to_deg, double step_deg, double bin_m) {
        most = -1.0;
        double at = best;
        for (double turn = from_deg; turn <= to_deg; turn += step_deg) {
            const double sharp = sharpness(walls, turn * kDegree, bin_m);
            if (sharp > most) most = sharp, at = turn;
        }
        best = at;
    };
    search(-44.5, 45.0, 0.5, 0.08);
    search(best - 0.5, best + 0.5, 0.1, 0.05);
    search(best - 0.1, best + 0.1, 0.01, 0.04);
    return best * kDegree;
}

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
    const PlanRaster sketch = sketchRaster(cloud.grid(), stations);
    const HeightColumns columns(cloud, sketch, stations);
    PlanRaster raster;
    raster.pixel_m = pixel_m;
    const double turn = dominantTurn(wallPixels(columns, sketch));
    orient(raster, sketch.up(), -turn); // down is clockwise from right, the world's angles are not
    Points seen;
    const auto add = [&](const Eigen::Vector3d& world) {
        seen.emplace_back(raster.right.dot(world), raster.down.dot(world));
    };
    for (int y = 0; y < sketch.height; ++y)
        for (int x = 0; x < sketch.width; ++x)
            if (columns.at(x, y))
                add(sketch.right * (sketch.left + (x + 0.5) * sketch.pixel_m) +
                    sketch.down * (sketch.top + (y + 0.5) * sketch.pixel_m));
    for (const PlanStation& station : stations)
        add(station.position);
    enclose(raster, seen, kMargin_m, kMostPixels);
    raster.legend_top = raster.height;
    raster.height += kLegendRows;
    return raster;
}

} // namespace nexomap
