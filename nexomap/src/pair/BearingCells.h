// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Bearings by direction, to find those near one.
#pragma once

#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace nexomap {

class BearingCells
{
public:
    explicit BearingCells(const std::vector<Eigen::Vector3f>& bearings)
        : m_cells(std::size_t(kRows) * kColumns)
    {
        for (std::size_t i = 0; i < bearings.size(); ++i) {
            const Eigen::Vector2d at = m_grid.pixel(bearings[i].cast<double>());
            m_cells[std::size_t(std::clamp(int(at.y()), 0, kRows - 1)) * kColumns +
                    std::size_t(std::clamp(int(at.x()), 0, kColumns - 1))]
                .push_back(int(i));
        }
    }

    /// Calls visit(index) for all bearings within `reach` of a unit direction, and for some beyond.
    /// @param reach  radians, a degree at most
    template <class Visit>
    void near(const Eigen::Vector3d& direction, double reach, const Visit& visit) const
    {
        const Eigen::Vector2d at = m_grid.pixel(direction);
        const double sine = std::max(0.02, direction.head<2>().norm());
        const int reach_x = std::min(kColumns / 2 - 1, int(std::ceil(reach / kDegree / sine)));
        for (int row = std::max(0, int(at.y()) - 1); row <= std::min(kRows - 1, int(at.y()) + 1); ++row)
            for (int dx = -reach_x; dx <= reach_x; ++dx) {
                const int column = (int(at.x()) + dx + kColumns) % kColumns;
                for (const int index : m_cells[std::size_t(row) * kColumns + std::size_t(column)])
                    visit(index);
            }
    }

private:
    static constexpr int kRows = 180, kColumns = 360; // cells of a degree
    const EquirectGrid m_grid{kColumns, kRows};
    std::vector<std::vector<int>> m_cells;
};

} // namespace nexomap
