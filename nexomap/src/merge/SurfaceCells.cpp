// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/SurfaceCells.h"

#include "nexomap/src/merge/KeySort.h"
#include "nexomap/src/merge/MortonKey.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace nexomap {
namespace {

std::uint8_t byteOf(float value)
{
    return std::uint8_t(std::clamp(value + 0.5f, 0.f, 255.f));
}

} // namespace

std::uint8_t weightCode(float weight)
{
    return std::uint8_t(std::clamp(std::lround((std::log2(std::max(weight, 1e-9f)) + 20.f) * 8.f), 0l, 255l));
}

float weightOf(std::uint8_t code)
{
    static const std::array<float, 256> table = [] {
        std::array<float, 256> made{};
        for (int k = 0; k < 256; ++k)
            made[std::size_t(k)] = std::exp2(float(k) / 8.f - 20.f);
        return made;
    }();
    return table[code];
}

bool cellAt(const CloudGrid& grid, const Eigen::Vector3d& world, std::array<std::uint16_t, 3>* cell)
{
    const Eigen::Vector3d at = world + grid.originMetres();
    const double most[3] = {double(grid.width) * grid.refinement, double(grid.height) * grid.refinement,
                            65536.0};
    for (int axis = 0; axis < 3; ++axis) {
        const double number =
            std::floor(at[axis] * (axis < 2 ? grid.stepsPerMetre() : grid.stepsPerMetreZ()));
        if (!(number >= 0.0 && number < std::min(65536.0, most[axis]))) return false;
        (*cell)[std::size_t(axis)] = std::uint16_t(number);
    }
    return true;
}

GridKeys::GridKeys(const CloudGrid& grid)
{
    const Eigen::Vector3d origin = grid.originMetres();
    m_origin = {origin.x(), origin.y(), origin.z()};
    m_scale = {grid.stepsPerMetre(), grid.stepsPerMetre(), grid.stepsPerMetreZ()};
    m_most = {std::min(65536.0, double(grid.width) * grid.refinement),
              std::min(65536.0, double(grid.height) * grid.refinement), 65536.0};
}

std::vector<SurfaceCell> cellsOf(const std::vector<Surfel>& surfels, const CloudGrid& grid)
{
    const GridKeys keys_of(grid);
    std::vector<std::uint64_t> keys;
    std::vector<std::uint32_t> inside; // filled only when some are not
    keys.reserve(surfels.size());
    for (std::size_t k = 0; k < surfels.size(); ++k) {
        std::uint64_t key;
        if (keys_of.keyAt(surfels[k].point(), &key)) {
            keys.push_back(key);
            if (keys.size() <= k) inside.push_back(std::uint32_t(k));
        } else if (keys.size() == k) {
            inside.resize(k);
            std::iota(inside.begin(), inside.end(), 0u);
        }
    }
    std::vector<std::uint32_t> order = sortKeys(keys);
    if (keys.size() < surfels.size())
        for (std::uint32_t& number : order)
            number = inside[number];
    std::size_t different = 0;
    for (std::size_t k = 0; k < keys.size(); ++k)
        different += k == 0 || keys[k] != keys[k - 1];
    std::vector<SurfaceCell> cells;
    cells.reserve(different);
    for (std::size_t from = 0, to = 0; from < keys.size(); from = to) {
        SurfaceCell cell;
        cell.key = keys[from];
        // Sums about the first point: far from the origin floats would lose the millimetres.
        const Eigen::Vector3f base = surfels[order[from]].point();
        Eigen::Vector3f point = Eigen::Vector3f::Zero(), normal = point, colour = point;
        for (to = from; to < keys.size() && keys[to] == cell.key; ++to) {
            const Surfel& surfel = surfels[order[to]];
            const float weight = weightOf(surfel.weight), view = weightOf(surfel.view);
            point += weight * (surfel.point() - base);
            normal += weight * Eigen::Vector3f(surfel.normal_x, surfel.normal_y, surfel.normal_z);
            colour += view * Eigen::Vector3f(surfel.red, surfel.green, surfel.blue);
            cell.weight += weight;
            cell.view += view;
        }
        cell.point = base + point / cell.weight;
        const float length = normal.norm();
        cell.normal = length > 0.f ? Eigen::Vector3f(normal / length) : Eigen::Vector3f::UnitZ();
        cell.colour = colour / cell.view;
        cells.push_back(cell);
    }
    return cells;
}

std::vector<CloudPoint> pointsOf(const std::vector<SurfaceCell>& cells, const KeyRange& owned)
{
    std::vector<CloudPoint> points;
    points.reserve(cells.size());
    for (const SurfaceCell& cell : cells)
        if (owned.has(cell.key))
            points.push_back({cellOfMorton(cell.key), byteOf(cell.colour.x()), byteOf(cell.colour.y()),
                              byteOf(cell.colour.z())});
    return points;
}

} // namespace nexomap
