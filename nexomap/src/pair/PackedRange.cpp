// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Range maps of panoramas that nobody looks at just now.
#include "nexomap/src/pair/PackedRange.h"

#include "nexomap/src/Panorama.h"

#include <algorithm>
#include <cmath>

namespace nexomap {

std::shared_ptr<const PackedRange> PackedRange::pack(const RangeMap& map)
{
    if (map.range_m.empty()) return map.packed;
    auto packed = std::make_shared<PackedRange>();
    packed->m_stated_unit_m = map.unit_m;
    packed->m_unit_m = map.unit_m > 0.f ? map.unit_m : 0.001f;
    double farthest = 0.0;
    cv::minMaxLoc(map.range_m, nullptr, &farthest);
    // What lies beyond 16 bits makes the steps coarser; maps of files never do.
    while (!(farthest < 65535.0 * double(packed->m_unit_m)))
        packed->m_unit_m *= 2.f;
    packed->m_steps.create(map.range_m.size());
    packed->m_halves.assign((map.range_m.total() + 7) / 8, 0);
    packed->m_edges = packed->m_halves;
    for (int row = 0; row < map.range_m.rows; ++row)
        for (int column = 0; column < map.range_m.cols; ++column) {
            const float range = map.range_m(row, column);
            const int halves =
                range > 0.f ? int(std::lround(2.0 * double(range) / double(packed->m_unit_m))) : 0;
            packed->m_steps(row, column) = std::uint16_t(halves / 2);
            if (halves % 2) packed->set(packed->m_halves, row, column);
            if (map.edge(row, column)) packed->set(packed->m_edges, row, column);
        }
    return packed;
}

RangeMap PackedRange::unpack() const
{
    RangeMap map;
    map.unit_m = m_stated_unit_m;
    map.range_m.create(m_steps.size());
    map.edge.create(m_steps.size());
    for (int row = 0; row < m_steps.rows; ++row) {
        float* range_m = map.range_m[row];
        std::uint8_t* edge = map.edge[row];
        for (int column = 0; column < m_steps.cols; ++column) {
            range_m[column] = range(row, column);
            edge[column] = bit(m_edges, row, column) ? 255 : 0;
        }
    }
    return map;
}

} // namespace nexomap
