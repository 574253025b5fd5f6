// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <string>

/// EXIF blocks and XMP packets for pictures of tests.
namespace pnotest {

/// From the TIFF header on: a first directory that points to one with the original time and its fraction.
std::string exifBlock(const std::string& time, const std::string& fraction, bool bigEndian);

/// @param crop  full width, full height, width, height, left, top
std::string gpanoPacket(const std::string& prefix, const std::array<int, 6>& crop,
                        const std::string& projection = "equirectangular");

} // namespace pnotest
