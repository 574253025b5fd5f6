// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Points with normals from a range map.
#include "nexomap/src/pair/SurfaceSamples.h"

#include "nexomap/src/pair/Sphere.h"

#include <Eigen/Geometry>

#include <algorithm>

namespace nexomap {
namespace {

constexpr int kReach = 3; // cells: wide enough that 6 mm of noise turns a near normal by a few degrees only

std::optional<Eigen::Vector3d> pointAt(const RangeMap& map, int column, int row)
{
    if (row < 0 || row >= map.range_m.rows) return std::nullopt;
    const int x = (column % map.range_m.cols + map.range_m.cols) % map.range_m.cols;
    const float range = map.range_m(row, x);
    if (!(range > 0.f) || map.edge(row, x)) return std::nullopt;
    const EquirectGrid grid{map.range_m.cols, map.range_m.rows};
    return grid.direction(x + 0.5, row + 0.5) * double(range);
}

} // namespace

std::optional<SurfaceSample> surfaceAt(const RangeMap& map, int column, int row)
{
    const auto centre = pointAt(map, column, row);
    if (!centre) return std::nullopt;
    // Toward the poles cells narrow: reach further sideways, for the same angle.
    const double sine = std::sin(kPi * (row + 0.5) / map.range_m.rows);
    const int reach_x = std::min(map.range_m.cols / 8, int(std::lround(kReach / std::max(0.05, sine))));
    const auto left = pointAt(map, column - reach_x, row), right = pointAt(map, column + reach_x, row);
    const auto above = pointAt(map, column, row - kReach), below = pointAt(map, column, row + kReach);
    if (!left || !right || !above || !below) return std::nullopt;
    const Eigen::Vector3d across = *right - *left, down = *below - *above;
    Eigen::Vector3d normal = across.cross(down);
    const double length = normal.norm();
    if (!(length > 0.02 * across.norm() * down.norm()) || length < 1e-12) return std::nullopt;
    normal /= length;
    if (normal.dot(*centre) > 0.0) normal = -normal;
    const double tolerance = 0.02 + 0.004 * centre->norm();
    for (const auto& neighbour : {left, right, above, below})
        if (std::abs(normal.dot(*neighbour - *centre)) > tolerance) return std::nullopt;
    if (-normal.dot(*centre) < 0.12 * centre->norm())
        return std::nullopt; // grazing: the range is not reliable
    return SurfaceSample{*centre, normal};
}

std::vector<SurfaceSample> sampleSurfaces(const RangeMap& map, int count)
{
    std::vector<SurfaceSample> samples;
    if (map.empty() || count < 1) return samples;
    const int step = std::max(1, int(std::lround(std::sqrt(map.range_m.total() * 2.0 / kPi / count))));
    for (int row = step / 2; row < map.range_m.rows; row += step) {
        const double sine = std::sin(kPi * (row + 0.5) / map.range_m.rows);
        const int step_x = std::max(1, int(std::lround(step / std::max(0.05, sine))));
        for (int column = step_x / 2; column < map.range_m.cols; column += step_x)
            if (const auto sample = surfaceAt(map, column, row)) samples.push_back(*sample);
    }
    return samples;
}

} // namespace nexomap
