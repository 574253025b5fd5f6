// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>

#include <cstdint>
#include <memory>

/// Decoding of one tile after the other; each thread has its own.
class TileDecoder
{
public:
    TileDecoder();
    ~TileDecoder();
    TileDecoder(const TileDecoder&) = delete;
    TileDecoder& operator=(const TileDecoder&) = delete;

    /// Decodes a plain JPEG tile of 256 x 256 straight to where it is shown.
    /// @param square  top left pixel, RGB, 3 bytes each; 256 rows of `stride` bytes apart
    /// @return false when the tile is anything else; the square is untouched then
    bool decodePlainJpeg(const std::uint8_t* bytes, std::uint32_t size, std::uint8_t* square, int stride);

    /// Any tile, by the toolkit's loader: what it makes of a damaged tile is what is shown. Null when it
    /// makes nothing of it.
    static QImage decode(const std::uint8_t* bytes, std::uint32_t size);

private:
    struct Handle;
    std::unique_ptr<Handle> m_handle;
};
