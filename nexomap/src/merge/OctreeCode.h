// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace nexomap {

/// Ascending keys of 48 bits as the tree of their common prefixes (an octree, when the keys are Morton codes;
/// after D. Meagher, "Geometric modeling using octree encoding", 1982): from the root down, one byte per node
/// says which of its eight children there are. Keys that do not ascend begin a new tree.
struct OctreeCode
{
    std::uint32_t trees = 0;
    std::vector<std::uint8_t> nodes; ///< level by level, the roots first, all trees side by side
};

constexpr int kOctreeLevels = 16;
constexpr std::uint32_t kMostOctrees = 65535;

/// Codes many trees, one after the other, in the same memory.
class OctreeCoder
{
public:
    /// The keys to encode, below 2^48, and those decoded. Encoding uses them up; after decoding there may be
    /// more than were asked for.
    std::vector<std::uint64_t> keys;

    /// @return false when there would be more than kMostOctrees trees or more than `most_bytes` nodes
    bool encode(std::size_t most_bytes, OctreeCode* code);

    /// @param nodes, size  what OctreeCode held
    /// @param count  number of keys there have to be
    /// @return false for bytes that are no such code
    bool decode(std::uint32_t trees, const std::uint8_t* nodes, std::size_t size, std::size_t count);

private:
    std::vector<std::uint64_t> m_parents;
    std::vector<std::uint8_t> m_levels; ///< the deepest level first
};

} // namespace nexomap
