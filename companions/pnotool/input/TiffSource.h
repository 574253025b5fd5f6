// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnotool/input/PictureSource.h"

#include <vector>

struct tiff;

namespace pnotool {

/// The first picture of a TIFF file as a stream of 8-bit RGB rows, strip by strip or one row of tiles at a
/// time. Grey, palette and RGB with 8 or 16 bits are read by us, every other kind through the library's own
/// conversion.
class TiffSource : public PictureSource
{
public:
    explicit TiffSource(std::string path);
    ~TiffSource() override;

    bool open();
    int width() const override { return static_cast<int>(m_width); }
    int height() const override { return static_cast<int>(m_height); }
    bool readRows(std::uint8_t* rgb, int count) override;
    bool rewind() override;

private:
    void keepMetadata();
    bool readBand(std::uint32_t firstRow);  ///< fills m_band with the rows of a strip or a row of tiles
    bool readPlain(std::uint32_t firstRow); ///< the sample layouts that convertRow() knows
    bool readThroughLibrary(std::uint32_t firstRow);
    void convertRow(const std::uint8_t* samples, std::uint32_t pixels, std::uint8_t* rgb) const;

    std::string m_path;
    tiff* m_tiff = nullptr;
    std::uint32_t m_width = 0;
    std::uint32_t m_height = 0;
    std::uint16_t m_bits = 8;
    std::uint16_t m_samples = 1;
    std::uint16_t m_photometric = 1;
    bool m_plain = false;
    bool m_tiled = false;
    std::uint32_t m_bandRows = 1; ///< rows of a strip or tile
    std::uint32_t m_tileWidth = 0;
    std::vector<std::uint8_t> m_palette; ///< RGB
    std::uint32_t m_nextRow = 0;
    std::uint32_t m_bandFirst = 0;
    std::uint32_t m_bandEnd = 0;
    std::vector<std::uint8_t> m_band; ///< RGB rows m_bandFirst to m_bandEnd
};

} // namespace pnotool
