// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

namespace nexomap {

/// Random numbers fixed by the two panoramas' ids, the same on every platform: SplitMix64 (Steele et al.
/// 2014).
class PairRandom
{
public:
    PairRandom(const std::string& id_0, const std::string& id_1)
    {
        for (const std::string* id : {&id_0, &id_1}) {
            for (const char c : *id)
                m_state = (m_state ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
            m_state = (m_state ^ 0xffu) * 0x100000001b3u;
        }
    }

    std::uint64_t next()
    {
        std::uint64_t z = (m_state += 0x9e3779b97f4a7c15u);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        return z ^ (z >> 31);
    }

    /// Uniform in [0, count).
    int below(int count) { return int((next() >> 32) * std::uint64_t(count) >> 32); }

private:
    std::uint64_t m_state = 0xcbf29ce484222325u;
};

} // namespace nexomap
