// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// Constants of the panorama file. docs/FORMATS.md, the reader and the maker keep in step through this file.
namespace pno {

constexpr std::uint16_t kMagic = 0x73C0;

/// Segment markers, stored little-endian. Persisted: never renumber.
enum Marker : std::uint16_t
{
    CaptureBlock = 0xFFD0,
    ImageInfo = 0xFFD1,
    TileDirectory = 0xFFD2,
    TileData = 0xFFD3,
    DepthDirectory = 0xFFD5,
    DepthData = 0xFFD6,
    PointBlock = 0xFFD7,
    ExtraBlock = 0xFFD8,
};

/// What `PnoFile::Open` returns.
enum Status : std::int32_t
{
    Ok = 0,
    CannotOpen = -1,
    BadLength = -2, ///< length out of range, short read, or a segment runs past the end
    BadMagic = -3,
    BadSegment = -4, ///< a segment is too short or its content fails validation
    MissingSegment = -7,
};

constexpr std::int32_t kSegmentHeaderBytes = 6;
constexpr std::int32_t kCaptureBlockBytes = 256;
constexpr std::int32_t kImageInfoBytes = 448;
constexpr std::int32_t kTileRecordBytes = 20;
constexpr std::int32_t kMaxTiles = 6144;
constexpr std::int32_t kDepthColumns = 32;
constexpr std::int32_t kDepthRows = 16;
constexpr std::int32_t kDepthTiles = kDepthColumns * kDepthRows;
constexpr std::int16_t kDepthLevel = 10;
constexpr std::int32_t kPointBlockMinBytes = 1040;
constexpr std::int32_t kPointBlockHeaderBytes = 16;
constexpr std::int32_t kExtraBlockMinBytes = 8;
constexpr std::uint32_t kMaxTileOffset = 0x10000000;
constexpr std::uint32_t kMaxTileBytes = 0x100000;
constexpr std::int32_t kMinFileBytes = 704;
constexpr std::int32_t kMaxFileBytes = 0x10000000;
constexpr std::uint32_t kTilePixels = 256;
constexpr double kPi = 3.141592653589793;
constexpr double kTwoPiOfScale = 6.28318530717959; ///< the literal of the pixel-scale rule, not 2 * kPi

/// Lidar encoding written by our maker and read by our library; others are carried untouched.
constexpr char kRangeEncoding[4] = {'R', 'N', 'G', '1'};
constexpr std::uint32_t kPointFormat = 1; ///< 16 bytes: x, y, z as f32 metres, red, green, blue, 255
constexpr std::int32_t kPointBytes = 16;
constexpr std::int32_t kMaxPoints = 65536;

#pragma pack(push, 1)
/// Entry of both tile directories.
struct TileRecord
{
    std::int16_t level;
    std::int16_t column; ///< 0 is the rightmost strip of the picture
    std::int16_t row;
    std::uint8_t unread[6];
    std::uint32_t offset; ///< from the data start of the matching data segment
    std::uint32_t size;   ///< bytes
};

/// The capture block; only the time is interpreted.
struct CaptureTime
{
    std::uint8_t unread0[8];
    std::uint32_t year, month, day, hour, minute, second, millisecond;
    std::uint8_t unread36[220];
};
#pragma pack(pop)

static_assert(sizeof(TileRecord) == kTileRecordBytes, "directory entries are read as they stand");
static_assert(sizeof(CaptureTime) == kCaptureBlockBytes, "the capture block is read as it stands");

} // namespace pno
