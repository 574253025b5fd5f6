// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Names.h"

#include <algorithm>

namespace albumd {
namespace {

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetterOrDigit(char c)
{
    return isLetter(c) || isDigit(c);
}

template <typename Test>
bool every(std::string_view text, Test test)
{
    return std::all_of(text.begin(), text.end(), test);
}

bool isAddressCharacter(char c)
{
    return isLetterOrDigit(c) || c == '_' || c == '-' || c == '.';
}

/// Bytes of the character that begins with `first`; 0 when none does.
std::size_t sequenceLength(unsigned char first)
{
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first <= 0xDF) return 2;
    if (first >= 0xE0 && first <= 0xEF) return 3;
    if (first >= 0xF0 && first <= 0xF4) return 4;
    return 0;
}

bool secondFits(unsigned char first, unsigned char second)
{
    switch (first) {
    case 0xE0:
        return second >= 0xA0; // overlong
    case 0xED:
        return second <= 0x9F; // surrogates
    case 0xF0:
        return second >= 0x90; // overlong
    case 0xF4:
        return second <= 0x8F; // beyond U+10FFFF
    default:
        return true;
    }
}

} // namespace

bool isPanoramaId(std::string_view text)
{
    return text.size() == 14 && every(text, isLetterOrDigit);
}

bool isAlbumId(std::string_view text)
{
    return text.size() == 14 && every(text, isLetter);
}

bool isLevel(std::string_view text)
{
    return text.size() == 1 && isDigit(text[0]);
}

bool isPhotoName(std::string_view text)
{
    if (text.size() != 27 || !isPanoramaId(text.substr(0, 14))) return false;
    const std::string_view ending = text.substr(23);
    return (text[14] == '-' || text[14] == '_') && every(text.substr(15, 8), isLetterOrDigit) &&
           (ending == ".jpg" || ending == ".png" || ending == ".cld");
}

bool isCloudName(std::string_view text)
{
    return isPhotoName(text) && text.substr(23) == ".cld";
}

bool isEmail(std::string_view text)
{
    const std::size_t at = text.find('@');
    const std::size_t dot = text.rfind('.');
    if (text.size() > 254 || at == std::string_view::npos || dot == std::string_view::npos || dot < at + 2)
        return false;
    const std::string_view last = text.substr(dot + 1);
    return at > 0 && every(text.substr(0, at), isAddressCharacter) &&
           every(text.substr(at + 1, dot - at - 1), isAddressCharacter) && last.size() >= 2 &&
           last.size() <= 4 && every(last, isLetter);
}

bool isPassword(std::string_view text)
{
    std::size_t characters = 0;
    for (const char c : text)
        characters += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return isUtf8(text) && characters >= 7 && std::any_of(text.begin(), text.end(), isDigit) &&
           std::any_of(text.begin(), text.end(), isLetter);
}

bool isUtf8(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        const auto first = static_cast<unsigned char>(text[at]);
        const std::size_t length = sequenceLength(first);
        if (first == 0 || length == 0 || at + length > text.size()) return false;
        for (std::size_t i = 1; i < length; ++i) {
            const auto next = static_cast<unsigned char>(text[at + i]);
            if ((next & 0xC0) != 0x80 || (i == 1 && !secondFits(first, next))) return false;
        }
        at += length;
    }
    return true;
}

std::string lowered(std::string_view text)
{
    std::string all(text);
    for (char& c : all)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return all;
}

} // namespace albumd
