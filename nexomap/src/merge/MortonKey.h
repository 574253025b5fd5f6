// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>

namespace nexomap {

// Cells of a cloud in the order of a space-filling curve: numbers that are near each other are near in space.
// Morton, A computer oriented geodetic data base, 1966. Three 16-bit coordinates make 48 bits of a 64-bit
// key.

std::uint64_t mortonKey(std::uint16_t x, std::uint16_t y, std::uint16_t z);
std::array<std::uint16_t, 3> cellOfMorton(std::uint64_t key);

} // namespace nexomap
