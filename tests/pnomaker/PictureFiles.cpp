// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/pnomaker/PictureFiles.h"

#include <cstdio>
#include <png.h>
#include <tiffio.h>

namespace pnotest {
namespace {

struct PngLayout
{
    int bits, type, channels;
};

PngLayout layoutOf(PngKind kind)
{
    switch (kind) {
    case PngKind::Rgb16:
        return {16, PNG_COLOR_TYPE_RGB, 3};
    case PngKind::Grey8:
        return {8, PNG_COLOR_TYPE_GRAY, 1};
    case PngKind::Grey16:
        return {16, PNG_COLOR_TYPE_GRAY, 1};
    case PngKind::Grey1:
        return {1, PNG_COLOR_TYPE_GRAY, 1};
    case PngKind::Palette:
        return {8, PNG_COLOR_TYPE_PALETTE, 1};
    case PngKind::Rgba8:
        return {8, PNG_COLOR_TYPE_RGB_ALPHA, 4};
    case PngKind::GreyAlpha8:
        return {8, PNG_COLOR_TYPE_GRAY_ALPHA, 2};
    case PngKind::Rgb8:
    case PngKind::InterlacedRgb8:
        break;
    }
    return {8, PNG_COLOR_TYPE_RGB, 3};
}

std::uint8_t paletteIndex(const std::uint8_t* rgb)
{
    return static_cast<std::uint8_t>((rgb[0] >> 6) << 4 | (rgb[1] >> 6) << 2 | rgb[2] >> 6);
}

/// One row of 8-bit RGB in the layout of the file.
std::vector<std::uint8_t> coded(const std::uint8_t* rgb, int width, PngKind kind, bool upperHalf)
{
    const PngLayout layout = layoutOf(kind);
    std::vector<std::uint8_t> row;
    for (int x = 0; x < width; ++x, rgb += 3) {
        if (kind == PngKind::Grey1) {
            if (x % 8 == 0) row.push_back(0);
            row.back() = static_cast<std::uint8_t>(row.back() | (rgb[1] >> 7) << (7 - x % 8));
            continue;
        }
        if (kind == PngKind::Palette) {
            row.push_back(paletteIndex(rgb));
            continue;
        }
        const bool grey = layout.channels <= 2;
        for (int c = 0; c < (grey ? 1 : 3); ++c)
            for (int byte = 0; byte < layout.bits / 8; ++byte)
                row.push_back(rgb[grey ? 1 : c]);
        if (layout.type & PNG_COLOR_MASK_ALPHA) row.push_back(upperHalf ? 255 : 0);
    }
    return row;
}

void writeTiffRow(TIFF* tiff, const std::vector<std::uint8_t>& row, std::uint32_t y)
{
    TIFFWriteScanline(tiff, const_cast<std::uint8_t*>(row.data()), y, 0);
}

} // namespace

bool writePng(const std::string& path, pnomaker::RowSource& picture, PngKind kind)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    const PngLayout layout = layoutOf(kind);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width()),
                 static_cast<png_uint_32>(picture.height()), layout.bits, layout.type,
                 kind == PngKind::InterlacedRgb8 ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (kind == PngKind::Palette) {
        png_color palette[64];
        for (int i = 0; i < 64; ++i)
            palette[i] = {static_cast<png_byte>((i >> 4) * 85), static_cast<png_byte>((i >> 2 & 3) * 85),
                          static_cast<png_byte>((i & 3) * 85)};
        png_set_PLTE(png, info, palette, 64);
    }
    png_write_info(png, info);
    std::vector<std::vector<std::uint8_t>> rows;
    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(picture.width()) * 3);
    for (int y = 0; y < picture.height(); ++y) {
        picture.readRows(rgb.data(), 1);
        rows.push_back(coded(rgb.data(), picture.width(), kind, y < picture.height() / 2));
    }
    std::vector<png_bytep> pointers;
    for (std::vector<std::uint8_t>& row : rows)
        pointers.push_back(row.data());
    png_write_image(png, pointers.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return std::fclose(file) == 0;
}

bool readPng(const std::string& path, std::vector<std::uint8_t>& rgb, int& width, int& height)
{
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return false;
    image.format = PNG_FORMAT_RGB;
    width = static_cast<int>(image.width);
    height = static_cast<int>(image.height);
    rgb.resize(PNG_IMAGE_SIZE(image));
    return png_image_finish_read(&image, nullptr, rgb.data(), 0, nullptr) != 0;
}

bool writeGrey16Png(const std::string& path, const pnomaker::RangePicture& range)
{
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(range.width);
    image.height = static_cast<png_uint_32>(range.height);
    image.format = PNG_FORMAT_LINEAR_Y;
    return png_image_write_to_file(&image, path.c_str(), 0, range.values.data(), 0, nullptr) != 0;
}

bool writeTiff(const std::string& path, pnomaker::RowSource& picture, TiffKind kind,
               const std::string& dateTime)
{
    TIFF* tiff = TIFFOpen(path.c_str(), kind == TiffKind::Rgb16Lzw ? "wb" : "wl");
    if (!tiff) return false;
    const bool grey =
        kind == TiffKind::Grey8Tiles || kind == TiffKind::Grey16Strips || kind == TiffKind::White8;
    const bool palette = kind == TiffKind::Palette;
    const bool tiled = kind == TiffKind::Rgb8Tiles || kind == TiffKind::Grey8Tiles;
    const int bits = kind == TiffKind::Rgb16Lzw || kind == TiffKind::Grey16Strips ? 16 : 8;
    const int samples = grey || palette ? 1 : 3;
    const auto width = static_cast<std::uint32_t>(picture.width()),
               height = static_cast<std::uint32_t>(picture.height());
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG,
                 kind == TiffKind::Planar ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 palette                       ? PHOTOMETRIC_PALETTE
                 : kind == TiffKind::White8    ? PHOTOMETRIC_MINISWHITE
                 : grey                        ? PHOTOMETRIC_MINISBLACK
                 : kind == TiffKind::YcbcrJpeg ? PHOTOMETRIC_YCBCR
                                               : PHOTOMETRIC_RGB);
    if (kind == TiffKind::Rgb16Lzw) TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    if (kind == TiffKind::YcbcrJpeg) {
        TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_JPEG);
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        TIFFSetField(tiff, TIFFTAG_JPEGQUALITY, 95);
    }
    if (!dateTime.empty()) TIFFSetField(tiff, TIFFTAG_DATETIME, dateTime.c_str());
    std::uint16_t maps[3][256] = {};
    if (palette) {
        for (int i = 0; i < 256; ++i)
            for (int c = 0; c < 3; ++c)
                maps[c][i] = static_cast<std::uint16_t>((i >> (4 - 2 * c) & 3) * 85 * 257);
        TIFFSetField(tiff, TIFFTAG_COLORMAP, maps[0], maps[1], maps[2]);
    }
    if (tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 64);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 48);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
    }

    std::vector<std::vector<std::uint8_t>> rows;
    for (std::uint32_t y = 0; y < height; ++y) {
        std::vector<std::uint8_t> rgb(width * 3), row;
        picture.readRows(rgb.data(), 1);
        for (std::uint32_t x = 0; x < width; ++x) {
            const std::uint8_t* pixel = &rgb[3 * x];
            for (int c = 0; c < samples; ++c) {
                std::uint8_t value = palette ? paletteIndex(pixel) : pixel[grey ? 1 : c];
                if (kind == TiffKind::White8) value = static_cast<std::uint8_t>(255 - value);
                row.insert(row.end(), static_cast<std::size_t>(bits / 8), value);
            }
        }
        rows.push_back(row);
    }
    if (kind == TiffKind::Planar) {
        for (std::uint16_t c = 0; c < 3; ++c)
            for (std::uint32_t y = 0; y < height; ++y) {
                std::vector<std::uint8_t> plane;
                for (std::uint32_t x = 0; x < width; ++x)
                    plane.push_back(rows[y][3 * x + c]);
                TIFFWriteScanline(tiff, plane.data(), y, c);
            }
    } else if (!tiled) {
        for (std::uint32_t y = 0; y < height; ++y)
            writeTiffRow(tiff, rows[y], y);
    } else {
        for (std::uint32_t y = 0; y < height; y += 48)
            for (std::uint32_t x = 0; x < width; x += 64) {
                std::vector<std::uint8_t> tile(static_cast<std::size_t>(64 * 48 * samples));
                for (std::uint32_t v = 0; v < 48 && y + v < height; ++v)
                    for (std::uint32_t i = 0; i < 64u * static_cast<std::uint32_t>(samples); ++i)
                        if (x * static_cast<std::uint32_t>(samples) + i < rows[y + v].size())
                            tile[v * 64 * static_cast<std::uint32_t>(samples) + i] =
                                rows[y + v][x * static_cast<std::uint32_t>(samples) + i];
                TIFFWriteTile(tiff, tile.data(), x, y, 0, 0);
            }
    }
    TIFFClose(tiff);
    return true;
}

bool writeGrey16Tiff(const std::string& path, const pnomaker::RangePicture& range, bool tiled)
{
    TIFF* tiff = TIFFOpen(path.c_str(), "w");
    if (!tiff) return false;
    const auto width = static_cast<std::uint32_t>(range.width),
               height = static_cast<std::uint32_t>(range.height);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 16);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    if (tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 32);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 32);
        for (std::uint32_t y = 0; y < height; y += 32)
            for (std::uint32_t x = 0; x < width; x += 32) {
                std::vector<std::uint16_t> tile(32 * 32);
                for (std::uint32_t v = 0; v < 32 && y + v < height; ++v)
                    for (std::uint32_t u = 0; u < 32 && x + u < width; ++u)
                        tile[v * 32 + u] = range.values[(y + v) * width + x + u];
                TIFFWriteTile(tiff, tile.data(), x, y, 0, 0);
            }
    } else {
        for (std::uint32_t y = 0; y < height; ++y)
            TIFFWriteScanline(tiff, const_cast<std::uint16_t*>(&range.values[y * width]), y, 0);
    }
    TIFFClose(tiff);
    return true;
}

} // namespace pnotest
