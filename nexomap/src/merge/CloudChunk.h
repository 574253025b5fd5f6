// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace nexomap {

/// A run of points of a cloud file: their bytes from each of its nine planes, without loss. Chunks know
/// nothing of each other, so that they can be coded side by side and one at a time.
struct CloudChunk
{
    static constexpr std::size_t kPlanes = 9;
    static constexpr std::size_t kMostPoints = 1 << 17; ///< a plane fills one block of the packer

    std::size_t points = 0;
    std::vector<std::uint8_t> planes; ///< plane by plane, `points` bytes each
    std::uint8_t* plane(std::size_t number) { return planes.data() + number * points; }
    const std::uint8_t* plane(std::size_t number) const { return planes.data() + number * points; }
};

/// Points in the order of a space-filling curve become an octree, others differences of their coordinates;
/// colours are differences from point to point, red and blue against green. Then Zstandard.
/// @throws std::bad_alloc
std::vector<std::uint8_t> encodeChunk(const CloudChunk& chunk);

/// @param points  how many there are, at most kMostPoints
/// @throws Failure(NEXOMAP_BAD_FILE) for bytes that encodeChunk did not write
CloudChunk decodeChunk(const std::vector<std::uint8_t>& packed, std::size_t points);

} // namespace nexomap
