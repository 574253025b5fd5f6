// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/PnoFile.h"
#include "tests/pnomaker/Pictures.h"

#include <cstdint>
#include <string>
#include <vector>

/// Takes panorama files apart again, by its own arithmetic.
namespace pnotest {

struct DecodedTile
{
    std::vector<std::uint8_t> rgb; ///< 256 x 256; empty when it cannot be read or decoded
    Rgb at(int x, int y) const;
};

DecodedTile decodedTile(PnoFile& file, int level, int column, int row);

/// The pixel of a level at (x, y) of the equirectangular picture; column 0 holds its right edge.
Rgb levelPixel(PnoFile& file, int level, int x, int y);

/// The value of the 8192 x 4096 range picture.
std::uint16_t rangeValue(PnoFile& file, int x, int y);

std::vector<std::uint8_t> fileBytes(const std::string& path);

/// Names of the entries of a folder, sorted.
std::vector<std::string> folderEntries(const std::string& folder);

} // namespace pnotest
