// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/Labels.h"

#include <algorithm>

namespace pnomaker {
namespace {

constexpr std::size_t kIdLetters = 14;
constexpr std::size_t kNameMin = 4;
constexpr std::size_t kNameMax = 31;

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

} // namespace

std::string idFromNumber(std::uint64_t number)
{
    std::string text(kIdLetters, 'A');
    for (std::size_t i = kIdLetters; i-- > 0; number /= 26)
        text[i] = static_cast<char>('A' + number % 26);
    return text;
}

bool isId(const std::string& text)
{
    return text.size() == kIdLetters && std::all_of(text.begin(), text.end(), isLetter);
}

std::string fittedName(const std::string& text)
{
    std::string name = text;
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '_';
    if (name.size() > kNameMax) {
        std::size_t end = kNameMax;
        while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80)
            --end;
        name.resize(end > 0 ? end : kNameMax);
    }
    if (name.size() < kNameMin) name.resize(kNameMin, '_');
    return name;
}

} // namespace pnomaker
