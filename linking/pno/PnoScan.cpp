// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/pno/PnoScan.h"

#include "linking/pno/PnoChecks.h"

#include <limits>

namespace pno {
namespace {

constexpr std::int32_t kMagicBytes = 2;

struct Segment
{
    std::uint16_t marker;
    std::int32_t start; ///< of the data
    std::int32_t length;
};

class Scan
{
public:
    Scan(BinaryInput& input, std::int64_t base, std::int32_t length, Contents* contents)
        : m_input(input)
        , m_base(base)
        , m_length(length)
        , m_contents(*contents)
    {}

    Status run();

private:
    Status readHeader(std::int32_t position, Segment* segment);
    Status handle(const Segment& segment);
    Status readCapture(const Segment& segment);
    Status readInfo(const Segment& segment);
    Status readTileDirectory(const Segment& segment);
    Status readDepthDirectory(const Segment& segment);
    Status readPointBlock(const Segment& segment);
    Status finish();

    BinaryInput& m_input;
    const std::int64_t m_base;
    const std::int32_t m_length;
    Contents& m_contents;
    std::int32_t m_tileDataMin = 0;  ///< bytes that the tile directory asks of the tile data
    std::int32_t m_depthDataMin = 0; ///< likewise for the depth tiles
};

Status Scan::run()
{
    if (m_base > 0 && !m_input.seek(m_base)) return BadLength;
    std::uint16_t magic = 0;
    if (!m_input.read(&magic, sizeof magic)) return BadLength;
    if (magic != kMagic) return BadMagic;
    // Room for every position that a panorama can name, tiles beyond its end included.
    if (m_base > std::numeric_limits<std::int64_t>::max() - 3LL * kMaxFileBytes) return BadLength;

    std::int32_t position = kMagicBytes;
    while (position < m_length) {
        Segment segment{};
        if (const Status status = readHeader(position, &segment); status != Ok) return status;
        if (const Status status = handle(segment); status != Ok) return status;
        // A negative length would lead back to where the scan has been.
        if (segment.length < 0 || segment.length > m_length - segment.start) return BadLength;
        position = segment.start + segment.length;
    }
    return finish();
}

Status Scan::readHeader(std::int32_t position, Segment* segment)
{
    if (!m_input.seek(m_base + position) || !m_input.read(&segment->marker, sizeof segment->marker) ||
        !m_input.read(&segment->length, sizeof segment->length))
        return BadLength;
    segment->start = position + kSegmentHeaderBytes;
    return segment->start > m_length ? BadLength : Ok;
}

Status Scan::handle(const Segment& segment)
{
    switch (segment.marker) {
    case CaptureBlock:
        return readCapture(segment);
    case ImageInfo:
        return readInfo(segment);
    case TileDirectory:
        return readTileDirectory(segment);
    case TileData:
        if (segment.length < m_tileDataMin) return BadSegment;
        m_contents.tileDataStart = segment.start;
        break;
    case DepthDirectory:
        return readDepthDirectory(segment);
    case DepthData:
        if (segment.length < m_depthDataMin) return BadSegment;
        m_contents.depthDataStart = segment.start;
        break;
    case PointBlock:
        return readPointBlock(segment);
    case ExtraBlock:
        if (segment.length < kExtraBlockMinBytes) return BadSegment;
        m_contents.extra = {segment.start, segment.length};
        break;
    default:
        return Ok;
    }
    m_contents.note(static_cast<Marker>(segment.marker));
    return Ok;
}

// The two fixed-size blocks compare their length unsigned, so that a negative one passes here; the scan
// refuses it once the block is read.
Status Scan::readCapture(const Segment& segment)
{
    if (static_cast<std::uint32_t>(segment.length) < kCaptureBlockBytes) return BadSegment;
    if (!m_input.read(&m_contents.capture, sizeof m_contents.capture)) return BadLength;
    if (!validCaptureTime(m_contents.capture)) return BadSegment;
    m_contents.note(CaptureBlock);
    return Ok;
}

Status Scan::readInfo(const Segment& segment)
{
    if (static_cast<std::uint32_t>(segment.length) < kImageInfoBytes) return BadSegment;
    if (!m_input.read(&m_contents.info, sizeof m_contents.info)) return BadLength;
    const auto pyramid = checkedPyramid(m_contents.info);
    if (!pyramid) return BadSegment;
    m_contents.pyramid = *pyramid;
    m_contents.note(ImageInfo);
    return Ok;
}

Status Scan::readTileDirectory(const Segment& segment)
{
    const Pyramid& pyramid = m_contents.pyramid;
    const auto count = static_cast<std::int32_t>(pyramid.tiles);
    if (count > kMaxTiles || segment.length < count * kTileRecordBytes) return BadSegment;
    TileRecord* records = m_contents.tiles.data();
    if (!m_input.read(records, static_cast<std::size_t>(count) * sizeof *records)) return BadLength;
    const auto end = checkedTileDirectory(records, m_contents.info.max_zoom_level, pyramid);
    if (!end) return BadSegment;
    m_tileDataMin = *end;
    m_contents.note(TileDirectory);
    return Ok;
}

Status Scan::readDepthDirectory(const Segment& segment)
{
    if (segment.length < kDepthTiles * kTileRecordBytes) return BadSegment;
    if (!m_input.read(m_contents.depthTiles.data(), sizeof m_contents.depthTiles)) return BadLength;
    const auto end = checkedDepthDirectory(m_contents.depthTiles.data());
    if (!end) return BadSegment;
    m_depthDataMin = *end;
    m_contents.note(DepthDirectory);
    return Ok;
}

Status Scan::readPointBlock(const Segment& segment)
{
    if (segment.length < kPointBlockMinBytes) return BadSegment;
    if (!m_input.read(m_contents.pointValues.data(), sizeof m_contents.pointValues)) return BadLength;
    m_contents.points = {segment.start + kPointBlockHeaderBytes, segment.length - kPointBlockHeaderBytes};
    m_contents.note(PointBlock);
    return Ok;
}

Status Scan::finish()
{
    if (!m_contents.complete()) return MissingSegment;
    // The directory was read by the information block before it; one that came first or was followed by
    // another information block may belong to another grid.
    const bool fits =
        m_contents.pyramid.tiles <= kMaxTiles &&
        checkedTileDirectory(m_contents.tiles.data(), m_contents.info.max_zoom_level, m_contents.pyramid);
    return fits ? Ok : BadSegment;
}

} // namespace

bool Contents::complete() const
{
    return has(CaptureBlock) && has(ImageInfo) && has(TileDirectory) && has(TileData);
}

bool Contents::lidar() const
{
    return has(DepthDirectory) && has(DepthData) && has(PointBlock) && has(ExtraBlock);
}

Status scan(BinaryInput& input, std::int64_t base, std::int32_t length, Contents* contents)
{
    return Scan(input, base, length, contents).run();
}

} // namespace pno
