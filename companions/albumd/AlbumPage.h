// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The HTML around an album: a frame that the script fills. No text of the album gets into it unescaped.

#pragma once

#include "companions/albumd/Albums.h"

#include <httplib.h>

#include <string>

namespace albumd {

std::string albumPage(const Album& album, bool chinese);
std::string missingPage(bool chinese);

/// With the policy that lets nothing run or load but what the service itself serves.
void setPage(httplib::Response& response, const std::string& html);

/// For text between tags and for attribute values in quotation marks.
std::string escapedForHtml(const std::string& text);

} // namespace albumd
