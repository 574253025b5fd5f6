// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/SeenSpace.h"

#include "nexomap/src/merge/SurfaceFit.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {
constexpr int kSide = 224; // cells along an edge of the cube: 0.4 degrees
constexpr float kStep_m = 0.002f;
constexpr std::uint16_t kPartial = 0x8000, kMost = 0x7FFF;
} // namespace

int SeenSpace::cellOf(const Eigen::Vector3f& direction)
{
    int axis = 0;
    direction.cwiseAbs().maxCoeff(&axis);
    const float scale = 0.5f * kSide / std::abs(direction[axis]);
    const float a = direction[(axis + 1) % 3] * scale + 0.5f * kSide;
    const float b = direction[(axis + 2) % 3] * scale + 0.5f * kSide;
    const int face = 2 * axis + (direction[axis] < 0.f);
    return (face * kSide + std::clamp(int(b), 0, kSide - 1)) * kSide + std::clamp(int(a), 0, kSide - 1);
}

SeenSpace::SeenSpace(const RangePyramid& pyramid, const Pose& world_from_pano)
    : m_pano_from_world(world_from_pano.R.transpose().cast<float>())
    , m_position(world_from_pano.t.cast<float>())
{
    std::size_t chosen = 0;
    while (chosen + 1 < pyramid.levels().size() && pyramid.levels()[chosen].columns() > 4096)
        ++chosen;
    const RangePyramid::Level& level = pyramid.levels()[chosen];
    const SurfaceFitter directions(level);
    std::vector<Cell> own(std::size_t(6 * kSide * kSide));
    for (int row = 0; row < level.rows(); ++row) {
        const int step = std::max(1, directions.columnStep(row) / 2);
        for (int column = 0; column < level.columns(); column += step) {
            const float q = level.nearness(row, column);
            if (!(q > 0.f)) continue;
            const auto steps = std::uint16_t(std::min(float(kMost), 1.f / (q * kStep_m) + 0.5f));
            Cell& cell = own[std::size_t(cellOf(directions.direction(column, row)))];
            cell.low = cell.low ? std::min(cell.low, steps) : steps;
            cell.high = std::max(cell.high, steps);
        }
    }
    m_cells.resize(own.size());
    for (int y = 0; y < 6 * kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            // Beyond a face's edge lies another face: there nothing is known for sure.
            bool whole = x > 0 && x + 1 < kSide && y % kSide > 0 && y % kSide + 1 < kSide;
            Cell sum;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) {
                    const int nx = x + dx, ny = y + dy;
                    if (nx < 0 || nx >= kSide || ny < 0 || ny / kSide != y / kSide || ny >= 6 * kSide)
                        continue;
                    const Cell& cell = own[std::size_t(ny * kSide + nx)];
                    whole = whole && cell.low;
                    if (!cell.low) continue;
                    sum.low = sum.low ? std::min(sum.low, cell.low) : cell.low;
                    sum.high = std::max(sum.high, cell.high);
                }
            if (!whole) sum.low = std::uint16_t(sum.low | kPartial);
            m_cells[std::size_t(y * kSide + x)] = sum;
        }
}

SeenSpace::Verdict SeenSpace::verdict(const Eigen::Vector3f& world) const
{
    const Eigen::Vector3f local = m_pano_from_world * (world - m_position);
    const float range = local.norm();
    if (!(range > 0.1f)) return Verdict::Unknown;
    const Cell& cell = m_cells[std::size_t(cellOf(local))];
    if (!cell.high) return Verdict::Unknown;
    const float low = float(cell.low & kMost) * kStep_m, high = float(cell.high) * kStep_m;
    const float about = 0.04f + 0.01f * range; // what poses and noise leave open
    if (range > low - about && range < high + about) return Verdict::Confirms;
    return !(cell.low & kPartial) && range < low - 2.f * about ? Verdict::SeesThrough : Verdict::Unknown;
}

} // namespace nexomap
