// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace nexomap {

constexpr std::size_t kNameLength = 14;

/// Whether a text can be a panorama's identity here: 14 printable ASCII characters that every file system
/// takes in a file's name, since keys and plans are named by it.
inline bool isName(const std::string& text)
{
    if (text.size() != kNameLength) return false;
    for (const char c : text)
        if (c <= ' ' || c > '~' || std::string("\"*/:<>?\\|").find(c) != std::string::npos) return false;
    return text.front() != '.';
}

} // namespace nexomap
