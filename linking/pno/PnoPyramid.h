// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>

/// The pyramid rule: which pixel sizes and tile grids the levels of a panorama have. Reader and maker share
/// it, so that both round alike.
namespace pno {

constexpr std::uint32_t kMinTopLevel = 10;
constexpr std::uint32_t kMaxTopLevel = 12;
constexpr std::uint32_t kLevelSlots = 16; ///< places for levels in the image information block

/// Extent of the picture that the tiles hold, radians.
struct Extent
{
    double longitude_min, longitude_max;
    double polar_min, polar_max; ///< polar angle from the upper pole
};

/// Levels 0 (smallest) to the top level; the slots above it stay 0.
struct Pyramid
{
    std::array<std::uint32_t, kLevelSlots> widths{};  ///< pixels
    std::array<std::uint32_t, kLevelSlots> heights{}; ///< pixels
    std::array<std::uint32_t, kLevelSlots> columns{}; ///< tiles
    std::array<std::uint32_t, kLevelSlots> rows{};    ///< tiles
    std::array<std::uint32_t, kLevelSlots> firsts{};  ///< directory index of the level's first tile
    std::uint32_t tiles = 0;                          ///< of all levels
};

/// @param topLevel  kMinTopLevel to kMaxTopLevel
/// @param extent    finite; longitude about -pi to +pi, at most about pi of polar angle
Pyramid pyramid(std::uint32_t topLevel, const Extent& extent);

/// Radians per pixel at the top level.
double pixelScale(std::uint32_t topLevel);

} // namespace pno
