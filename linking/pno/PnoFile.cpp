// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/pno/PnoFile.h"

#include "linking/pno/BinaryInput.h"
#include "linking/pno/PnoScan.h"
#include "project/PanoIdentity.h"

#include <new>

struct PnoFile::State
{
    /// Shared with the reads under way, so that looking up a tile copies no text.
    std::shared_ptr<const std::string> path;
    std::int64_t base = 0;
    bool loaded = false;
    std::uint64_t panoId = 0;
    pno::Contents contents;
    std::array<std::uint32_t, pno::kMaxTiles> lookup{}; ///< directory index by level, row and column

    void buildLookup();
    const pno::TileRecord* tile(std::int32_t level, std::int32_t column, std::int32_t row) const;
};

/// Bytes to read once the lock is released.
struct PnoFile::Piece
{
    std::shared_ptr<const std::string> path; ///< null: there is nothing to read
    std::int64_t position = 0;               ///< in the file
    std::uint32_t size = 0;
};

namespace {

bool withinGrid(std::int32_t value, std::uint32_t count)
{
    return value >= 0 && static_cast<std::uint32_t>(value) < count;
}

PnoBytes readWhole(const std::string& path, std::int64_t position, std::uint32_t size)
{
    pno::BinaryInput input(path.c_str());
    if (!input.isOpen()) return nullptr;
    // Tiles have a small limit; a point or extra block may claim far more than a file holds.
    if (size > pno::kMaxTileBytes && input.measure() - position < static_cast<std::int64_t>(size))
        return nullptr;
    PnoBytes bytes(new (std::nothrow) std::uint8_t[size]);
    if (!bytes || !input.seek(position) || !input.read(bytes.get(), size)) return nullptr;
    return bytes;
}

} // namespace

void PnoFile::State::buildLookup()
{
    const pno::Pyramid& pyramid = contents.pyramid;
    for (std::uint32_t i = 0; i < pyramid.tiles; ++i) {
        const pno::TileRecord& record = contents.tiles[i];
        const auto level = static_cast<std::uint32_t>(record.level);
        const auto place = pyramid.firsts[level] +
                           pyramid.columns[level] * static_cast<std::uint32_t>(record.row) +
                           static_cast<std::uint32_t>(record.column);
        lookup[place] = i;
    }
}

const pno::TileRecord* PnoFile::State::tile(std::int32_t level, std::int32_t column, std::int32_t row) const
{
    const pno::Pyramid& pyramid = contents.pyramid;
    if (!loaded || !withinGrid(level, contents.info.max_zoom_level + 1)) return nullptr;
    const auto index = static_cast<std::uint32_t>(level);
    if (!withinGrid(column, pyramid.columns[index]) || !withinGrid(row, pyramid.rows[index])) return nullptr;
    const auto place = pyramid.firsts[index] + pyramid.columns[index] * static_cast<std::uint32_t>(row) +
                       static_cast<std::uint32_t>(column);
    return &contents.tiles[lookup[place]];
}

PnoFile::PnoFile()
    : m_state(std::make_unique<State>())
{}

PnoFile::~PnoFile() = default;

std::int32_t PnoFile::Open(const char* path, std::int64_t baseOffset, std::int32_t length)
{
    const std::lock_guard<std::mutex> guard(m_lock);
    m_state = std::make_unique<State>();
    m_state->path = std::make_shared<const std::string>(path ? path : "");
    m_state->base = baseOffset;

    pno::BinaryInput input(path);
    if (!input.isOpen()) return pno::CannotOpen;
    const std::int64_t bytes = length < 0 ? input.measure() : length;
    if (bytes < pno::kMinFileBytes || bytes > pno::kMaxFileBytes) return pno::BadLength;

    pno::Contents& contents = m_state->contents;
    const pno::Status status = pno::scan(input, baseOffset, static_cast<std::int32_t>(bytes), &contents);
    if (status != pno::Ok) return status;
    m_state->panoId = panoIdFromName(contents.info.identity);
    m_state->buildLookup();
    m_state->loaded = true;
    return pno::Ok;
}

PnoBytes PnoFile::ReadTile(std::int32_t level, std::int32_t column, std::int32_t row, std::uint32_t* size)
{
    Piece piece;
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        if (const pno::TileRecord* record = m_state->tile(level, column, row))
            piece = {m_state->path,
                     m_state->base + m_state->contents.tileDataStart +
                         static_cast<std::int64_t>(record->offset),
                     record->size};
    }
    PnoBytes bytes = read(piece, size);
    const std::lock_guard<std::mutex> guard(m_lock);
    --m_outstandingReads;
    return bytes;
}

PnoBytes PnoFile::ReadDepthTile(std::int32_t column, std::int32_t row, std::uint32_t* size)
{
    Piece piece;
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        const pno::Contents& contents = m_state->contents;
        if (m_state->loaded && contents.has(pno::DepthDirectory) && contents.has(pno::DepthData) &&
            withinGrid(column, pno::kDepthColumns) && withinGrid(row, pno::kDepthRows)) {
            const auto place = static_cast<std::size_t>(row * pno::kDepthColumns + column);
            const pno::TileRecord& record = contents.depthTiles[place];
            piece = {m_state->path,
                     m_state->base + contents.depthDataStart + static_cast<std::int64_t>(record.offset),
                     record.size};
        }
    }
    return read(piece, size);
}

PnoBytes PnoFile::ReadPoints(std::uint32_t* size)
{
    return readSpan(pno::PointBlock, size);
}

PnoBytes PnoFile::ReadExtra(std::uint32_t* size)
{
    return readSpan(pno::ExtraBlock, size);
}

PnoBytes PnoFile::readSpan(pno::Marker marker, std::uint32_t* size)
{
    Piece piece;
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        const pno::Contents& contents = m_state->contents;
        if (m_state->loaded && contents.has(marker)) {
            const pno::Span& span = marker == pno::PointBlock ? contents.points : contents.extra;
            piece = {m_state->path, m_state->base + span.start, static_cast<std::uint32_t>(span.length)};
        }
    }
    return read(piece, size);
}

PnoBytes PnoFile::read(const Piece& piece, std::uint32_t* size)
{
    PnoBytes bytes = piece.path ? readWhole(*piece.path, piece.position, piece.size) : nullptr;
    if (size) *size = bytes ? piece.size : 0;
    return bytes;
}

bool PnoFile::loaded() const
{
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_state->loaded;
}

std::uint64_t PnoFile::panoId() const
{
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_state->panoId;
}

bool PnoFile::lidar() const
{
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_state->loaded && m_state->contents.lidar();
}

PnoImageInfo PnoFile::imageInfo() const
{
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_state->contents.info;
}

pno::CaptureTime PnoFile::captureTime() const
{
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_state->contents.capture;
}

std::int32_t PnoFile::tileCount() const
{
    const std::lock_guard<std::mutex> guard(m_lock);
    return static_cast<std::int32_t>(m_state->contents.pyramid.tiles);
}

std::array<std::uint32_t, 4> PnoFile::pointValues() const
{
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_state->contents.pointValues;
}
