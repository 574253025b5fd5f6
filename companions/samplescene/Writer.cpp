// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Writer.h"

#include "companions/pnomaker/PnoMaker.h"

#include <cstring>
#include <fstream>

namespace samplescene {
namespace {

/// Hands the rows of a picture in memory to the maker.
class PictureRows : public pnomaker::RowSource
{
public:
    explicit PictureRows(const Rendering& picture)
        : m_picture(picture)
    {}
    int width() const override { return m_picture.width; }
    int height() const override { return m_picture.height; }
    bool readRows(std::uint8_t* rgb, int count) override
    {
        if (count > m_picture.height - m_row) return false;
        const std::size_t stride = static_cast<std::size_t>(m_picture.width) * 3;
        std::memcpy(rgb, &m_picture.rgb[static_cast<std::size_t>(m_row) * stride],
                    static_cast<std::size_t>(count) * stride);
        m_row += count;
        return true;
    }
    std::string error() const override { return "the picture has no more rows"; }

private:
    const Rendering& m_picture;
    int m_row = 0;
};

std::string writeBytes(const std::string& head, const char* bytes, std::size_t count, const std::string& path)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << head;
    file.write(bytes, static_cast<std::streamsize>(count));
    file.close();
    return file ? std::string() : "cannot write " + path;
}

std::string netpbmHead(const char* magic, const Rendering& picture, int most)
{
    return std::string(magic) + "\n" + std::to_string(picture.width) + " " + std::to_string(picture.height) +
           "\n" + std::to_string(most) + "\n";
}

} // namespace

std::string writePanorama(const Station& station, int number, const Rendering& picture,
                          const std::string& path)
{
    PictureRows rows(picture);
    pnomaker::RangePicture range;
    pnomaker::MakeOptions make;
    make.id = station.id;
    make.name = station.room;
    make.year = 2026;
    make.hour = static_cast<std::uint32_t>(number / 60 % 24);
    make.minute = static_cast<std::uint32_t>(number % 60);
    if (!picture.range.empty()) {
        range.width = picture.width;
        range.height = picture.height;
        range.values = picture.range;
        range.unit_m = 0.001;
        make.range = &range;
    }
    return pnomaker::make(rows, make, path);
}

std::string writePpm(const Rendering& picture, const std::string& path)
{
    return writeBytes(netpbmHead("P6", picture, 255), reinterpret_cast<const char*>(picture.rgb.data()),
                      picture.rgb.size(), path);
}

std::string writeRangePgm(const Rendering& picture, const std::string& path)
{
    std::string bytes;
    bytes.reserve(picture.range.size() * 2);
    for (const std::uint16_t v : picture.range) {
        bytes += static_cast<char>(v >> 8);
        bytes += static_cast<char>(v & 0xff);
    }
    return writeBytes(netpbmHead("P5", picture, 65535), bytes.data(), bytes.size(), path);
}

std::string writeText(const std::string& text, const std::string& path)
{
    return writeBytes({}, text.data(), text.size(), path);
}

} // namespace samplescene
