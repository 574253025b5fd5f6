// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace nexomap {

/// The numbers of a PTS line, from tables: formatting reals takes twenty times as long. Each number is
/// followed by a blank, the last of a line by a line feed.
class PtsText
{
public:
    /// A line's longest length, and what a number may write beyond its own end.
    static constexpr std::size_t kMostBytes = 112;

    PtsText();
    /// Four decimals, rounded to nearest. Anything beyond 10^13 m or not a number is written as 0.
    char* putMetres(char* to, double metres) const;
    /// The same number in units of 0.0001 m.
    char* putTenThousandths(char* to, std::int64_t number) const;
    /// Brightness and the three colours, then the line feed.
    char* putColour(char* to, std::uint8_t red, std::uint8_t green, std::uint8_t blue) const;

private:
    struct Digits
    {
        char text[4];
    };
    std::array<Digits, 10000> m_four;     ///< four digits with leading zeros
    std::array<Digits, 256> m_byte;       ///< as short as it can be, then a blank
    std::array<std::uint8_t, 256> m_long; ///< characters of m_byte, with the blank
};

} // namespace nexomap
