// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/OctreeCode.h"

#include <array>

namespace nexomap {
namespace {

constexpr std::uint64_t kTree = std::uint64_t(1)
                                << (3 * kOctreeLevels); // trees are told apart above the keys

/// Replaces ascending keys by those of their parents and writes a byte for each.
std::size_t fold(std::uint64_t* keys, std::size_t count, std::uint8_t* nodes)
{
    std::size_t parents = 0;
    std::uint64_t parent = keys[0] >> 3;
    unsigned children = 0;
    for (std::size_t i = 0; i < count; ++i) {
        // No branches: whether a key has the same parent as the last one cannot be foreseen.
        const std::uint64_t own = keys[i] >> 3;
        const bool same = own == parent;
        parents += !same;
        children = (same ? children : 0u) | 1u << (keys[i] & 7);
        nodes[parents] = std::uint8_t(children);
        keys[parents] = own;
        parent = own;
    }
    return parents + 1;
}

/// For each byte the numbers of its set bits, and how many they are.
struct Children
{
    std::array<std::array<std::uint8_t, 8>, 256> number{};
    std::array<std::uint8_t, 256> count{};
    Children()
    {
        for (unsigned byte = 0; byte < 256; ++byte)
            for (unsigned bit = 0; bit < 8; ++bit)
                if (byte >> bit & 1) number[byte][count[byte]++] = std::uint8_t(bit);
    }
};

} // namespace

void OctreeCoder::begin(std::size_t most_keys)
{
    if (m_parents.size() < most_keys) m_parents.resize(most_keys);
    if (m_levels.size() < most_keys) m_levels.resize(most_keys);
    m_added = m_last = 0;
    m_before = m_tree = 0;
    m_children = 0;
}

void OctreeCoder::add(const std::uint64_t* keys, std::size_t count)
{
    if (count == 0) return;
    // As `fold`, with the trees told apart on the way: the keys are never held all at once.
    std::uint64_t* const parents = m_parents.data();
    std::uint8_t* const nodes = m_levels.data();
    std::uint64_t before = m_before, tree = m_tree, parent = (m_before | m_tree) >> 3;
    std::size_t last = m_last, i = 0;
    unsigned children = m_children;
    if (m_added == 0) {
        before = keys[0];
        parent = before >> 3;
        children = 1u << (before & 7);
        nodes[0] = std::uint8_t(children);
        parents[0] = parent;
        i = 1;
    }
    for (; i < count; ++i) {
        const std::uint64_t key = keys[i];
        tree += key <= before ? kTree : 0;
        before = key;
        const std::uint64_t own = (key | tree) >> 3;
        const bool same = own == parent;
        last += !same;
        children = (same ? children : 0u) | 1u << (key & 7);
        nodes[last] = std::uint8_t(children);
        parents[last] = own;
        parent = own;
    }
    m_added += count;
    m_before = before;
    m_tree = tree;
    m_last = last;
    m_children = children;
}

bool OctreeCoder::finish(std::size_t most_bytes, OctreeCode* code)
{
    code->trees = 0;
    code->nodes.clear();
    if (m_added == 0) return true;
    if (m_tree / kTree >= kMostOctrees) return false;
    code->trees = std::uint32_t(m_tree / kTree) + 1;

    std::array<std::size_t, kOctreeLevels> nodes;
    std::size_t count = m_last + 1, bytes = count;
    nodes.back() = count;
    for (std::size_t k = kOctreeLevels - 1; k-- > 0;) {
        if (bytes > most_bytes) return false;
        if (m_levels.size() < bytes + count) m_levels.resize(bytes + count);
        count = fold(m_parents.data(), count, m_levels.data() + bytes);
        bytes += nodes[k] = count;
    }
    if (bytes > most_bytes) return false;
    code->nodes.reserve(bytes);
    for (const std::size_t of_level : nodes) {
        bytes -= of_level;
        code->nodes.insert(code->nodes.end(), m_levels.data() + bytes, m_levels.data() + bytes + of_level);
    }
    return true;
}

bool OctreeCoder::decode(std::uint32_t trees, const std::uint8_t* nodes, std::size_t size, std::size_t count)
{
    static const Children children;
    if (trees > count || trees > kMostOctrees || (trees == 0) != (count == 0)) return false;
    m_parents.resize(count + 8);
    m_keys.resize(count + 8);
    for (std::uint32_t tree = 0; tree < trees; ++tree)
        m_keys[tree] = tree;
    std::size_t known = trees;
    for (int level = 0; level < kOctreeLevels && known; ++level) {
        if (size < known) return false;
        m_parents.swap(m_keys);
        std::uint64_t* to = m_keys.data();
        const std::uint64_t* const end = to + count;
        for (std::size_t i = 0; i < known; ++i) {
            const std::uint8_t byte = nodes[i];
            // An empty node would let the tree shrink, a full one may run over the end.
            if (byte == 0 || std::size_t(end - to) < children.count[byte]) return false;
            const std::uint64_t first = m_parents[i] << 3;
            for (unsigned bit = 0; bit < 8; ++bit) // all eight: cheaper than to ask how many
                to[bit] = first | children.number[byte][bit];
            to += children.count[byte];
        }
        nodes += known;
        size -= known;
        known = std::size_t(to - m_keys.data());
    }
    return known == count && size == 0;
}

} // namespace nexomap
