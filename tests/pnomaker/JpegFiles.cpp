// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/pnomaker/JpegFiles.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

// The library's header needs <cstdio> before it.
#include <jpeglib.h>

namespace pnotest {
namespace {

void writeApp1(jpeg_compress_struct& info, const std::string& head, const std::string& body)
{
    const std::string data = head + body;
    jpeg_write_marker(&info, JPEG_APP0 + 1, reinterpret_cast<const JOCTET*>(data.data()),
                      static_cast<unsigned>(data.size()));
}

} // namespace

bool writeJpeg(const std::string& path, pnomaker::RowSource& picture, const JpegForm& form)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    jpeg_compress_struct info = {};
    jpeg_error_mgr errors = {}; // its default ends the program: fine for a test's own fixture
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    jpeg_stdio_dest(&info, file);
    info.image_width = static_cast<JDIMENSION>(picture.width());
    info.image_height = static_cast<JDIMENSION>(picture.height());
    info.input_components = form.adobeInks ? 4 : form.grey ? 1 : 3;
    info.in_color_space = form.adobeInks ? JCS_CMYK : form.grey ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, form.quality, TRUE);
    if (form.progressive) jpeg_simple_progression(&info);
    jpeg_start_compress(&info, TRUE);
    if (!form.exif.empty()) writeApp1(info, std::string("Exif\0\0", 6), form.exif);
    if (!form.xmp.empty()) writeApp1(info, std::string("http://ns.adobe.com/xap/1.0/\0", 29), form.xmp);

    const std::size_t width = info.image_width;
    std::vector<std::uint8_t> rgb(width * 3), coded(width * 4);
    bool good = true;
    while (good && info.next_scanline < info.image_height) {
        good = picture.readRows(rgb.data(), 1);
        for (std::size_t x = 0; x < width; ++x) {
            const std::uint8_t* pixel = &rgb[3 * x];
            if (form.grey) coded[x] = pixel[1];
            if (form.adobeInks) {
                std::copy(pixel, pixel + 3, &coded[4 * x]);
                coded[4 * x + 3] = 255;
            }
        }
        JSAMPROW row = form.grey || form.adobeInks ? coded.data() : rgb.data();
        jpeg_write_scanlines(&info, &row, 1);
    }
    if (good) jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    return std::fclose(file) == 0 && good;
}

} // namespace pnotest
