// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/BinaryInput.h"
#include "linking/pno/PnoFormat.h"
#include "linking/pno/PnoPyramid.h"
#include "project/PnoImageInfo.h"

#include <array>
#include <cstdint>

/// The walk over the segments of a panorama, and what it finds.
namespace pno {

/// Bytes of a panorama, measured from its start.
struct Span
{
    std::int32_t start = 0;
    std::int32_t length = 0;
};

/// Everything the reader keeps of a file. The alignments let the packed records be used as they were read.
struct Contents
{
    alignas(8) CaptureTime capture{};
    alignas(8) PnoImageInfo info{};
    Pyramid pyramid;
    alignas(4) std::array<TileRecord, kMaxTiles> tiles{};
    alignas(4) std::array<TileRecord, kDepthTiles> depthTiles{};
    std::int32_t tileDataStart = 0;
    std::int32_t depthDataStart = 0;
    std::array<std::uint32_t, 4> pointValues{};
    Span points; ///< payload of the point block
    Span extra;
    std::uint32_t seen = 0; ///< one bit per marker

    bool has(Marker marker) const { return (seen & bit(marker)) != 0; }
    void note(Marker marker) { seen |= bit(marker); }
    bool complete() const; ///< all segments without which there is no panorama
    bool lidar() const;    ///< all four lidar segments

private:
    static std::uint32_t bit(Marker marker) { return 1u << (marker & 0xF); }
};

/// Reads and validates the panorama that starts at `base` and has `length` bytes.
/// @param contents  freshly made; on failure it holds what was read so far
[[nodiscard]] Status scan(BinaryInput& input, std::int64_t base, std::int32_t length, Contents* contents);

} // namespace pno
