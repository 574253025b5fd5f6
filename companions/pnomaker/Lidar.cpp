// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/Lidar.h"

#include "companions/pnomaker/DepthPng.h"
#include "companions/pnomaker/PnoWriter.h"
#include "companions/pnomaker/RangePoints.h"
#include "companions/pnomaker/WorkerPool.h"

#include <atomic>
#include <cmath>

namespace pnomaker {
namespace {

constexpr int kTile = static_cast<int>(pno::kTilePixels);

/// One depth tile; column 0 is the rightmost strip of the picture.
bool makeDepthTile(const RangePicture& range, int column, int row, std::vector<std::uint8_t>& out)
{
    std::vector<std::uint16_t> values(static_cast<std::size_t>(kTile) * kTile);
    const int left = (pno::kDepthColumns - 1 - column) * kTile;
    for (int y = 0; y < kTile; ++y) {
        const std::int64_t inRow = (2 * (row * kTile + y) + 1) * static_cast<std::int64_t>(range.height) /
                                   (2 * pno::kDepthRows * kTile);
        const std::uint16_t* in = range.values.data() + inRow * range.width;
        for (int x = 0; x < kTile; ++x)
            values[static_cast<std::size_t>(y * kTile + x)] =
                in[(2 * (left + x) + 1) * static_cast<std::int64_t>(range.width) /
                   (2 * pno::kDepthColumns * kTile)];
    }
    return encodeDepthTile(values.data(), out);
}

} // namespace

std::string refusalOfRange(const RangePicture& range)
{
    const std::string size = std::to_string(range.width) + " x " + std::to_string(range.height);
    if (range.width < 2 || range.width != 2 * range.height)
        return "the range picture is " + size + "; a full sphere is twice as wide as high";
    if (range.values.size() != static_cast<std::size_t>(range.width) * static_cast<std::size_t>(range.height))
        return "the range picture of " + size + " has " + std::to_string(range.values.size()) + " values";
    if (!(range.unit_m >= 1e-6 && range.unit_m <= 1))
        return "the range unit is not between 0.000001 and 1 metre";
    return {};
}

std::string writeLidar(const MakeOptions& options, const SpherePicture& picture, WorkerPool& pool,
                       PnoWriter& writer)
{
    const RangePicture& range = *options.range;
    std::vector<std::vector<std::uint8_t>> tiles(pno::kDepthTiles);
    std::atomic<bool> good{true};
    pool.forEach(pno::kDepthTiles, [&](int i) {
        if (!makeDepthTile(range, i % pno::kDepthColumns, i / pno::kDepthColumns,
                           tiles[static_cast<std::size_t>(i)]))
            good = false;
    });
    if (!good) return "the range picture cannot be encoded";
    const std::vector<CloudPoint> points =
        options.points ? thinned(*options.points) : pointsFromRange(range, picture);
    const std::array<std::uint32_t, 4> values = {
        static_cast<std::uint32_t>(options.plan_x), static_cast<std::uint32_t>(options.plan_y),
        static_cast<std::uint32_t>(points.size()), pno::kPointFormat};
    const auto unit_um = static_cast<std::uint32_t>(std::lround(range.unit_m * 1e6));
    return writer.addLidar(tiles, values, pointPayload(points), unit_um) ? std::string() : writer.error();
}

} // namespace pnomaker
