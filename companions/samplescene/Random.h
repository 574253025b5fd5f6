// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cmath>
#include <cstdint>
#include <string>

/// Random numbers that are the same on every system: integer hashing, no library distribution.
namespace samplescene {

inline std::uint32_t hash(std::uint32_t v)
{
    v ^= v >> 16;
    v *= 0x7feb352dU;
    v ^= v >> 15;
    v *= 0x846ca68bU;
    v ^= v >> 16;
    return v;
}
inline std::uint32_t hash(std::uint32_t a, std::uint32_t b)
{
    return hash(a ^ (hash(b) + 0x9e3779b9U + (a << 6) + (a >> 2)));
}
inline std::uint32_t hash(std::uint32_t a, std::uint32_t b, std::uint32_t c)
{
    return hash(hash(a, b), c);
}
inline std::uint32_t hash(const std::string& text, std::uint32_t seed)
{
    for (const char c : text)
        seed = hash(seed, static_cast<unsigned char>(c));
    return seed;
}
/// Upper bits as a number in [0, 1).
inline float unit(std::uint32_t h)
{
    return static_cast<float>(h >> 8) * (1.0f / 16777216.0f);
}

/// A stream of numbers; equal seeds give equal streams.
class Random
{
public:
    explicit Random(std::uint32_t seed)
        : m_state(hash(seed + 0x51ed27U))
    {}
    std::uint32_t bits() { return hash(m_state += 0x9e3779b9U); }
    float uniform() { return unit(bits()); }                                        ///< [0, 1)
    float uniform(float low, float high) { return low + (high - low) * uniform(); } ///< [low, high)
    int below(int count) { return static_cast<int>(bits() % static_cast<std::uint32_t>(count)); }
    bool chance(float probability) { return uniform() < probability; }
    /// Standard normal (Box and Muller 1958).
    float gaussian()
    {
        const float u = 1.0f - uniform();
        return std::sqrt(-2.0f * std::log(u)) * std::cos(6.2831853f * uniform());
    }

private:
    std::uint32_t m_state;
};

/// Standard normal from a hash, for noise that belongs to a pixel and not to a thread's stream. Sum of four
/// uniform 16-bit numbers (Irwin-Hall), scaled to variance 1: its tails end at 3.5, as a sensor's do.
inline float gaussianOf(std::uint32_t h)
{
    const std::uint32_t g = hash(h + 0x68bc21ebU);
    const float sum = static_cast<float>((h & 0xffff) + (h >> 16) + (g & 0xffff) + (g >> 16));
    return (sum * (1.0f / 65535.0f) - 2.0f) * 1.7320508f;
}

} // namespace samplescene
