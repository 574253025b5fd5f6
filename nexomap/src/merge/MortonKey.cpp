// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/MortonKey.h"

namespace nexomap {
namespace {

/// Puts two zero bits between the bits of a 16-bit number.
std::uint64_t spread(std::uint64_t v)
{
    v = (v | v << 16) & 0x0000FF0000FF;
    v = (v | v << 8) & 0x00F00F00F00F;
    v = (v | v << 4) & 0x0C30C30C30C3;
    return (v | v << 2) & 0x249249249249;
}

std::uint16_t gather(std::uint64_t v)
{
    v &= 0x249249249249;
    v = (v | v >> 2) & 0x0C30C30C30C3;
    v = (v | v >> 4) & 0x00F00F00F00F;
    v = (v | v >> 8) & 0x0000FF0000FF;
    return std::uint16_t(v | v >> 16);
}

} // namespace

std::uint64_t mortonKey(std::uint16_t x, std::uint16_t y, std::uint16_t z)
{
    return spread(x) | spread(y) << 1 | spread(z) << 2;
}

std::array<std::uint16_t, 3> cellOfMorton(std::uint64_t key)
{
    return {gather(key), gather(key >> 1), gather(key >> 2)};
}

} // namespace nexomap
