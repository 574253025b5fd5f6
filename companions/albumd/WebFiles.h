// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Script and style of the page, built into the program.

#pragma once

#include <httplib.h>

#include <string>
#include <string_view>

namespace albumd {

struct WebFile
{
    const char* name;
    const unsigned char* bytes;
    std::size_t size;
};

/// Made by the build from the folder web/; ends with a null name.
extern const WebFile kWebFiles[];

/// Empty when there is no such file.
std::string_view webFile(std::string_view name);

/// False when there is no such file.
bool answerWebFile(const std::string& name, httplib::Response& response);

} // namespace albumd
