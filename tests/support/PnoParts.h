// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/PnoFormat.h"
#include "project/PnoImageInfo.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Panorama files for tests, put together from parts that a test may bend before it joins them. Shares no
/// code with the reader or the maker, so that neither can hide its mistakes here.
namespace pnotest {

using Bytes = std::vector<std::uint8_t>;

struct Segment
{
    std::uint16_t marker = 0;
    Bytes data;
    std::optional<std::int32_t> statedLength; ///< what the file says instead of the data's true size
};

/// The magic, then the segments one after the other.
Bytes join(const std::vector<Segment>& segments);

/// Encoded bytes of the tile at (level, column, row); column 0 is the rightmost. Empty: a tile of size 0.
using TileSource = std::function<Bytes(int level, int column, int row)>;

struct PnoOptions
{
    std::string identity = "AAAAAAAAAAAAAB"; ///< 14 letters
    std::string name = "Test panorama";
    std::uint32_t level = 10; ///< top level, 10 to 12
    double polar_min = 0.0;   ///< radians from the upper pole
    double polar_max = pno::kPi;
    TileSource tiles;      ///< default: four bytes that name the level, column and row and decode to nothing
    TileSource depthTiles; ///< given: the file has all four lidar segments; called with level 10
    std::array<std::uint32_t, 4> pointValues = {11, 22, 0, pno::kPointFormat};
    Bytes points = Bytes(1024); ///< payload of the point block
    Bytes extra = {'R', 'N', 'G', '1', 0xE8, 0x03, 0, 0};
};

/// A valid panorama, part by part.
struct PnoParts
{
    pno::CaptureTime capture{};
    PnoImageInfo info{};
    std::vector<pno::TileRecord> tiles;
    Bytes tileData;
    std::vector<pno::TileRecord> depthTiles;
    Bytes depthData;
    std::array<std::uint32_t, 4> pointValues{};
    Bytes points;
    Bytes extra;
    bool lidar = false;

    Segment captureSegment() const;
    Segment infoSegment() const;
    Segment tileDirectorySegment() const;
    Segment tileDataSegment() const;
    Segment depthDirectorySegment() const;
    Segment depthDataSegment() const;
    Segment pointSegment() const;
    Segment extraSegment() const;

    /// In the order above; the last four only with lidar.
    std::vector<Segment> segments() const;
    Bytes bytes() const { return join(segments()); }

    /// Position of the record in `tiles`.
    std::size_t tileIndex(int level, int column, int row) const;
};

PnoParts parts(const PnoOptions& options = {});

/// A whole file's bytes in one call.
inline Bytes panorama(const PnoOptions& options = {})
{
    return parts(options).bytes();
}

/// Tile source for a lidar panorama whose depth tiles decode to nothing.
TileSource tinyTiles();

} // namespace pnotest
