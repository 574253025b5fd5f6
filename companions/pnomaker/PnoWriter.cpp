// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/PnoWriter.h"

#include "companions/pnomaker/Pyramid.h"

#include <cstring>

namespace pnomaker {
namespace {

// Blocks and directory entries are written as they stand in memory.
static_assert(
#if defined(__BYTE_ORDER__)
    __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
#else
    true,
#endif
    "the file is little-endian");

constexpr std::int64_t kCaptureAt = 2;
constexpr std::int64_t kInfoAt = kCaptureAt + pno::kSegmentHeaderBytes + pno::kCaptureBlockBytes;
constexpr std::int64_t kDirectoryAt = kInfoAt + pno::kSegmentHeaderBytes + pno::kImageInfoBytes;

} // namespace

PnoWriter::PnoWriter(const std::string& path, const Pyramid& pyramid)
    : m_file(path)
    , m_path(path)
{
    for (int i = 0; i <= pyramid.topLevel; ++i) {
        const LevelSize& level = pyramid.levels[i];
        for (int row = 0; row < level.rows; ++row)
            for (int column = 0; column < level.columns; ++column)
                m_directory.push_back({static_cast<std::int16_t>(i),
                                       static_cast<std::int16_t>(column),
                                       static_cast<std::int16_t>(row),
                                       {},
                                       0,
                                       0});
    }
}

bool PnoWriter::begin()
{
    const std::size_t directoryBytes = m_directory.size() * sizeof(pno::TileRecord);
    const std::vector<std::uint8_t> room(pno::kImageInfoBytes + directoryBytes);
    return m_file.open() && write(&pno::kMagic, 2) && segment(pno::CaptureBlock, pno::kCaptureBlockBytes) &&
           write(room.data(), pno::kCaptureBlockBytes) && segment(pno::ImageInfo, pno::kImageInfoBytes) &&
           write(room.data(), pno::kImageInfoBytes) &&
           segment(pno::TileDirectory, static_cast<std::int64_t>(directoryBytes)) &&
           write(room.data(), directoryBytes) && segment(pno::TileData, 0) &&
           (m_tileStart = m_file.written(), true);
}

bool PnoWriter::addTile(int index, const std::uint8_t* bytes, std::size_t size)
{
    pno::TileRecord& record = m_directory[static_cast<std::size_t>(index)];
    record.offset = static_cast<std::uint32_t>(m_file.written() - m_tileStart);
    record.size = static_cast<std::uint32_t>(size);
    return write(bytes, size);
}

bool PnoWriter::endTiles()
{
    if (m_tileBytes < 0) m_tileBytes = m_file.written() - m_tileStart;
    return true;
}

bool PnoWriter::addLidar(const std::vector<std::vector<std::uint8_t>>& tiles,
                         const std::array<std::uint32_t, 4>& pointValues,
                         const std::vector<std::uint8_t>& points, std::uint32_t unit_um)
{
    endTiles();
    std::vector<pno::TileRecord> directory;
    std::uint32_t offset = 0;
    for (const std::vector<std::uint8_t>& tile : tiles) {
        const int place = static_cast<int>(directory.size());
        directory.push_back({pno::kDepthLevel,
                             static_cast<std::int16_t>(place % pno::kDepthColumns),
                             static_cast<std::int16_t>(place / pno::kDepthColumns),
                             {},
                             offset,
                             static_cast<std::uint32_t>(tile.size())});
        offset += static_cast<std::uint32_t>(tile.size());
    }
    const std::size_t directoryBytes = directory.size() * sizeof(pno::TileRecord);
    if (!segment(pno::DepthDirectory, static_cast<std::int64_t>(directoryBytes)) ||
        !write(directory.data(), directoryBytes) || !segment(pno::DepthData, offset))
        return false;
    for (const std::vector<std::uint8_t>& tile : tiles)
        if (!write(tile.data(), tile.size())) return false;
    return segment(pno::PointBlock, pno::kPointBlockHeaderBytes + static_cast<std::int64_t>(points.size())) &&
           write(pointValues.data(), pno::kPointBlockHeaderBytes) && write(points.data(), points.size()) &&
           segment(pno::ExtraBlock, pno::kExtraBlockMinBytes) && write(pno::kRangeEncoding, 4) &&
           write(&unit_um, 4);
}

bool PnoWriter::finish(const pno::CaptureTime& capture, const PnoImageInfo& info)
{
    endTiles();
    constexpr std::int64_t kHeader = pno::kSegmentHeaderBytes;
    return m_file.seek(kCaptureAt + kHeader) && m_file.write(&capture, sizeof(capture)) &&
           m_file.seek(kInfoAt + kHeader) && m_file.write(&info, sizeof(info)) &&
           m_file.seek(kDirectoryAt + kHeader) &&
           m_file.write(m_directory.data(), m_directory.size() * sizeof(pno::TileRecord)) &&
           m_file.seek(m_tileStart - kHeader) && segment(pno::TileData, m_tileBytes) && m_file.commit();
}

bool PnoWriter::segment(std::uint16_t marker, std::int64_t length)
{
    std::uint8_t header[pno::kSegmentHeaderBytes];
    const auto length32 = static_cast<std::int32_t>(length);
    std::memcpy(header, &marker, 2);
    std::memcpy(header + 2, &length32, 4);
    return m_file.write(header, sizeof(header));
}

bool PnoWriter::write(const void* data, std::size_t size)
{
    // Room is kept for the headers of the segments that may still follow.
    constexpr std::int64_t kReserve = 64;
    if (m_file.written() + static_cast<std::int64_t>(size) > pno::kMaxFileBytes - kReserve) {
        m_outgrown = true;
        m_error =
            m_path + ": the file would be larger than 256 MiB; a lower quality or level makes it smaller";
        return false;
    }
    return m_file.write(data, size);
}

std::string PnoWriter::error() const
{
    return m_error.empty() ? m_file.error() : m_error;
}

} // namespace pnomaker
