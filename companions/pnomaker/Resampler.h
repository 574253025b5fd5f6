// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

namespace pnomaker {

struct StripeWindow;

/// Weights of one output position: `count` inputs from `first` on, fixed point with sum 1 << 14.
struct Taps
{
    int first = 0;
    int count = 0;
    std::size_t weights = 0; ///< index of the first weight
};

/// Resampling along one axis. Shrinking weighs every input by the share of the output pixel's interval that
/// it covers (exact area average); enlarging is cubic convolution with a = -1/2 (Keys, IEEE Trans. ASSP 29,
/// 1981).
struct AxisWeights
{
    std::vector<Taps> taps; ///< one per output position
    std::vector<std::int16_t> values;
    int maxCount = 0; ///< of a wrapped axis every output's count, even, filled up with weights of 0

    /// @param inputs   size of the input; output position i covers inputs [i * step + origin, + step)
    /// @param wrapped  the axis is closed: taps before 0 and past the end stand for the other end.
    ///                 Otherwise they are cut off and the edge counts more.
    AxisWeights(int inputs, int outputs, double origin, double step, bool wrapped);
};

/// Resamples an RGB picture row by row in fixed point, vertically first.
class Resampler
{
public:
    /// Maps the whole width, and rows so that output row r covers input rows [r * step + origin, + step).
    Resampler(int inWidth, int inHeight, int outWidth, int outHeight, double rowOrigin, double rowStep);

    bool copies() const { return m_same; } ///< input and output are the same picture

    int firstInputRow(int outRow) const { return m_vertical.taps[outRow].first; }
    int endInputRow(int outRow) const
    {
        return m_vertical.taps[outRow].first + m_vertical.taps[outRow].count;
    }

    /// One output row, outWidth * 3 bytes. `scratch` is kept by the calling thread between rows.
    void makeRow(const StripeWindow& input, int outRow, std::uint8_t* out,
                 std::vector<std::int16_t>& scratch) const;

private:
    void mixColumns(const std::int16_t* row, std::uint8_t* out) const;

    int m_inWidth;
    int m_outWidth;
    bool m_same;      ///< nothing to do but to copy
    bool m_halves;    ///< both axes shrink by exactly two
    int m_wrapPixels; ///< pixels repeated on either side of the intermediate row
    AxisWeights m_horizontal;
    AxisWeights m_vertical;
};

} // namespace pnomaker
