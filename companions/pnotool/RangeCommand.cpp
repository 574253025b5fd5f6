// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The range picture out of a panorama file with lidar, as one 16-bit grey PNG.
#include "companions/pnomaker/PartFile.h"
#include "companions/pnotool/Arguments.h"
#include "companions/pnotool/ClearOnSignal.h"
#include "companions/pnotool/Commands.h"
#include "companions/pnotool/input/RangeInput.h"
#include "companions/pnotool/PanoramaInput.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <png.h>

namespace pnotool {
namespace {

constexpr int kTile = static_cast<int>(pno::kTilePixels);
constexpr int kWidth = pno::kDepthColumns * kTile;
constexpr int kHeight = pno::kDepthRows * kTile;

/// Fills 256 rows from one row of tiles; column 0 is the rightmost.
bool readBand(PnoFile& file, int tileRow, std::vector<std::uint16_t>& band)
{
    for (int column = 0; column < pno::kDepthColumns; ++column) {
        std::uint32_t size = 0;
        const PnoBytes bytes = file.ReadDepthTile(column, tileRow, &size);
        pnomaker::RangePicture tile;
        if (!bytes || !readGrey16Png(bytes.get(), size, kTile, kTile, tile) || tile.width != kTile ||
            tile.height != kTile)
            return false;
        const int left = kWidth - (column + 1) * kTile;
        for (int y = 0; y < kTile; ++y)
            std::memcpy(band.data() + static_cast<std::size_t>(y) * kWidth + left,
                        tile.values.data() + static_cast<std::size_t>(y) * kTile, 2 * kTile);
    }
    return true;
}

void writeBytes(png_structp png, png_bytep bytes, png_size_t size)
{
    if (!static_cast<pnomaker::PartFile*>(png_get_io_ptr(png))->write(bytes, size))
        png_error(png, "cannot be written");
}

void flushBytes(png_structp) {}
void keepQuiet(png_structp, png_const_charp) {}

[[noreturn]] void escape(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

/// @param damagedRow  set when a tile of that row cannot be read
bool writeRange(PnoFile& file, pnomaker::PartFile& out, std::vector<std::uint16_t>& band, int& damagedRow)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, escape, keepQuiet);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, &out, writeBytes, flushBytes);
    png_set_IHDR(png, info, kWidth, kHeight, 16, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 1);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    png_write_info(png, info);
    const std::uint16_t one = 1;
    if (*reinterpret_cast<const std::uint8_t*>(&one) == 1) png_set_swap(png);
    for (int row = 0; row < pno::kDepthRows; ++row) {
        if (!readBand(file, row, band)) {
            damagedRow = row;
            png_destroy_write_struct(&png, &info);
            return false;
        }
        for (int y = 0; y < kTile; ++y)
            png_write_row(
                png, reinterpret_cast<png_const_bytep>(band.data() + static_cast<std::size_t>(y) * kWidth));
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

int rangeCommand(const Words& words)
{
    const Arguments arguments = parseArguments(words, {"out"}, {});
    if (!arguments.problem.empty()) return wrongUsage(arguments.problem);
    if (arguments.places.size() != 1) return wrongUsage("range wants one panorama file");
    const std::string out = arguments.text("out");
    if (out.empty()) return wrongUsage("range wants --out");
    const std::string& path = arguments.places[0];
    const auto file = openPanorama(path);
    if (!file) return kFailed;
    if (!file->lidar()) return failed(path + ": the panorama has no lidar");
    std::uint32_t size = 0;
    const PnoBytes extra = file->ReadExtra(&size);
    if (!extra || size < 8 || std::memcmp(extra.get(), pno::kRangeEncoding, 4) != 0)
        return failed(path + ": the lidar is encoded in a way that is not known");
    std::uint32_t unit_um = 0;
    std::memcpy(&unit_um, extra.get() + 4, 4);

    const ClearOnSignal clear(out);
    pnomaker::PartFile part(out);
    std::vector<std::uint16_t> band(static_cast<std::size_t>(kTile) * kWidth);
    int damagedRow = -1;
    if (!part.open() || !writeRange(*file, part, band, damagedRow) || !part.commit())
        return failed(damagedRow < 0
                          ? part.error()
                          : path + ": a depth tile of row " + std::to_string(damagedRow) + " is damaged");
    std::printf("%s: %d x %d, unit %g m\n", out.c_str(), kWidth, kHeight, unit_um * 1e-6);
    return kDone;
}

} // namespace pnotool
