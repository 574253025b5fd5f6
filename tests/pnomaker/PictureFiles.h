// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <cstdint>
#include <string>
#include <vector>

/// PNG and TIFF files of every kind that a tool should read, painted by a function of the pixel.
namespace pnotest {

enum class PngKind
{
    Rgb8,
    Rgb16,
    Grey8,
    Grey16,
    Grey1,
    Palette,
    Rgba8,
    GreyAlpha8,
    InterlacedRgb8
};

/// Grey kinds take the green channel; Grey1 its top bit; the palette has 4 levels of each channel; alpha is
/// 255 in the upper half of the picture and 0 in the lower.
bool writePng(const std::string& path, pnomaker::RowSource& picture, PngKind kind);

/// Reads any PNG as 8-bit RGB.
bool readPng(const std::string& path, std::vector<std::uint8_t>& rgb, int& width, int& height);

/// A grey picture of 16 bits.
bool writeGrey16Png(const std::string& path, const pnomaker::RangePicture& range);

enum class TiffKind
{
    Rgb8Strips,
    Rgb16Lzw,
    Rgb8Tiles,
    Grey8Tiles,
    Grey16Strips,
    White8,
    Palette,
    YcbcrJpeg,
    Planar
};

bool writeTiff(const std::string& path, pnomaker::RowSource& picture, TiffKind kind,
               const std::string& dateTime = {});

bool writeGrey16Tiff(const std::string& path, const pnomaker::RangePicture& range, bool tiled);

} // namespace pnotest
