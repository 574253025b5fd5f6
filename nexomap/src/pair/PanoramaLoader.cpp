// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// One panorama of the library, from its file.
#include "linking/pno/PnoFile.h"
#include "nexomap/src/pair/PanoramaBuilder.h"
#include "nexomap/src/pair/RangeReduction.h"

#include <opencv2/imgcodecs.hpp>

#include <atomic>
#include <cstring>

namespace nexomap {
namespace {

constexpr int kLevel = 8; // 4096 pixels wide: more shows no more matches, and takes four times as long
constexpr int kTile = int(pno::kTilePixels);

cv::Mat decodeTile(const PnoBytes& bytes, std::uint32_t size, int flags)
{
    if (!bytes || size == 0) return {};
    try {
        return cv::imdecode(cv::Mat(1, int(size), CV_8U, bytes.get()), flags);
    } catch (const cv::Exception&) { // damaged in a way that the decoder did not foresee
        return {};
    }
}

/// The picture of one level; tiles that cannot be read stay black and count as missing.
cv::Mat3b readPicture(PnoFile& file, const PnoImageInfo& info, int* missing)
{
    const int columns = int(info.columns[kLevel]), rows = int(info.rows[kLevel]);
    cv::Mat3b canvas(rows * kTile, columns * kTile, cv::Vec3b(0, 0, 0));
    std::atomic<int> lost{0};
    cv::parallel_for_(cv::Range(0, columns * rows), [&](const cv::Range& range) {
        for (int i = range.start; i < range.end; ++i) {
            const int column = i % columns, row = i / columns;
            std::uint32_t size = 0;
            const PnoBytes bytes = file.ReadTile(kLevel, column, row, &size);
            const cv::Mat tile = decodeTile(bytes, size, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
            if (tile.cols != kTile || tile.rows != kTile || tile.type() != CV_8UC3)
                ++lost;
            else // tile columns run from the picture's right edge to its left
                tile.copyTo(canvas(cv::Rect((columns - 1 - column) * kTile, row * kTile, kTile, kTile)));
        }
    });
    *missing = lost;
    const int width = int(info.widths[kLevel]), height = int(info.heights[kLevel]);
    return canvas(cv::Rect(canvas.cols - width, 0, width, std::min(height, canvas.rows))).clone();
}

/// Metres per step of our own range encoding; 0 for any other.
float rangeUnit(PnoFile& file)
{
    std::uint32_t size = 0;
    const PnoBytes extra = file.ReadExtra(&size);
    if (!extra || size < 8 || std::memcmp(extra.get(), pno::kRangeEncoding, 4) != 0) return 0.f;
    const std::uint32_t micrometres = std::uint32_t(extra[4]) | std::uint32_t(extra[5]) << 8 |
                                      std::uint32_t(extra[6]) << 16 | std::uint32_t(extra[7]) << 24;
    return micrometres <= 100000 ? float(micrometres) * 1e-6f : 0.f;
}

/// Empty without lidar of our encoding. Damaged tiles are holes.
RangeMap readRange(PnoFile& file)
{
    const float unit_m = file.lidar() ? rangeUnit(file) : 0.f;
    if (unit_m <= 0.f) return {};
    constexpr int kCell = pno::kDepthColumns * kTile / kRangeWidth, kPart = kTile / kCell;
    RangeMap map{cv::Mat1f(kRangeHeight, kRangeWidth, 0.f), cv::Mat1b(kRangeHeight, kRangeWidth, uchar(0)),
                 unit_m, nullptr};
    cv::parallel_for_(cv::Range(0, pno::kDepthTiles), [&](const cv::Range& range) {
        for (int i = range.start; i < range.end; ++i) {
            const int column = i % pno::kDepthColumns, row = i / pno::kDepthColumns;
            std::uint32_t size = 0;
            const PnoBytes bytes = file.ReadDepthTile(column, row, &size);
            const cv::Mat tile = decodeTile(bytes, size, cv::IMREAD_UNCHANGED);
            if (tile.cols != kTile || tile.rows != kTile || tile.type() != CV_16UC1) continue;
            const cv::Rect place((pno::kDepthColumns - 1 - column) * kPart, row * kPart, kPart, kPart);
            reduceRangeCells(tile, unit_m, kCell, map.range_m(place), map.edge(place));
        }
    });
    // Fewer returns than this are noise, and a map of them would call the pair metric.
    return cv::countNonZero(map.range_m > 0.f) >= kRangeWidth * kRangeHeight / 50 ? map : RangeMap{};
}

std::unique_ptr<Panorama> load(const std::string& path, std::string* error)
{
    PnoFile file;
    if (const std::int32_t status = file.Open(path.c_str()); status != pno::Ok) {
        *error = path + ": not a panorama file (status " + std::to_string(status) + ")";
        return nullptr;
    }
    const PnoImageInfo info = file.imageInfo();
    int missing = 0;
    const cv::Mat3b picture = readPicture(file, info, &missing);
    if (2 * missing > int(info.columns[kLevel] * info.rows[kLevel])) {
        *error = path + ": " + std::to_string(missing) + " of its picture tiles cannot be read";
        return nullptr;
    }
    const PolarExtent extent{info.output_min_y, info.output_max_y, info.valid_min_y, info.valid_max_y};
    auto panorama = buildPanorama(info.identity, picture, extent, readRange(file), error);
    if (panorama)
        panorama->path = path;
    else
        *error = path + ": " + *error;
    return panorama;
}

} // namespace

std::unique_ptr<Panorama> loadPanorama(const std::string& path, std::string* error)
{
    std::string message;
    std::unique_ptr<Panorama> panorama;
    try {
        panorama = load(path, &message);
    } catch (const std::exception& exception) {
        message = path + ": " + exception.what();
        panorama = nullptr;
    }
    if (!panorama && error) *error = message;
    return panorama;
}

} // namespace nexomap
