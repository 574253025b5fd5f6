// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PtsText.h"

#include <charconv>
#include <cstring>

namespace nexomap {
namespace {
constexpr double kTenThousandths = 10000.0;
constexpr double kFarthest_m = 1e13;
} // namespace

PtsText::PtsText()
{
    for (int n = 0; n < 10000; ++n)
        m_four[std::size_t(n)] = {
            {char('0' + n / 1000), char('0' + n / 100 % 10), char('0' + n / 10 % 10), char('0' + n % 10)}};
    for (int n = 0; n < 256; ++n) {
        Digits& digits = m_byte[std::size_t(n)];
        char* const end = std::to_chars(digits.text, digits.text + 3, n).ptr;
        *end = ' ';
        m_long[std::size_t(n)] = std::uint8_t(end + 1 - digits.text);
    }
}

char* PtsText::putMetres(char* to, double metres) const
{
    if (!(metres > -kFarthest_m && metres < kFarthest_m)) metres = 0.0;
    const double scaled = metres * kTenThousandths;
    return putTenThousandths(to, static_cast<std::int64_t>(scaled < 0.0 ? scaled - 0.5 : scaled + 0.5));
}

char* PtsText::putTenThousandths(char* to, std::int64_t number) const
{
    *to = '-'; // stays only before a negative number
    to += number < 0;
    const auto size = static_cast<std::uint64_t>(number < 0 ? -number : number);
    const std::uint64_t whole = size / 10000;
    if (whole < 10) {
        *to++ = char('0' + whole);
    } else if (whole < 100) {
        std::memcpy(to, m_four[whole].text + 2, 2);
        to += 2;
    } else {
        to = std::to_chars(to, to + 20, whole).ptr;
    }
    *to++ = '.';
    std::memcpy(to, m_four[size % 10000].text, 4);
    to[4] = ' ';
    return to + 5;
}

char* PtsText::putColour(char* to, std::uint8_t red, std::uint8_t green, std::uint8_t blue) const
{
    const auto grey = std::uint8_t((299 * red + 587 * green + 114 * blue) / 1000);
    for (const std::uint8_t value : {grey, red, green, blue}) {
        std::memcpy(to, m_byte[value].text, 4);
        to += m_long[value];
    }
    to[-1] = '\n';
    return to;
}

} // namespace nexomap
