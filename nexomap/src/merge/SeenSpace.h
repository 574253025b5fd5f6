// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Geometry.h"
#include "nexomap/src/merge/RangePyramid.h"

#include <cstdint>

namespace nexomap {

/// The space that a station looked through, as a cube of coarse pixels with the nearest and the farthest
/// range in and about each. Says whether a point of another station can be there.
class SeenSpace
{
public:
    enum class Verdict
    {
        Unknown,     ///< outside what was seen, or hidden behind it
        SeesThrough, ///< the station saw farther in all directions about the point
        Confirms     ///< the station has a surface there
    };

    SeenSpace(const RangePyramid& pyramid, const Pose& world_from_pano);

    Verdict verdict(const Eigen::Vector3f& world) const;

private:
    struct Cell
    {
        std::uint16_t low = 0, high = 0; ///< steps of 2 mm; 0: nothing; top bit of low: not seen all about
    };
    static int cellOf(const Eigen::Vector3f& direction);

    Eigen::Matrix3f m_pano_from_world;
    Eigen::Vector3f m_position;
    std::vector<Cell> m_cells;
};

} // namespace nexomap
