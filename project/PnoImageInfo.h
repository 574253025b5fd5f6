// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

/// The 448-byte image information block of a panorama file, in the file's own layout (little-endian).
/// Plain bytes without a toolkit type, so that every floor may carry it; each `PanoNode` keeps one unchanged.
#pragma pack(push, 1)
struct PnoImageInfo
{
    char name[32];                   ///< panorama name, zero-terminated
    char identity[16];               ///< identity text, 14 characters, zero-terminated
    std::uint8_t unread48[4];        ///< carried, not interpreted
    std::uint32_t format;            ///< 1
    std::uint32_t mosaic_pixel_size; ///< tile size in pixels, 256
    std::uint32_t max_zoom_level;    ///< top level L, 10 to 12
    std::uint32_t widths[16];        ///< pixels per level, 0 (smallest) to L
    std::uint32_t heights[16];       ///< pixels per level
    std::uint32_t columns[16];       ///< tile columns per level
    std::uint32_t rows[16];          ///< tile rows per level
    double pixel_scale;              ///< radians per pixel at level L
    double output_min_x;             ///< longitude, radians, -pi
    double output_max_x;             ///< longitude, radians, +pi
    double output_min_y;             ///< polar angle, radians from the upper pole
    double output_max_y;             ///< polar angle, radians from the upper pole
    double valid_min_x;              ///< extent that the source covered, as the output extent
    double valid_max_x;
    double valid_min_y;
    double valid_max_y;
    std::uint8_t unread392[36]; ///< carried, not interpreted
    std::uint32_t mode_flag;    ///< 0 or 1
    std::uint32_t quality;      ///< encoding quality, 50 to 100
    std::uint8_t unread436[12]; ///< carried, not interpreted
};
#pragma pack(pop)

static_assert(sizeof(PnoImageInfo) == 448, "the block is copied from and to files as it stands");
static_assert(offsetof(PnoImageInfo, pixel_scale) == 320, "field offsets are the file's");
static_assert(offsetof(PnoImageInfo, quality) == 432, "field offsets are the file's");
