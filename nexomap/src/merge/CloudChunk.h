// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <memory>
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

/// Codes chunks one after the other in the same memory: a fresh block for each would cost more than the
/// coding. One thread at a time.
///
/// Points in the order of a space-filling curve become an octree, others differences of their coordinates;
/// colours are differences from point to point, red and blue against green. Then Zstandard.
class ChunkCoder
{
public:
    /// @throws std::bad_alloc
    ChunkCoder();
    ~ChunkCoder();

    /// @param packed  gets the bytes of the chunk
    void encode(const CloudChunk& chunk, std::vector<std::uint8_t>* packed);

    /// @param chunk  `points` says how many there are, at most kMostPoints; gets their planes
    /// @throws Failure(NEXOMAP_BAD_FILE) for bytes that `encode` did not write
    void decode(const std::vector<std::uint8_t>& packed, CloudChunk* chunk);

private:
    struct Workspace;
    std::unique_ptr<Workspace> m_work;
};

} // namespace nexomap
