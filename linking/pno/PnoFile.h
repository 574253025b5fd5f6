// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/PnoFormat.h"
#include "project/PnoImageInfo.h"

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// Bytes handed over to the caller.
using PnoBytes = std::unique_ptr<std::uint8_t[]>;

/// Reader of one panorama file: checks its structure, keeps its information blocks and tile directory, hands
/// out single encoded tiles. Decodes no pixels. About 155 KB: create it on the heap, one per use.
/// Accessors and tile reads may be called from several threads at once; `Open` excludes them.
class PnoFile
{
public:
    PnoFile();
    ~PnoFile();
    PnoFile(const PnoFile&) = delete;
    PnoFile& operator=(const PnoFile&) = delete;

    /// Reads and checks the file's structure.
    /// @param path        zero-terminated, local 8-bit encoding
    /// @param baseOffset  where the panorama starts in the file, bytes
    /// @param length      bytes of the panorama; negative: the whole file, measured from the file's start
    /// @return a `pno::Status`; on failure the reader stays unloaded
    [[nodiscard]] std::int32_t Open(const char* path, std::int64_t baseOffset = 0, std::int32_t length = -1);

    /// One encoded colour tile, owned by the caller; null and size 0 when it is not there or cannot be read
    /// whole.
    PnoBytes ReadTile(std::int32_t level, std::int32_t column, std::int32_t row, std::uint32_t* size);

    /// One encoded depth tile of the 32 x 16 grid; null and size 0 when there is none.
    PnoBytes ReadDepthTile(std::int32_t column, std::int32_t row, std::uint32_t* size);

    /// Payload of the point block (without its four values); null and size 0 when there is none.
    PnoBytes ReadPoints(std::uint32_t* size);

    /// Content of the extra block; null and size 0 when there is none.
    PnoBytes ReadExtra(std::uint32_t* size);

    bool loaded() const;
    std::uint64_t panoId() const; ///< identity number
    bool lidar() const;           ///< all four lidar segments are present and valid
    PnoImageInfo imageInfo() const;
    pno::CaptureTime captureTime() const;
    std::int32_t tileCount() const;
    std::array<std::uint32_t, 4> pointValues() const; ///< the point block's four values; zeros without one

private:
    struct State; ///< everything the lock guards, but for the counter
    struct Piece;

    PnoBytes readSpan(pno::Marker marker, std::uint32_t* size);
    static PnoBytes read(const Piece& piece, std::uint32_t* size);

    mutable std::mutex m_lock;
    std::unique_ptr<State> m_state;
    std::uint32_t m_outstandingReads = 0; ///< every tile read takes one off, modulo 2^32
};
