// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudBlocks.h"

#include <random>
#include <vector>

/// Points on the surfaces of a made-up flat, as a merge leaves them: one per cell, in Morton order.
class MadeUpCloud
{
public:
    /// @param turn_rad  the flat's turn in the world
    MadeUpCloud(int cell_cm, double turn_rad);
    /// An upright or level rectangle between two corners, in the flat's own axes, with 5 mm of noise across
    /// it.
    void add(const Eigen::Vector3d& low, const Eigen::Vector3d& high, std::uint8_t red = 200,
             std::uint8_t green = 180, std::uint8_t blue = 160);
    Eigen::Vector3d world(const Eigen::Vector3d& flat) const;
    nexomap::CloudInMemory cloud() const;

private:
    nexomap::CloudGrid m_grid;
    int m_cell_cm;
    double m_turn;
    std::mt19937 m_random{1};
    std::vector<std::pair<std::uint64_t, nexomap::CloudPoint>> m_points;
};
