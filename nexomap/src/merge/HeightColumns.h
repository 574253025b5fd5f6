// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/PlanRaster.h"

#include <cstdint>
#include <vector>

namespace nexomap {

/// Which heights above the floor a cloud fills over each pixel of a raster, one bit per 5 cm. The floor is
/// that of the nearest station; stations of other storeys than the most frequent one count as farther away.
class HeightColumns
{
public:
    /// Bits of a column. Bit 0: anything lower; bit 63: anything higher.
    static constexpr double kBin_m = 0.05, kLowest_m = -0.25;
    static constexpr int kBins = 64;
    /// Number of the bit in which a height lies, 0 to 63.
    static int binOf(double height_m);
    /// The bits whose middles lie between two heights.
    static std::uint64_t bitsBetween(double from_m, double to_m);

    HeightColumns(const CloudBlocks& cloud, const PlanRaster& raster,
                  const std::vector<PlanStation>& stations);

    std::uint64_t at(int x, int y) const
    {
        return m_columns[std::size_t(y) * std::size_t(m_width) + std::size_t(x)];
    }
    /// Of a pixel and its neighbours: a surface's points spread over them. Not for the picture's rim.
    std::uint64_t about(int x, int y) const;

private:
    int m_width;
    std::vector<std::uint64_t> m_columns;
};

} // namespace nexomap
