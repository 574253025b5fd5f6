// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/nexomap/mapfiles/MadeUpCloud.h"

#include "nexomap/src/Geometry.h"

#include <algorithm>
#include <cmath>

using namespace nexomap;

namespace {

std::uint64_t keyOf(const CloudPoint& point)
{
    std::uint64_t key = 0;
    for (int bit = 0; bit < 16; ++bit)
        for (int axis = 0; axis < 3; ++axis)
            key |= std::uint64_t(point.at[std::size_t(axis)] >> bit & 1) << (3 * bit + axis);
    return key;
}

} // namespace

MadeUpCloud::MadeUpCloud(int cell_cm, double turn_rad)
    : m_grid(gridFor({-10, -10, -2}, {10, 10, 4}, cell_cm))
    , m_cell_cm(cell_cm)
    , m_turn(turn_rad)
{}

Eigen::Vector3d MadeUpCloud::world(const Eigen::Vector3d& flat) const
{
    return rotationAboutZ(m_turn) * flat;
}

void MadeUpCloud::add(const Eigen::Vector3d& low, const Eigen::Vector3d& high, std::uint8_t red,
                      std::uint8_t green, std::uint8_t blue)
{
    std::normal_distribution<double> noise(0.0, 0.005);
    const double step = m_cell_cm * 0.008;
    const Eigen::Vector3d size = high - low;
    const int across = size.x() == 0.0 ? 0 : size.y() == 0.0 ? 1 : 2;
    const int u = (across + 1) % 3, v = (across + 2) % 3;
    for (double a = 0.0; a <= size[u]; a += step)
        for (double b = 0.0; b <= size[v]; b += step) {
            Eigen::Vector3d at = low;
            at[u] += a;
            at[v] += b;
            at[across] += noise(m_random);
            const Eigen::Vector3d cell = (world(at) + m_grid.originMetres()) * m_grid.stepsPerMetre();
            CloudPoint point;
            for (int axis = 0; axis < 3; ++axis)
                point.at[std::size_t(axis)] = std::uint16_t(std::max(0.0, std::floor(cell[axis])));
            point.red = red;
            point.green = green;
            point.blue = blue;
            m_points.emplace_back(keyOf(point), point);
        }
}

CloudInMemory MadeUpCloud::cloud() const
{
    auto sorted = m_points;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<CloudPoint> points;
    std::uint64_t before = ~std::uint64_t(0);
    for (const auto& [key, point] : sorted) {
        if (key != before) points.push_back(point);
        before = key;
    }
    return {m_grid, points};
}
