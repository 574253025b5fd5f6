// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/ContentHash.h"

#include <algorithm>
#include <cstring>

namespace pnomaker {
namespace {

std::uint64_t littleEndian(const std::uint8_t* bytes)
{
    std::uint64_t value = 0;
    for (int i = 7; i >= 0; --i)
        value = value << 8 | bytes[i];
    return value;
}

/// The finaliser of SplitMix64 (Steele, Lea, Flood, OOPSLA 2014).
std::uint64_t scramble(std::uint64_t x)
{
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9u;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBu;
    return x ^ (x >> 31);
}

} // namespace

void ContentHash::mix(const std::uint8_t* block)
{
    // Four independent chains keep the multiplier busy: hashing stays far below the cost of decoding.
    for (int i = 0; i < 4; ++i) {
        const std::uint64_t word = littleEndian(block + 8 * i);
        std::uint64_t lane = (m_lanes[i] ^ word) * 0x9FB21C651E98DF25u;
        lane ^= lane >> 29;
        m_lanes[i] = lane;
    }
}

void ContentHash::add(const std::uint8_t* bytes, std::size_t size)
{
    m_size += size;
    if (m_restSize > 0) {
        const std::size_t take = std::min(size, kBlock - m_restSize);
        std::memcpy(m_rest + m_restSize, bytes, take);
        m_restSize += take;
        bytes += take;
        size -= take;
        if (m_restSize < kBlock) return;
        mix(m_rest);
        m_restSize = 0;
    }
    for (; size >= kBlock; bytes += kBlock, size -= kBlock)
        mix(bytes);
    std::memcpy(m_rest, bytes, size);
    m_restSize = size;
}

std::uint64_t ContentHash::value() const
{
    std::uint64_t result = scramble(m_size);
    for (const std::uint64_t lane : m_lanes)
        result = scramble(result ^ lane);
    for (std::size_t i = 0; i < m_restSize; ++i)
        result = scramble(result ^ m_rest[i]);
    return result;
}

} // namespace pnomaker
