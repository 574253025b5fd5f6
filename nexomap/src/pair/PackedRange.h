// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <opencv2/core.hpp>

#include <cstdint>
#include <memory>
#include <vector>

namespace nexomap {

struct RangeMap;

/// A range map in less than half of its memory: 16 bits a cell, and two more for the half step that a median
/// of an even count leaves and for the edge flag. Without loss for maps reduced from steps of a known unit;
/// others are rounded to half a millimetre. Single cells can be read as it lies.
class PackedRange
{
public:
    /// @return null for an empty map
    static std::shared_ptr<const PackedRange> pack(const RangeMap& map);
    RangeMap unpack() const;

    cv::Size size() const { return m_steps.size(); }
    /// Metres; 0: no return.
    float range(int row, int column) const
    {
        return float(2 * m_steps(row, column) + bit(m_halves, row, column)) * 0.5f * m_unit_m;
    }
    std::size_t bytes() const
    {
        return m_steps.total() * sizeof(std::uint16_t) + m_halves.size() + m_edges.size();
    }

private:
    using Bits = std::vector<std::uint8_t>;
    std::size_t place(int row, int column) const { return std::size_t(row) * m_steps.cols + column; }
    int bit(const Bits& bits, int row, int column) const
    {
        const std::size_t at = place(row, column);
        return bits[at >> 3] >> (at & 7) & 1;
    }
    void set(Bits& bits, int row, int column)
    {
        const std::size_t at = place(row, column);
        bits[at >> 3] = std::uint8_t(bits[at >> 3] | 1u << (at & 7));
    }

    cv::Mat1w m_steps;
    Bits m_halves, m_edges;
    float m_unit_m = 0.f, m_stated_unit_m = 0.f;
};

} // namespace nexomap
