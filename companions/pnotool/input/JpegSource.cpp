// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/JpegSource.h"

#include "companions/pnotool/input/SpilledCoefficients.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <vector>

// The library's header needs <cstdio> before it.
#include <jerror.h>
#include <jpeglib.h>

namespace pnotool {

struct JpegSource::Decoder
{
    jpeg_error_mgr errors = {}; ///< first, so that the library's pointer to it is one to the whole
    std::jmp_buf escape = {};
    char message[JMSG_LENGTH_MAX] = {};
    bool damaged = false;
    jpeg_decompress_struct info = {};
    std::FILE* file = nullptr;
    std::unique_ptr<SpilledCoefficients> coefficients;
    bool started = false; ///< past the header
    bool cmyk = false;
    std::vector<std::uint8_t> inkRow; ///< one row of CMYK

    static Decoder& of(j_common_ptr info) { return *reinterpret_cast<Decoder*>(info->err); }

    static void onError(j_common_ptr info)
    {
        info->err->format_message(info, of(info).message);
        std::longjmp(of(info).escape, 1);
    }

    /// The library only warns of data that ends early or decodes to nonsense.
    static void onMessage(j_common_ptr info, int level)
    {
        const int code = info->err->msg_code;
        if (level < 0 && !of(info).damaged &&
            (code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER || code == JWRN_HUFF_BAD_CODE ||
             code == JWRN_MUST_RESYNC)) {
            of(info).damaged = true;
            info->err->format_message(info, of(info).message);
        }
    }

    Decoder()
    {
        info.err = jpeg_std_error(&errors);
        errors.error_exit = onError;
        errors.emit_message = onMessage;
    }

    ~Decoder()
    {
        jpeg_destroy_decompress(&info);
        if (file) std::fclose(file);
    }
};

namespace {

/// Inks of one row to RGB; Adobe's programs store them inverted.
void inksToRgb(const std::uint8_t* inks, int width, bool inverted, std::uint8_t* rgb)
{
    for (int x = 0; x < width; ++x, inks += 4, rgb += 3) {
        const int flip = inverted ? 0 : 255;
        const int black = inks[3] ^ flip;
        for (int c = 0; c < 3; ++c)
            rgb[c] = static_cast<std::uint8_t>(((inks[c] ^ flip) * black + 127) / 255);
    }
}

} // namespace

JpegSource::JpegSource(std::string path, std::uint64_t spillAbove_bytes)
    : m_path(std::move(path))
    , m_spillAbove_bytes(spillAbove_bytes)
{}

JpegSource::~JpegSource() = default;

bool JpegSource::open()
{
    m_decoder = std::make_unique<Decoder>();
    Decoder& decoder = *m_decoder;
    decoder.file = std::fopen(m_path.c_str(), "rb");
    if (!decoder.file) return fail("cannot be read");
    if (setjmp(decoder.escape)) return fail(std::string("the JPEG data is damaged: ") + decoder.message);
    jpeg_create_decompress(&decoder.info);
    jpeg_stdio_src(&decoder.info, decoder.file);
    jpeg_save_markers(&decoder.info, JPEG_APP0 + 1, 0xFFFF);
    jpeg_read_header(&decoder.info, TRUE);
    keepMarkers();
    decoder.cmyk = decoder.info.jpeg_color_space == JCS_CMYK || decoder.info.jpeg_color_space == JCS_YCCK;
    decoder.info.out_color_space = decoder.cmyk ? JCS_CMYK : JCS_RGB;
    decoder.coefficients = SpilledCoefficients::install(decoder.info, m_spillAbove_bytes);
    jpeg_calc_output_dimensions(&decoder.info);
    return true;
}

void JpegSource::keepMarkers()
{
    constexpr char kExif[] = "Exif\0";
    constexpr char kXmp[] = "http://ns.adobe.com/xap/1.0/";
    for (jpeg_saved_marker_ptr marker = m_decoder->info.marker_list; marker; marker = marker->next) {
        const std::string data(reinterpret_cast<const char*>(marker->data), marker->data_length);
        if (m_exif.empty() && data.compare(0, sizeof(kExif), kExif, sizeof(kExif)) == 0)
            m_exif = data.substr(sizeof(kExif));
        else if (m_xmp.empty() && data.compare(0, sizeof(kXmp), kXmp, sizeof(kXmp)) == 0)
            m_xmp = data.substr(sizeof(kXmp));
    }
}

int JpegSource::width() const
{
    return static_cast<int>(m_decoder->info.image_width);
}

int JpegSource::height() const
{
    return static_cast<int>(m_decoder->info.image_height);
}

bool JpegSource::readRows(std::uint8_t* rgb, int count)
{
    Decoder& decoder = *m_decoder;
    const std::size_t pitch = static_cast<std::size_t>(width()) * 3;
    if (decoder.cmyk) decoder.inkRow.resize(static_cast<std::size_t>(width()) * 4);
    if (setjmp(decoder.escape)) return fail(std::string("the JPEG data is damaged: ") + decoder.message);
    if (!decoder.started) {
        decoder.started = true;
        jpeg_start_decompress(&decoder.info);
    }
    const JDIMENSION first = decoder.info.output_scanline;
    const JDIMENSION end = first + static_cast<JDIMENSION>(count);
    while (decoder.info.output_scanline < end && !decoder.damaged) {
        JSAMPROW rows[16];
        const JDIMENSION line = decoder.info.output_scanline;
        if (decoder.cmyk) {
            rows[0] = decoder.inkRow.data();
            jpeg_read_scanlines(&decoder.info, rows, 1);
            inksToRgb(decoder.inkRow.data(), width(), decoder.info.saw_Adobe_marker,
                      rgb + (line - first) * pitch);
            continue;
        }
        JDIMENSION lines = 0;
        for (; lines < 16 && line + lines < end; ++lines)
            rows[lines] = rgb + (line + lines - first) * pitch;
        jpeg_read_scanlines(&decoder.info, rows, lines);
    }
    if (decoder.damaged) return fail(std::string("the JPEG data is damaged or cut off: ") + decoder.message);
    return true;
}

bool JpegSource::rewind()
{
    return open();
}

} // namespace pnotool
