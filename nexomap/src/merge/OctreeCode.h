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

/// Codes many sets of trees, one after the other, in the same memory.
class OctreeCoder
{
public:
    /// Forgets what was added. At most `most_keys` keys will be.
    void begin(std::size_t most_keys);
    /// The next keys, below 2^48.
    void add(const std::uint64_t* keys, std::size_t count);
    /// @return false when there would be more than kMostOctrees trees or more than `most_bytes` nodes
    bool finish(std::size_t most_bytes, OctreeCode* code);

    /// @param nodes, size  what OctreeCode held
    /// @param count  number of keys there have to be
    /// @return false for bytes that are no such code
    bool decode(std::uint32_t trees, const std::uint8_t* nodes, std::size_t size, std::size_t count);
    /// What was decoded; there may be more than were asked for.
    const std::vector<std::uint64_t>& keys() const { return m_keys; }

private:
    std::vector<std::uint64_t> m_keys, m_parents;
    std::vector<std::uint8_t> m_levels;     ///< the deepest level first
    std::size_t m_added = 0, m_last = 0;    ///< keys; number of the last parent
    std::uint64_t m_before = 0, m_tree = 0; ///< last key; number of its tree, above the bits of keys
    unsigned m_children = 0;                ///< of the last parent
};

} // namespace nexomap
