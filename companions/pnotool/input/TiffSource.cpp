// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/TiffSource.h"

#include "companions/pnotool/input/Exif.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <tiffio.h>

namespace pnotool {
namespace {

void keepQuiet(const char*, const char*, std::va_list) {}

constexpr std::uint64_t kMaxBandBytes = std::uint64_t(1) << 31;

} // namespace

TiffSource::TiffSource(std::string path)
    : m_path(std::move(path))
{}

TiffSource::~TiffSource()
{
    if (m_tiff) TIFFClose(m_tiff);
}

bool TiffSource::open()
{
    TIFFSetErrorHandler(keepQuiet);
    TIFFSetWarningHandler(keepQuiet);
    m_tiff = TIFFOpen(m_path.c_str(), "r");
    if (!m_tiff || !TIFFGetField(m_tiff, TIFFTAG_IMAGEWIDTH, &m_width) ||
        !TIFFGetField(m_tiff, TIFFTAG_IMAGELENGTH, &m_height))
        return fail("the TIFF data is damaged");
    if (m_width > 1000000 || m_height > 1000000) return fail("the TIFF picture is too large");
    std::uint16_t planar = PLANARCONFIG_CONTIG, format = SAMPLEFORMAT_UINT, compression = COMPRESSION_NONE;
    TIFFGetFieldDefaulted(m_tiff, TIFFTAG_BITSPERSAMPLE, &m_bits);
    TIFFGetFieldDefaulted(m_tiff, TIFFTAG_SAMPLESPERPIXEL, &m_samples);
    TIFFGetFieldDefaulted(m_tiff, TIFFTAG_PLANARCONFIG, &planar);
    TIFFGetFieldDefaulted(m_tiff, TIFFTAG_SAMPLEFORMAT, &format);
    TIFFGetFieldDefaulted(m_tiff, TIFFTAG_COMPRESSION, &compression);
    if (!TIFFGetField(m_tiff, TIFFTAG_PHOTOMETRIC, &m_photometric))
        return fail("the TIFF file does not say what its samples mean");
    const bool grey = m_photometric == PHOTOMETRIC_MINISBLACK || m_photometric == PHOTOMETRIC_MINISWHITE;
    const bool palette = m_photometric == PHOTOMETRIC_PALETTE && m_bits == 8;
    const bool colour = m_photometric == PHOTOMETRIC_RGB && m_samples >= 3;
    m_plain = (m_bits == 8 || m_bits == 16) && format == SAMPLEFORMAT_UINT && planar == PLANARCONFIG_CONTIG &&
              compression != COMPRESSION_JPEG && (grey || palette || colour);
    char why[1024] = {};
    if (!m_plain && !TIFFRGBAImageOK(m_tiff, why))
        return fail(std::string("this kind of TIFF picture is not known: ") + why);
    if (palette && m_plain) {
        std::uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
        if (!TIFFGetField(m_tiff, TIFFTAG_COLORMAP, &red, &green, &blue))
            return fail("the TIFF file has no palette");
        m_palette.clear();
        for (int i = 0; i < 256; ++i)
            for (const std::uint16_t* map : {red, green, blue})
                m_palette.push_back(static_cast<std::uint8_t>(map[i] >> 8));
    }
    m_tiled = TIFFIsTiled(m_tiff) != 0;
    if (m_tiled) {
        TIFFGetField(m_tiff, TIFFTAG_TILEWIDTH, &m_tileWidth);
        TIFFGetField(m_tiff, TIFFTAG_TILELENGTH, &m_bandRows);
    } else {
        TIFFGetFieldDefaulted(m_tiff, TIFFTAG_ROWSPERSTRIP, &m_bandRows);
    }
    // Rows of plain strips are read one by one, however high the strip is.
    if (m_plain && !m_tiled) m_bandRows = 1;
    m_bandRows = std::clamp<std::uint32_t>(m_bandRows, 1, std::max<std::uint32_t>(m_height, 1));
    if ((m_tiled && m_tileWidth == 0) || std::uint64_t(m_bandRows) * m_width * 4 > kMaxBandBytes)
        return fail("the strips or tiles of the TIFF picture are too large");
    keepMetadata();
    return true;
}

void TiffSource::keepMetadata()
{
    std::uint32_t size = 0;
    const char* packet = nullptr;
    if (TIFFGetField(m_tiff, TIFFTAG_XMLPACKET, &size, &packet) && packet) m_xmp.assign(packet, size);
    const char *time = nullptr, *fraction = nullptr;
    if (TIFFGetField(m_tiff, TIFFTAG_DATETIME, &time) && time) m_moment = momentFromExifText(time, "");
    std::uint64_t exif = 0;
    if (!TIFFGetField(m_tiff, TIFFTAG_EXIFIFD, &exif)) return;
    if (TIFFReadEXIFDirectory(m_tiff, exif)) {
        TIFFGetField(m_tiff, EXIFTAG_SUBSECTIMEORIGINAL, &fraction);
        if (TIFFGetField(m_tiff, EXIFTAG_DATETIMEORIGINAL, &time) && time)
            if (const auto moment = momentFromExifText(time, fraction ? fraction : "")) m_moment = moment;
    }
    TIFFSetDirectory(m_tiff, 0);
}

bool TiffSource::readRows(std::uint8_t* rgb, int count)
{
    const std::size_t pitch = static_cast<std::size_t>(m_width) * 3;
    for (int i = 0; i < count; ++i, ++m_nextRow, rgb += pitch) {
        if (m_nextRow >= m_bandEnd && !readBand(m_nextRow))
            return fail("the TIFF data is damaged or cut off at row " + std::to_string(m_nextRow));
        std::memcpy(rgb, m_band.data() + (m_nextRow - m_bandFirst) * pitch, pitch);
    }
    return true;
}

bool TiffSource::readBand(std::uint32_t firstRow)
{
    m_bandFirst = firstRow;
    m_bandEnd = std::min(firstRow + m_bandRows, m_height);
    m_band.resize(static_cast<std::size_t>(m_bandEnd - m_bandFirst) * m_width * 3);
    return m_plain ? readPlain(firstRow) : readThroughLibrary(firstRow);
}

bool TiffSource::readPlain(std::uint32_t firstRow)
{
    const std::size_t pixelBytes = static_cast<std::size_t>(m_bits / 8) * m_samples;
    if (!m_tiled) {
        std::vector<std::uint8_t> samples(static_cast<std::size_t>(TIFFScanlineSize64(m_tiff)));
        if (samples.size() < pixelBytes * m_width ||
            TIFFReadScanline(m_tiff, samples.data(), firstRow, 0) < 0)
            return false;
        convertRow(samples.data(), m_width, m_band.data());
        return true;
    }
    std::vector<std::uint8_t> tile(static_cast<std::size_t>(TIFFTileSize64(m_tiff)));
    if (tile.size() < pixelBytes * m_tileWidth * m_bandRows) return false;
    for (std::uint32_t x = 0; x < m_width; x += m_tileWidth) {
        if (TIFFReadTile(m_tiff, tile.data(), x, firstRow, 0, 0) < 0) return false;
        for (std::uint32_t y = 0; y < m_bandEnd - m_bandFirst; ++y)
            convertRow(tile.data() + pixelBytes * m_tileWidth * y, std::min(m_tileWidth, m_width - x),
                       m_band.data() + (static_cast<std::size_t>(y) * m_width + x) * 3);
    }
    return true;
}

bool TiffSource::readThroughLibrary(std::uint32_t firstRow)
{
    // The library hands out ABGR words, lowest row first.
    const std::uint32_t rows = m_bandEnd - m_bandFirst;
    const std::uint32_t width = m_tiled ? m_tileWidth : m_width;
    std::vector<std::uint32_t> words(static_cast<std::size_t>(width) * m_bandRows);
    const std::uint32_t step = m_tiled ? m_tileWidth : m_width;
    for (std::uint32_t x = 0; x < m_width; x += step) {
        const int good = m_tiled ? TIFFReadRGBATileExt(m_tiff, x, firstRow, words.data(), 1)
                                 : TIFFReadRGBAStripExt(m_tiff, firstRow, words.data(), 1);
        if (!good) return false;
        const std::uint32_t lowest = m_tiled ? m_bandRows - 1 : rows - 1;
        for (std::uint32_t y = 0; y < rows; ++y)
            for (std::uint32_t u = 0; u < std::min(width, m_width - x); ++u) {
                const std::uint32_t word = words[static_cast<std::size_t>(lowest - y) * width + u];
                std::uint8_t* rgb = m_band.data() + (static_cast<std::size_t>(y) * m_width + x + u) * 3;
                rgb[0] = static_cast<std::uint8_t>(TIFFGetR(word));
                rgb[1] = static_cast<std::uint8_t>(TIFFGetG(word));
                rgb[2] = static_cast<std::uint8_t>(TIFFGetB(word));
            }
    }
    return true;
}

void TiffSource::convertRow(const std::uint8_t* samples, std::uint32_t pixels, std::uint8_t* rgb) const
{
    const bool colour = m_photometric == PHOTOMETRIC_RGB;
    const std::uint8_t flip = m_photometric == PHOTOMETRIC_MINISWHITE ? 0xFF : 0;
    const auto sample = [&](std::size_t index) {
        if (m_bits == 8) return samples[index];
        std::uint16_t value = 0;
        std::memcpy(&value, samples + 2 * index, 2);
        return static_cast<std::uint8_t>((value * 255u + 32895u) >> 16);
    };
    for (std::uint32_t i = 0; i < pixels; ++i, rgb += 3) {
        const std::size_t at = static_cast<std::size_t>(i) * m_samples;
        if (!m_palette.empty()) {
            std::memcpy(rgb, &m_palette[3 * static_cast<std::size_t>(samples[at])], 3);
            continue;
        }
        for (std::size_t c = 0; c < 3; ++c)
            rgb[c] = sample(colour ? at + c : at) ^ flip;
    }
}

bool TiffSource::rewind()
{
    m_nextRow = m_bandEnd = 0;
    // Rows of a compressed strip can only be read forward.
    TIFFClose(m_tiff);
    return open();
}

} // namespace pnotool
