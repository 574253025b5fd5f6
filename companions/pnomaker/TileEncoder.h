// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pnomaker {

/// Encodes tiles as baseline JPEG. One per thread at a time.
class TileEncoder
{
public:
    TileEncoder();
    ~TileEncoder();
    TileEncoder(const TileEncoder&) = delete;
    TileEncoder& operator=(const TileEncoder&) = delete;

    /// Appends the encoded 256 x 256 tile to `out`. Colour is halved in both directions below quality 95, as
    /// cameras do, and kept whole from 95 on.
    /// @param rgb  top-left pixel; @param pitch  bytes from row to row
    /// @return bytes appended, 0 on failure
    std::size_t encode(const std::uint8_t* rgb, std::size_t pitch, int quality,
                       std::vector<std::uint8_t>& out);

private:
    void* m_handle;
    std::vector<std::uint8_t> m_buffer;
};

} // namespace pnomaker
