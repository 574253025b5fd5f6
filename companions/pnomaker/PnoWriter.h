// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PartFile.h"
#include "linking/pno/PnoFormat.h"
#include "project/PnoImageInfo.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace pnomaker {

struct Pyramid;

/// Lays out one panorama file: the blocks first, then the tiles in the order in which they come; the
/// directory is filled in at the end. Every call is false once something failed.
class PnoWriter
{
public:
    PnoWriter(const std::string& path, const Pyramid& pyramid);

    /// Writes the magic and room for the blocks and the directory.
    bool begin();

    /// @param index  place of the tile in the directory
    bool addTile(int index, const std::uint8_t* bytes, std::size_t size);

    /// The four lidar segments, after all tiles.
    /// @param tiles  the depth tiles, row by row, within a row column by column
    bool addLidar(const std::vector<std::vector<std::uint8_t>>& tiles,
                  const std::array<std::uint32_t, 4>& pointValues, const std::vector<std::uint8_t>& points,
                  std::uint32_t unit_um);

    /// Fills in the blocks and the directory and puts the file in place.
    bool finish(const pno::CaptureTime& capture, const PnoImageInfo& info);

    bool outgrown() const { return m_outgrown; } ///< failed because the format cannot hold this much
    std::string error() const;

private:
    bool segment(std::uint16_t marker, std::int64_t length);
    bool write(const void* data, std::size_t size);
    bool endTiles();

    PartFile m_file;
    const std::string m_path;
    std::vector<pno::TileRecord> m_directory;
    std::int64_t m_tileStart = 0; ///< data start of the tile data
    std::int64_t m_tileBytes = -1;
    bool m_outgrown = false;
    std::string m_error;
};

} // namespace pnomaker
