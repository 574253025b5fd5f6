// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/pno/PnoChecks.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace pno {
namespace {

constexpr double kTolerance = 1e-9;
// Centres and widths of the accepted polar extents; lopsided on purpose, files rely on them.
constexpr double kPolarMinCentre = 0.2;
constexpr double kPolarMinReach = 0.3001;
constexpr double kPolarMaxCentre = 2.8;
constexpr double kPolarMaxReach = 0.3416;

bool between(std::uint32_t value, std::uint32_t low, std::uint32_t high)
{
    return value >= low && value <= high;
}

// False for NaN, too.
bool near(double value, double centre, double reach)
{
    return std::fabs(value - centre) <= reach;
}

bool validNames(const PnoImageInfo& info)
{
    constexpr std::size_t kMinNameLength = 4;
    constexpr std::size_t kIdentityLength = 14;
    if (info.name[sizeof info.name - 1] != 0 || info.identity[kIdentityLength] != 0) return false;
    return std::strlen(info.name) >= kMinNameLength && std::strlen(info.identity) == kIdentityLength;
}

bool validExtents(const PnoImageInfo& info)
{
    const bool longitudes =
        near(info.output_min_x, -kPi, kTolerance) && near(info.output_max_x, kPi, kTolerance) &&
        near(info.valid_min_x, -kPi, kTolerance) && near(info.valid_max_x, kPi, kTolerance);
    const bool polars = near(info.output_min_y, kPolarMinCentre, kPolarMinReach) &&
                        near(info.output_max_y, kPolarMaxCentre, kPolarMaxReach) &&
                        near(info.valid_min_y, kPolarMinCentre, kPolarMinReach) &&
                        near(info.valid_max_y, kPolarMaxCentre, kPolarMaxReach);
    return longitudes && polars && info.valid_min_y >= info.output_min_y - kTolerance &&
           info.valid_max_y <= info.output_max_y + kTolerance;
}

bool samePyramid(const PnoImageInfo& info, const Pyramid& expected)
{
    for (std::uint32_t level = 0; level <= info.max_zoom_level; ++level) {
        if (info.widths[level] != expected.widths[level] || info.heights[level] != expected.heights[level] ||
            info.columns[level] != expected.columns[level] || info.rows[level] != expected.rows[level])
            return false;
    }
    return true;
}

// Checks one level's records and carries the largest end of a tile along.
bool checkGrid(const TileRecord* records, std::uint32_t level, std::uint32_t rows, std::uint32_t columns,
               std::int32_t* end)
{
    for (std::uint32_t row = 0; row < rows; ++row) {
        for (std::uint32_t column = 0; column < columns; ++column) {
            const TileRecord& record = records[row * columns + column];
            if (record.level != static_cast<std::int32_t>(level) ||
                record.column != static_cast<std::int32_t>(column) ||
                record.row != static_cast<std::int32_t>(row))
                return false;
            if (record.offset > kMaxTileOffset || record.size > kMaxTileBytes) return false;
            *end = std::max(*end, static_cast<std::int32_t>(record.offset + record.size));
        }
    }
    return true;
}

} // namespace

bool validCaptureTime(const CaptureTime& time)
{
    return between(time.year, 1970, 2100) && between(time.month, 1, 12) && between(time.day, 1, 31) &&
           time.hour <= 23 && time.minute <= 59 && time.second <= 59 && time.millisecond <= 999;
}

std::optional<Pyramid> checkedPyramid(const PnoImageInfo& info)
{
    if (!validNames(info)) return std::nullopt;
    if (info.format != 1 || info.mosaic_pixel_size != kTilePixels ||
        !between(info.max_zoom_level, kMinTopLevel, kMaxTopLevel))
        return std::nullopt;
    if (info.mode_flag > 1 || !between(info.quality, 50, 100)) return std::nullopt;
    if (!near(info.pixel_scale, pixelScale(info.max_zoom_level), kTolerance) || !validExtents(info))
        return std::nullopt;
    const Pyramid expected = pyramid(
        info.max_zoom_level, {info.output_min_x, info.output_max_x, info.output_min_y, info.output_max_y});
    if (!samePyramid(info, expected)) return std::nullopt;
    return expected;
}

std::optional<std::int32_t> checkedTileDirectory(const TileRecord* records, std::uint32_t topLevel,
                                                 const Pyramid& pyramid)
{
    std::int32_t end = 0;
    for (std::uint32_t level = 0; level <= topLevel; ++level) {
        if (!checkGrid(records + pyramid.firsts[level], level, pyramid.rows[level], pyramid.columns[level],
                       &end))
            return std::nullopt;
    }
    return end;
}

std::optional<std::int32_t> checkedDepthDirectory(const TileRecord* records)
{
    std::int32_t end = 0;
    if (!checkGrid(records, kDepthLevel, kDepthRows, kDepthColumns, &end)) return std::nullopt;
    return end;
}

} // namespace pno
