// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/files/WorkingFolder.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>

/// Damages files at random: flipped bits, cuts, appended bytes, numbers that like to overflow, moved pieces.
class BentBytes
{
public:
    explicit BentBytes(unsigned seed)
        : m_random(seed)
    {}

    std::size_t below(std::size_t limit) { return m_random() % limit; }

    nexomap::Bytes bend(nexomap::Bytes bytes)
    {
        for (std::size_t times = 1 + below(3); times > 0 && bytes.size() > 8; --times) {
            switch (below(6)) {
            case 0:
                bytes[below(bytes.size())] ^= std::uint8_t(1u << below(8));
                break;
            case 1:
                bytes.resize(below(bytes.size()));
                break;
            case 2:
                for (std::size_t more = 1 + below(100); more > 0; --more)
                    bytes.push_back(std::uint8_t(below(256)));
                break;
            case 3:
                poke(&bytes, count());
                break;
            case 4:
                poke(&bytes, real());
                break;
            case 5:
                shuffle(&bytes);
                break;
            }
        }
        return bytes;
    }

    /// Makes a match file's length and checksum say what is there: a liar knows how to add up.
    static void sealMatchFile(nexomap::Bytes* bytes)
    {
        constexpr std::size_t kHeader = 20;
        if (bytes->size() < kHeader) return;
        const std::uint64_t size = bytes->size() - kHeader;
        const auto sum = std::uint32_t(crc32(crc32(0, nullptr, 0), bytes->data() + kHeader, uInt(size)));
        std::memcpy(bytes->data() + 8, &size, sizeof size);
        std::memcpy(bytes->data() + 16, &sum, sizeof sum);
    }

    /// Any real: small ones, huge ones, none at all.
    double real()
    {
        constexpr double kEndless = std::numeric_limits<double>::infinity();
        static constexpr double kReals[] = {0.0,      -0.0,      1.0,
                                            -1.0,     1e-308,    1e-160,
                                            1e-9,     3.2,       -0.7,
                                            40.0,     -2e3,      9e5,
                                            -9e5,     2e6,       -3e9,
                                            1e19,     1e160,     -1e160,
                                            1e308,    6.283,     -1e308,
                                            1.5708,   1e-3,      0.5,
                                            kEndless, -kEndless, std::numeric_limits<double>::quiet_NaN()};
        return kReals[below(std::size(kReals))];
    }

private:
    std::uint32_t count()
    {
        static constexpr std::uint32_t kCounts[] = {
            0, 1, 2, 256, 65536, 0x07FFFFFF, 0x10000000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
        return kCounts[below(std::size(kCounts))];
    }
    template <class Number>
    void poke(nexomap::Bytes* bytes, Number number)
    {
        if (bytes->size() <= sizeof number) return;
        std::memcpy(bytes->data() + below(bytes->size() - sizeof number), &number, sizeof number);
    }
    void shuffle(nexomap::Bytes* bytes)
    {
        const std::size_t size = 1 + below(std::min<std::size_t>(bytes->size() / 2, 400));
        const std::size_t from = below(bytes->size() - size), to = below(bytes->size() - size);
        std::memmove(bytes->data() + to, bytes->data() + from, size);
    }

    std::mt19937 m_random;
};
