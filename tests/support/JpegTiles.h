// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/PnoParts.h"

/// JPEG tiles for panoramas whose pictures a test looks at.
namespace pnotest {

struct Colour
{
    std::uint8_t red, green, blue;
};

/// A tile of one colour; decodes to it within two steps per channel.
Bytes solidJpeg(Colour colour, int width = 256, int height = 256);

/// A tile from pixels, RGB, 3 bytes each, row by row without padding; 4:2:0 sampling.
Bytes jpegFromPixels(const std::uint8_t* rgb, int width, int height, int quality = 90);

/// A colour that tells tiles apart, at least eight steps from any other place's of the same level up to 32
/// x 16.
Colour placeColour(int level, int column, int row);

/// Tile source of solid tiles in their `placeColour`.
TileSource colouredTiles();

} // namespace pnotest
