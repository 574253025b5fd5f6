// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Failure.h"
#include "nexomap/src/model/Names.h"
#include "nexomap/src/Plausible.h"

#include <cmath>
#include <cstring>
#include <string>

namespace nexomap {

/// @throws Failure(NEXOMAP_BAD_ARGUMENT) unless every pointer is there
template <class... Pointers>
void requireAll(const Pointers*... pointers)
{
    for (const void* const pointer : {static_cast<const void*>(pointers)...})
        if (!pointer) throw Failure(NEXOMAP_BAD_ARGUMENT, "a null pointer was given");
}

/// @throws Failure(NEXOMAP_BAD_ARGUMENT) unless every real is finite
template <class... Reals>
void requireFinite(Reals... reals)
{
    if (!(std::isfinite(reals) && ...)) throw Failure(NEXOMAP_BAD_ARGUMENT, "a real is not a number");
}

/// @throws Failure(NEXOMAP_BAD_ARGUMENT) unless every real is a length of this world
template <class... Reals>
void requireLengths(Reals... metres)
{
    if (!(isLength(metres) && ...)) throw Failure(NEXOMAP_BAD_ARGUMENT, "a length is beyond all bounds");
}

/// A panorama's name from a buffer of 16 bytes; never reads past it.
inline std::string nameOf(const char* text)
{
    requireAll(text);
    std::size_t length = 0;
    while (length < 16 && text[length] != '\0')
        ++length;
    const std::string name(text, length);
    if (!isName(name)) throw Failure(NEXOMAP_BAD_ARGUMENT, "a panorama's name has 14 characters");
    return name;
}

inline std::string pathOf(const char* text)
{
    requireAll(text);
    if (*text == '\0') throw Failure(NEXOMAP_BAD_ARGUMENT, "an empty path was given");
    return text;
}

/// Fills a text buffer up with zeros.
inline void putText(char* target, std::size_t width, const std::string& text)
{
    std::memset(target, 0, width);
    std::memcpy(target, text.data(), std::min(width - 1, text.size()));
}

} // namespace nexomap
