// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>

namespace nexomap {

// Cells of a cloud in the order of a space-filling curve: numbers that are near each other are near in space.
// Morton, A computer oriented geodetic data base, 1966. Three 16-bit coordinates make 48 bits of a 64-bit
// key.

/// Puts two zero bits between the bits of a 16-bit number, and takes them out again.
inline std::uint64_t mortonSpread(std::uint64_t v)
{
    v = (v | v << 16) & 0x0000FF0000FF;
    v = (v | v << 8) & 0x00F00F00F00F;
    v = (v | v << 4) & 0x0C30C30C30C3;
    return (v | v << 2) & 0x249249249249;
}

inline std::uint16_t mortonGather(std::uint64_t v)
{
    v &= 0x249249249249;
    v = (v | v >> 2) & 0x0C30C30C30C3;
    v = (v | v >> 4) & 0x00F00F00F00F;
    v = (v | v >> 8) & 0x0000FF0000FF;
    return std::uint16_t(v | v >> 16);
}

inline std::uint64_t mortonKey(std::uint16_t x, std::uint16_t y, std::uint16_t z)
{
    return mortonSpread(x) | mortonSpread(y) << 1 | mortonSpread(z) << 2;
}

inline std::array<std::uint16_t, 3> cellOfMorton(std::uint64_t key)
{
    return {mortonGather(key), mortonGather(key >> 1), mortonGather(key >> 2)};
}

} // namespace nexomap
