// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PictureFile.h"

#include "nexomap/src/Failure.h"

#include <png.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <vector>

namespace nexomap {
namespace {

/// C code calls back: no exception may cross it. What went wrong waits for the call's end.
struct Sink
{
    PendingFile& file;
    bool failed = false;
};

void write(png_structp png, png_bytep data, png_size_t size)
{
    Sink& sink = *static_cast<Sink*>(png_get_io_ptr(png));
    try {
        sink.file.write(data, size);
    } catch (...) {
        sink.failed = true;
        png_error(png, "write");
    }
}

void flush(png_structp) {}

[[noreturn]] void fail(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void ignore(png_structp, png_const_charp) {}

std::string placeOf(const PlanRaster& raster)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(12);
    const Eigen::Vector3d a = raster.right / raster.pixel_m, e = raster.down / raster.pixel_m;
    text << a.x() << ' ' << a.y() << ' ' << a.z() << ' ' << -raster.left / raster.pixel_m << ' ' << e.x()
         << ' ' << e.y() << ' ' << e.z() << ' ' << -raster.top / raster.pixel_m;
    return text.str();
}

/// Only trivial objects live here: libpng leaves by longjmp.
bool encode(png_structp png, png_infop info, Sink* sink, const cv::Mat* picture, char* place, bool one_bit,
            png_bytep row)
{
    if (setjmp(png_jmpbuf(png))) return false;
    png_set_write_fn(png, sink, write, flush);
    const int channels = picture->channels();
    png_set_IHDR(png, info, png_uint_32(picture->cols), png_uint_32(picture->rows), one_bit ? 1 : 8,
                 channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 3);
    char key[] = "Plan";
    png_text text{};
    text.compression = PNG_TEXT_COMPRESSION_NONE;
    text.key = key;
    text.text = place;
    png_set_text(png, info, &text, 1);
    png_write_info(png, info);
    if (channels == 3) png_set_bgr(png);
    for (int y = 0; y < picture->rows; ++y) {
        const std::uint8_t* from = picture->ptr(y);
        if (one_bit) {
            for (int x = 0; x < picture->cols; x += 8) {
                int bits = 0;
                for (int k = 0; k < 8; ++k)
                    bits = bits << 1 | (x + k < picture->cols && from[x + k] ? 1 : 0);
                row[x / 8] = std::uint8_t(bits);
            }
        }
        png_write_row(png, one_bit ? row : from);
    }
    png_write_end(png, nullptr);
    return true;
}

} // namespace

PendingFile writePicture(const std::filesystem::path& path, const cv::Mat& picture, const PlanRaster& raster,
                         bool one_bit)
{
    PendingFile file(path);
    Sink sink{file};
    std::string place = placeOf(raster);
    std::vector<png_byte> row(std::size_t(picture.cols) / 8 + 1);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const bool done = info && encode(png, info, &sink, &picture, place.data(), one_bit, row.data());
    png_destroy_write_struct(&png, &info);
    if (sink.failed) throw Failure(NEXOMAP_CANNOT_WRITE, "cannot write " + path.string());
    if (!done) throw Failure(NEXOMAP_NO_MEMORY, "no memory for " + path.string());
    file.close();
    return file;
}

} // namespace nexomap
