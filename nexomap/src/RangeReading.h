// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/FrontEnd.h"

namespace nexomap {

/// The whole range picture of a panorama file in our own encoding. Tiles that cannot be decoded are holes;
/// with more than a quarter of them lost the file does not count as scanned.
/// @return empty with one line in *error
RangePicture readRanges(const std::string& path, const std::string& id, std::string* error);

} // namespace nexomap
