// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace cloud {

/// Some of a cloud's points: one bit each, in the order of the file.
class PointSet
{
public:
    static constexpr std::size_t kWordPoints = 64; ///< points of one word

    PointSet() = default;
    explicit PointSet(std::size_t points)
        : m_words((points + kWordPoints - 1) / kWordPoints)
    {}

    bool contains(std::size_t point) const
    {
        return m_words[point / kWordPoints] >> (point % kWordPoints) & 1;
    }
    void insert(std::size_t point)
    {
        m_words[point / kWordPoints] |= std::uint64_t(1) << (point % kWordPoints);
    }

    /// Bit b of word w stands for point 64 w + b; the bits beyond the last point are 0.
    const std::vector<std::uint64_t>& words() const { return m_words; }
    std::vector<std::uint64_t>& words() { return m_words; }

    std::size_t size() const { return countIn(0, m_words.size()); }
    std::size_t countIn(std::size_t firstWord, std::size_t lastWord) const
    {
        std::size_t count = 0;
        for (std::size_t word = firstWord; word < lastWord; ++word)
            count += std::bitset<kWordPoints>(m_words[word]).count();
        return count;
    }

private:
    std::vector<std::uint64_t> m_words;
};

} // namespace cloud
