// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/support/JpegTiles.h"

#include <turbojpeg.h>

#include <cstdio>
#include <cstdlib>

namespace pnotest {

Bytes jpegFromPixels(const std::uint8_t* rgb, int width, int height, int quality)
{
    tjhandle handle = tjInitCompress();
    unsigned char* encoded = nullptr;
    unsigned long size = 0;
    if (!handle ||
        tjCompress2(handle, rgb, width, 0, height, TJPF_RGB, &encoded, &size, TJSAMP_420, quality, 0)) {
        std::fprintf(stderr, "test tiles: cannot encode a JPEG\n");
        std::abort();
    }
    Bytes bytes(encoded, encoded + size);
    tjFree(encoded);
    tjDestroy(handle);
    return bytes;
}

Bytes solidJpeg(Colour colour, int width, int height)
{
    Bytes pixels;
    pixels.reserve(std::size_t(width) * std::size_t(height) * 3);
    for (int i = 0; i < width * height; ++i) {
        pixels.push_back(colour.red);
        pixels.push_back(colour.green);
        pixels.push_back(colour.blue);
    }
    return jpegFromPixels(pixels.data(), width, height, 95);
}

Colour placeColour(int level, int column, int row)
{
    return {static_cast<std::uint8_t>(column * 8 % 256), static_cast<std::uint8_t>(row * 16 % 256),
            static_cast<std::uint8_t>(level * 20)};
}

TileSource colouredTiles()
{
    return [](int level, int column, int row) { return solidJpeg(placeColour(level, column, row)); };
}

} // namespace pnotest
