// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string_view>

/// Identity number of a panorama: its identity text read as a base-26 number, most significant character
/// first. "A" to "Z" and "a" to "z" are the digits 0 to 25, every other character counts as 0. Arithmetic is
/// modulo 2^64: fourteen letters can exceed it, and files rely on the wrapped value.
inline std::uint64_t panoIdFromName(std::string_view name)
{
    std::uint64_t value = 0;
    for (const char c : name) {
        std::uint64_t digit = 0;
        if (c >= 'A' && c <= 'Z')
            digit = static_cast<std::uint64_t>(c - 'A');
        else if (c >= 'a' && c <= 'z')
            digit = static_cast<std::uint64_t>(c - 'a');
        value = value * 26 + digit;
    }
    return value;
}
