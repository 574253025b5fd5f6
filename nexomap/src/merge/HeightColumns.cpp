// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/HeightColumns.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kUsualHeight_m = 1.5;
constexpr double kStorey_m = 1.8;      // floors closer than this are one storey with steps
constexpr double kOtherStorey_m = 4.0; // by which a station of another storey has to be nearer
constexpr int kMostGroundCells = 400;  // a side

double floorOf(const PlanStation& station, const Eigen::Vector3d& up)
{
    return station.position.dot(up) - (station.height_m > 0.0 ? station.height_m : kUsualHeight_m);
}

/// Which stations stand on the storey with the most of them.
std::vector<bool> onMainStorey(const std::vector<PlanStation>& stations, const Eigen::Vector3d& up)
{
    std::vector<bool> best;
    long most = 0;
    for (const PlanStation& middle : stations) {
        std::vector<bool> here;
        for (const PlanStation& other : stations)
            here.push_back(std::abs(floorOf(other, up) - floorOf(middle, up)) < kStorey_m / 2);
        const long count = std::count(here.begin(), here.end(), true);
        if (count > most) most = count, best = here;
    }
    return best;
}

/// Height of the floor under every patch of the raster.
class Floors
{
public:
    Floors(const PlanRaster& raster, const std::vector<PlanStation>& stations, const Eigen::Vector3d& up)
        : m_patch(std::max({1, int(0.5 / raster.pixel_m), raster.width / kMostGroundCells,
                            raster.height / kMostGroundCells}))
        , m_columns(raster.width / m_patch + 1)
        , m_floors(std::size_t(m_columns) * std::size_t(raster.height / m_patch + 1))
    {
        const std::vector<bool> main = onMainStorey(stations, up);
        for (std::size_t cell = 0; cell < m_floors.size(); ++cell) {
            const Eigen::Vector2d pixel((int(cell) % m_columns + 0.5) * m_patch,
                                        (int(cell) / m_columns + 0.5) * m_patch);
            double nearest = 1e300;
            for (std::size_t k = 0; k < stations.size(); ++k) {
                const Eigen::Vector2i at = raster.pixelOf(stations[k].position);
                const double away =
                    (at.cast<double>() - pixel).norm() * raster.pixel_m + (main[k] ? 0.0 : kOtherStorey_m);
                if (away >= nearest) continue;
                nearest = away;
                m_floors[cell] = floorOf(stations[k], up);
            }
        }
    }
    double at(const Eigen::Vector2i& pixel) const
    {
        return m_floors[std::size_t(pixel.y() / m_patch) * std::size_t(m_columns) +
                        std::size_t(pixel.x() / m_patch)];
    }

private:
    int m_patch, m_columns;
    std::vector<double> m_floors;
};

} // namespace

int HeightColumns::binOf(double height_m)
{
    return int(std::clamp(std::floor((height_m - kLowest_m) / kBin_m), 0.0, double(kBins - 1)));
}

std::uint64_t HeightColumns::bitsBetween(double from_m, double to_m)
{
    std::uint64_t bits = 0;
    for (int bin = 0; bin < kBins; ++bin) {
        const double middle = kLowest_m + (bin + 0.5) * kBin_m;
        if (middle > from_m && middle < to_m) bits |= std::uint64_t(1) << bin;
    }
    return bits;
}

HeightColumns::HeightColumns(const CloudBlocks& cloud, const PlanRaster& raster,
                             const std::vector<PlanStation>& stations)
    : m_width(raster.width)
    , m_columns(std::size_t(raster.width) * std::size_t(raster.height))
{
    const Eigen::Vector3d up = raster.up();
    const Floors floors(raster, stations, up);
    cloud.forEachBlock([&](const CloudPoint* points, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k) {
            const Eigen::Vector3d world = worldOf(points[k], cloud.grid());
            const Eigen::Vector2i pixel = raster.pixelOf(world);
            if (!raster.has(pixel)) continue;
            m_columns[std::size_t(pixel.y()) * std::size_t(m_width) + std::size_t(pixel.x())] |=
                std::uint64_t(1) << binOf(up.dot(world) - floors.at(pixel));
        }
    });
}

std::uint64_t HeightColumns::about(int x, int y) const
{
    std::uint64_t all = 0;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            all |= at(x + dx, y + dy);
    return all;
}

} // namespace nexomap
