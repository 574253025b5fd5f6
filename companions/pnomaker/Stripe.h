// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

/// Pictures as they pass through the maker: stripes of rows, kept only as long as somebody needs them.
namespace pnomaker {

constexpr int kStripeRows = 256; ///< one row of tiles

/// A band of rows of one level, RGB, 3 bytes a pixel.
struct Stripe
{
    int firstRow = 0;      ///< row of the picture
    int rows = 0;          ///< rows that belong to the picture
    int width = 0;         ///< pixels that belong to the picture
    int padLeft = 0;       ///< pixels before them, so that the tile grid lies inside the buffer
    std::size_t pitch = 0; ///< bytes from row to row
    std::unique_ptr<std::uint8_t[]> bytes;

    Stripe(int firstRow_, int rows_, int width_, int padLeft_, int allocatedRows)
        : firstRow(firstRow_)
        , rows(rows_)
        , width(width_)
        , padLeft(padLeft_)
        , pitch(static_cast<std::size_t>(width_ + padLeft_) * 3)
        , bytes(new std::uint8_t[pitch * allocatedRows])
    {}

    /// First pixel of a row, counted from the top of the stripe; the padding lies before it.
    std::uint8_t* row(int index)
    {
        return bytes.get() + pitch * index + static_cast<std::size_t>(padLeft) * 3;
    }
    const std::uint8_t* row(int index) const { return const_cast<Stripe*>(this)->row(index); }
};

using StripePtr = std::shared_ptr<const Stripe>;

/// The stripes of one picture that are still needed; each but the last has kStripeRows rows.
struct StripeWindow
{
    std::deque<StripePtr> stripes;

    int endRow() const { return stripes.empty() ? 0 : stripes.back()->firstRow + stripes.back()->rows; }

    /// A row of the picture; it must lie in the window.
    const std::uint8_t* row(int y) const
    {
        const Stripe& stripe =
            *stripes[static_cast<std::size_t>(y / kStripeRows - stripes.front()->firstRow / kStripeRows)];
        return stripe.row(y - stripe.firstRow);
    }

    void dropBefore(int y)
    {
        while (stripes.size() > 1 && stripes.front()->firstRow + stripes.front()->rows <= y)
            stripes.pop_front();
    }
};

} // namespace pnomaker
