// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/RangeInput.h"

#include <algorithm>
#include <cerrno>
#include <csetjmp>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <png.h>
#include <tiffio.h>

namespace pnotool {
namespace {

constexpr int kMaxWidth = 32768;

/// Bytes of a picture in memory or in a file.
struct PngInput
{
    std::FILE* file = nullptr;
    const std::uint8_t* bytes = nullptr;
    std::size_t left = 0;

    static void read(png_structp png, png_bytep out, png_size_t size)
    {
        auto* input = static_cast<PngInput*>(png_get_io_ptr(png));
        if (input->file) {
            if (std::fread(out, 1, size, input->file) != size) png_error(png, "the data ends early");
            return;
        }
        if (input->left < size) png_error(png, "the data ends early");
        std::memcpy(out, input->bytes, size);
        input->bytes += size;
        input->left -= size;
    }
};

void keepQuiet(png_structp, png_const_charp) {}

[[noreturn]] void escape(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}
void keepQuietTiff(const char*, const char*, std::va_list) {}

std::string readPng(PngInput& input, int maxWidth, int maxHeight, pnomaker::RangePicture& range)
{
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, escape, keepQuiet);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        return "the PNG data is damaged or cut off";
    }
    png_set_read_fn(png, &input, PngInput::read);
    png_read_info(png, info);
    const png_uint_32 width = png_get_image_width(png, info);
    const png_uint_32 height = png_get_image_height(png, info);
    const bool fits =
        width <= static_cast<png_uint_32>(maxWidth) && height <= static_cast<png_uint_32>(maxHeight);
    if (!fits || png_get_bit_depth(png, info) != 16 || png_get_color_type(png, info) != PNG_COLOR_TYPE_GRAY) {
        png_destroy_read_struct(&png, &info, nullptr);
        return fits ? "the range picture is not a grey picture of 16 bits" : "the range picture is too large";
    }
    const std::uint16_t one = 1;
    if (*reinterpret_cast<const std::uint8_t*>(&one) == 1) png_set_swap(png);
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    range.width = static_cast<int>(width);
    range.height = static_cast<int>(height);
    range.values.clear();
    for (int pass = 0; pass < passes; ++pass)
        for (png_uint_32 y = 0; y < height; ++y) {
            // Grows with the rows that are truly there: the stated size may be made up.
            if (pass == 0) range.values.resize(std::size_t(y + 1) * width);
            png_read_row(png, reinterpret_cast<png_bytep>(range.values.data() + std::size_t(y) * width),
                         nullptr);
        }
    png_destroy_read_struct(&png, &info, nullptr);
    return {};
}

std::string readTiff(TIFF* tiff, pnomaker::RangePicture& range)
{
    std::uint32_t width = 0, height = 0;
    std::uint16_t bits = 1, samples = 1, format = SAMPLEFORMAT_UINT;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &bits);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &samples);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &format);
    if (bits != 16 || samples != 1 || format != SAMPLEFORMAT_UINT)
        return "the range picture is not a grey picture of 16 bits";
    if (width < 1 || height < 1 || width > kMaxWidth || height > kMaxWidth)
        return "the range picture is too large";
    constexpr char kDamaged[] = "the TIFF data is damaged or cut off";
    range.width = static_cast<int>(width);
    range.height = static_cast<int>(height);
    range.values.clear();
    if (!TIFFIsTiled(tiff)) {
        if (TIFFScanlineSize64(tiff) != std::uint64_t(width) * 2) return kDamaged;
        for (std::uint32_t y = 0; y < height; ++y) {
            range.values.resize(std::size_t(y + 1) * width);
            if (TIFFReadScanline(tiff, range.values.data() + std::size_t(y) * width, y, 0) < 0)
                return kDamaged;
        }
        return {};
    }
    std::uint32_t tileWidth = 0, tileHeight = 0;
    TIFFGetField(tiff, TIFFTAG_TILEWIDTH, &tileWidth);
    TIFFGetField(tiff, TIFFTAG_TILELENGTH, &tileHeight);
    if (tileWidth < 1 || tileHeight < 1 || tileWidth > kMaxWidth || tileHeight > kMaxWidth) return kDamaged;
    std::vector<std::uint16_t> tile(static_cast<std::size_t>(tileWidth) * tileHeight);
    if (TIFFTileSize64(tiff) > tile.size() * 2) return kDamaged;
    for (std::uint32_t y = 0; y < height; y += tileHeight) {
        range.values.resize(std::size_t(std::min(y + tileHeight, height)) * width);
        for (std::uint32_t x = 0; x < width; x += tileWidth) {
            if (TIFFReadTile(tiff, tile.data(), x, y, 0, 0) < 0) return kDamaged;
            for (std::uint32_t v = 0; v < std::min(tileHeight, height - y); ++v)
                std::memcpy(range.values.data() + std::size_t(y + v) * width + x,
                            tile.data() + std::size_t(v) * tileWidth,
                            2 * std::size_t(std::min(tileWidth, width - x)));
        }
    }
    return {};
}

} // namespace

std::string readRangePicture(const std::string& path, pnomaker::RangePicture& range)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) return std::string("cannot be read: ") + std::strerror(errno);
    unsigned char head[8] = {};
    const std::size_t size = std::fread(head, 1, sizeof(head), file.get());
    if (size == 0) return "the file is empty";
    std::rewind(file.get());
    if (png_sig_cmp(head, 0, 8) == 0) {
        PngInput input;
        input.file = file.get();
        return readPng(input, kMaxWidth, kMaxWidth, range);
    }
    if (std::memcmp(head, "II", 2) == 0 || std::memcmp(head, "MM", 2) == 0) {
        TIFFSetErrorHandler(keepQuietTiff);
        TIFFSetWarningHandler(keepQuietTiff);
        const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(path.c_str(), "r"), TIFFClose);
        return tiff ? readTiff(tiff.get(), range) : "the TIFF data is damaged";
    }
    return "the range picture is not a PNG or TIFF picture";
}

bool readGrey16Png(const std::uint8_t* bytes, std::size_t size, int maxWidth, int maxHeight,
                   pnomaker::RangePicture& range)
{
    PngInput input;
    input.bytes = bytes;
    input.left = size;
    return readPng(input, maxWidth, maxHeight, range).empty();
}

} // namespace pnotool
