// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/pno/PnoPyramid.h"

#include "linking/pno/PnoFormat.h"

#include <algorithm>
#include <cmath>

namespace pno {
namespace {

double fullWidth(std::uint32_t topLevel)
{
    return kTilePixels * std::pow(2.0, topLevel / 2.0);
}

std::uint32_t roundHalfUp(double value)
{
    return static_cast<std::uint32_t>(value + 0.5);
}

// Levels 0 and 1 fix the smallest grid and each second level doubles it, so that a tile always splits into
// four of the level two above, even where the rounded pixel size would need one tile less.
std::uint32_t tilesAlong(const std::array<std::uint32_t, kLevelSlots>& pixels, std::uint32_t level)
{
    const std::uint32_t doubled = pixels[level % 2] << (level / 2);
    return (kTilePixels - 1 + std::max(pixels[level], doubled)) / kTilePixels;
}

} // namespace

Pyramid pyramid(std::uint32_t topLevel, const Extent& extent)
{
    Pyramid result;
    const double longitudes = extent.longitude_max - extent.longitude_min;
    const double polars = extent.polar_max - extent.polar_min;
    for (std::uint32_t level = 0; level <= topLevel; ++level) {
        const double width = fullWidth(topLevel) / std::pow(std::sqrt(2.0), topLevel - level);
        result.widths[level] = roundHalfUp(width);
        result.heights[level] = roundHalfUp(polars * width / longitudes);
        result.columns[level] = tilesAlong(result.widths, level);
        result.rows[level] = tilesAlong(result.heights, level);
        result.firsts[level] = result.tiles;
        result.tiles += result.columns[level] * result.rows[level];
    }
    return result;
}

double pixelScale(std::uint32_t topLevel)
{
    return kTwoPiOfScale / fullWidth(topLevel);
}

} // namespace pno
