// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/DepthPng.h"

#include "linking/pno/PnoFormat.h"

#include <csetjmp>
#include <png.h>

namespace pnomaker {
namespace {

void appendBytes(png_structp png, png_bytep bytes, png_size_t size)
{
    auto* out = static_cast<std::vector<std::uint8_t>*>(png_get_io_ptr(png));
    out->insert(out->end(), bytes, bytes + size);
}

void keepQuiet(png_structp, png_const_charp) {}

[[noreturn]] void escape(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

} // namespace

bool encodeDepthTile(const std::uint16_t* values, std::vector<std::uint8_t>& out)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, escape, keepQuiet);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, &out, appendBytes, nullptr);
    png_set_IHDR(png, info, pno::kTilePixels, pno::kTilePixels, 16, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 1);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    png_write_info(png, info);
    const std::uint16_t one = 1;
    if (*reinterpret_cast<const std::uint8_t*>(&one) == 1) png_set_swap(png);
    for (std::uint32_t y = 0; y < pno::kTilePixels; ++y)
        png_write_row(png, reinterpret_cast<png_const_bytep>(values + y * pno::kTilePixels));
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace pnomaker
