// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Radix sort by the bits in which the keys differ.
#include "nexomap/src/merge/KeySort.h"

#include <cstddef>

namespace nexomap {
namespace {

constexpr int kDigitBits = 11;
constexpr std::size_t kDigits = std::size_t(1) << kDigitBits;

struct WideEntry
{
    std::uint64_t key;
    std::uint32_t index;
    std::uint64_t bits() const { return key; }
};

/// Key and index in one word: half the memory to move, for keys that differ in their lower 32 bits only.
struct NarrowEntry
{
    std::uint64_t both;
    std::uint64_t bits() const { return both >> 32; }
};

template <class Entry>
void radixSort(std::vector<Entry>& entries, std::uint64_t differing)
{
    std::vector<Entry> other(entries.size());
    for (int shift = 0; shift < 48; shift += kDigitBits) {
        if (((differing >> shift) & (kDigits - 1)) == 0) continue;
        std::vector<std::uint32_t> starts(kDigits, 0);
        for (const Entry& entry : entries)
            ++starts[std::size_t(entry.bits() >> shift) & (kDigits - 1)];
        std::uint32_t sum = 0;
        for (std::uint32_t& start : starts) {
            const std::uint32_t count = start;
            start = sum;
            sum += count;
        }
        for (const Entry& entry : entries)
            other[starts[std::size_t(entry.bits() >> shift) & (kDigits - 1)]++] = entry;
        entries.swap(other);
    }
}

} // namespace

std::vector<std::uint32_t> sortKeys(std::vector<std::uint64_t>& keys)
{
    std::uint64_t all = ~std::uint64_t(0), any = 0;
    for (const std::uint64_t key : keys)
        all &= key, any |= key;
    const std::uint64_t differing = any & ~all;
    std::vector<std::uint32_t> indices(keys.size());
    if (differing >> 32 == 0) {
        const std::uint64_t common = keys.empty() ? 0 : keys.front() >> 32 << 32;
        std::vector<NarrowEntry> entries(keys.size());
        for (std::size_t k = 0; k < keys.size(); ++k)
            entries[k].both = keys[k] << 32 | k;
        radixSort(entries, differing);
        for (std::size_t k = 0; k < keys.size(); ++k) {
            keys[k] = common | entries[k].bits();
            indices[k] = std::uint32_t(entries[k].both);
        }
        return indices;
    }
    std::vector<WideEntry> entries(keys.size());
    for (std::size_t k = 0; k < keys.size(); ++k)
        entries[k] = {keys[k], std::uint32_t(k)};
    radixSort(entries, differing);
    for (std::size_t k = 0; k < keys.size(); ++k) {
        keys[k] = entries[k].key;
        indices[k] = entries[k].index;
    }
    return indices;
}

} // namespace nexomap
