// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The range picture of a panorama file, tile by tile.
#include "nexomap/src/RangeReading.h"

#include "linking/pno/PnoFile.h"

#include <opencv2/imgcodecs.hpp>

#include <atomic>
#include <cstring>

namespace nexomap {
namespace {

constexpr int kTile = int(pno::kTilePixels);
constexpr int kMostLostTiles = pno::kDepthTiles / 4;

/// Metres per step; 0 for an encoding that is not ours.
float unitOf(PnoFile& file)
{
    std::uint32_t size = 0;
    const PnoBytes extra = file.ReadExtra(&size);
    if (!extra || size < 8 || std::memcmp(extra.get(), pno::kRangeEncoding, 4) != 0) return 0.f;
    const std::uint32_t micrometres = std::uint32_t(extra[4]) | std::uint32_t(extra[5]) << 8 |
                                      std::uint32_t(extra[6]) << 16 | std::uint32_t(extra[7]) << 24;
    return micrometres <= 100000 ? float(micrometres) * 1e-6f : 0.f;
}

cv::Mat1w tileAt(PnoFile& file, int column, int row)
{
    std::uint32_t size = 0;
    const PnoBytes bytes = file.ReadDepthTile(column, row, &size);
    if (!bytes || size == 0) return {};
    try {
        const cv::Mat tile = cv::imdecode(cv::Mat(1, int(size), CV_8U, bytes.get()), cv::IMREAD_UNCHANGED);
        if (tile.cols == kTile && tile.rows == kTile && tile.type() == CV_16UC1) return tile;
    } catch (const cv::Exception&) { // damaged in a way that the decoder did not foresee
    }
    return {};
}

} // namespace

RangePicture readRanges(const std::string& path, const std::string& id, std::string* error)
{
    const auto file = std::make_unique<PnoFile>(); // large
    const auto refused = [&](const std::string& why) {
        *error = path + ": " + why;
        return RangePicture{};
    };
    if (const std::int32_t status = file->Open(path.c_str()); status != pno::Ok)
        return refused("not a panorama file (status " + std::to_string(status) + ")");
    if (id != file->imageInfo().identity) return refused("holds another panorama now");
    RangePicture picture;
    picture.unit_m = file->lidar() ? unitOf(*file) : 0.f;
    if (picture.unit_m <= 0.f) return refused("no lidar that can be read");
    picture.steps = cv::Mat1w(pno::kDepthRows * kTile, pno::kDepthColumns * kTile, std::uint16_t(0));
    std::atomic<int> lost{0};
    cv::parallel_for_(cv::Range(0, pno::kDepthTiles), [&](const cv::Range& range) {
        for (int k = range.start; k < range.end; ++k) {
            const int column = k % pno::kDepthColumns, row = k / pno::kDepthColumns;
            const cv::Mat1w tile = tileAt(*file, column, row);
            // Tile columns run from the picture's right edge to its left.
            const cv::Rect place((pno::kDepthColumns - 1 - column) * kTile, row * kTile, kTile, kTile);
            if (tile.empty())
                ++lost;
            else
                tile.copyTo(picture.steps(place));
        }
    });
    if (lost > kMostLostTiles)
        return refused(std::to_string(lost.load()) + " of " + std::to_string(pno::kDepthTiles) +
                       " tiles of its lidar cannot be read");
    return picture;
}

} // namespace nexomap
