// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/PngSource.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <png.h>

namespace pnotool {

struct PngSource::Decoder
{
    std::FILE* file = nullptr;
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::jmp_buf escape = {};
    char message[128] = {};

    static void onError(png_structp png, png_const_charp text)
    {
        auto* decoder = static_cast<Decoder*>(png_get_error_ptr(png));
        std::strncpy(decoder->message, text, sizeof(decoder->message) - 1);
        std::longjmp(decoder->escape, 1);
    }

    static void onWarning(png_structp, png_const_charp) {}

    ~Decoder()
    {
        png_destroy_read_struct(&png, &info, nullptr);
        if (file) std::fclose(file);
    }
};

PngSource::PngSource(std::string path)
    : m_path(std::move(path))
{}

PngSource::~PngSource() = default;

bool PngSource::open()
{
    m_decoder = std::make_unique<Decoder>();
    Decoder& decoder = *m_decoder;
    decoder.file = std::fopen(m_path.c_str(), "rb");
    if (!decoder.file) return fail("cannot be read");
    decoder.png =
        png_create_read_struct(PNG_LIBPNG_VER_STRING, &decoder, Decoder::onError, Decoder::onWarning);
    decoder.info = decoder.png ? png_create_info_struct(decoder.png) : nullptr;
    if (!decoder.info) return fail("there is not enough memory");
    if (setjmp(decoder.escape)) return fail(std::string("the PNG data is damaged: ") + decoder.message);
    png_init_io(decoder.png, decoder.file);
    png_read_info(decoder.png, decoder.info);
    m_width = static_cast<int>(png_get_image_width(decoder.png, decoder.info));
    m_height = static_cast<int>(png_get_image_height(decoder.png, decoder.info));
    keepMetadata();

    png_set_expand(decoder.png); // palettes, fewer than 8 bits, transparent colours
    png_set_scale_16(decoder.png);
    png_set_gray_to_rgb(decoder.png);
    if ((png_get_color_type(decoder.png, decoder.info) & PNG_COLOR_MASK_ALPHA) != 0 ||
        png_get_valid(decoder.png, decoder.info, PNG_INFO_tRNS) != 0) {
        png_color_16 black = {};
        png_set_background(decoder.png, &black, PNG_BACKGROUND_GAMMA_SCREEN, 0, 1.0);
    }
    m_interlaced = png_get_interlace_type(decoder.png, decoder.info) != PNG_INTERLACE_NONE;
    if (m_interlaced) png_set_interlace_handling(decoder.png);
    png_read_update_info(decoder.png, decoder.info);
    if (png_get_rowbytes(decoder.png, decoder.info) != static_cast<png_size_t>(m_width) * 3)
        return fail("this kind of PNG picture is not known");
    return true;
}

void PngSource::keepMetadata()
{
    png_uint_32 size = 0;
    png_bytep exif = nullptr;
    if (png_get_eXIf_1(m_decoder->png, m_decoder->info, &size, &exif) != 0)
        m_exif.assign(reinterpret_cast<const char*>(exif), size);
    png_textp texts = nullptr;
    const int count = png_get_text(m_decoder->png, m_decoder->info, &texts, nullptr);
    for (int i = 0; i < count; ++i)
        if (std::strcmp(texts[i].key, "XML:com.adobe.xmp") == 0 && texts[i].text) m_xmp = texts[i].text;
}

bool PngSource::readAll()
{
    m_whole.resize(static_cast<std::size_t>(m_width) * 3 * static_cast<std::size_t>(m_height));
    std::vector<png_bytep> rows;
    for (int y = 0; y < m_height; ++y)
        rows.push_back(m_whole.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) * 3);
    if (setjmp(m_decoder->escape))
        return fail(std::string("the PNG data is damaged or cut off: ") + m_decoder->message);
    png_read_image(m_decoder->png, rows.data());
    return true;
}

bool PngSource::readRows(std::uint8_t* rgb, int count)
{
    const std::size_t pitch = static_cast<std::size_t>(m_width) * 3;
    if (m_interlaced) {
        const std::size_t bytes = pitch * static_cast<std::size_t>(count);
        if (m_whole.empty() && !readAll()) return false;
        std::memcpy(rgb, m_whole.data() + m_nextByte, bytes);
        m_nextByte += bytes;
        return true;
    }
    if (setjmp(m_decoder->escape))
        return fail(std::string("the PNG data is damaged or cut off: ") + m_decoder->message);
    for (int i = 0; i < count; ++i)
        png_read_row(m_decoder->png, rgb + static_cast<std::size_t>(i) * pitch, nullptr);
    return true;
}

bool PngSource::rewind()
{
    m_nextByte = 0;
    return !m_whole.empty() || open();
}

} // namespace pnotool
