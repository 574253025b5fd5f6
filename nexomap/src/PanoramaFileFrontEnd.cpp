// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The front end that reads panorama files.

#include "linking/pno/PnoFile.h"
#include "nexomap/src/FrontEnd.h"
#include "nexomap/src/pair/CoarseMatching.h"
#include "nexomap/src/pair/ScanAlignment.h"
#include "nexomap/src/RangeReading.h"

#include <opencv2/imgcodecs.hpp>

namespace nexomap {
namespace {

std::optional<std::string> identify(const std::string& path, std::string* error)
{
    const auto file = std::make_unique<PnoFile>(); // large
    if (const std::int32_t status = file->Open(path.c_str()); status != pno::Ok) {
        *error = "not a panorama file (status " + std::to_string(status) + ")";
        return std::nullopt;
    }
    return std::string(file->imageInfo().identity);
}

/// Level 8 of the pyramid, 4096 pixels wide; tiles that cannot be read stay black.
ColourPicture colours(const Panorama& panorama)
{
    constexpr int kLevel = 8, kTile = int(pno::kTilePixels);
    const auto file = std::make_unique<PnoFile>();
    if (file->Open(panorama.path.c_str()) != pno::Ok) return {};
    const PnoImageInfo info = file->imageInfo();
    const int columns = int(info.columns[kLevel]), rows = int(info.rows[kLevel]);
    cv::Mat3b canvas(rows * kTile, columns * kTile, cv::Vec3b(0, 0, 0));
    cv::parallel_for_(cv::Range(0, columns * rows), [&](const cv::Range& range) {
        for (int k = range.start; k < range.end; ++k) {
            std::uint32_t size = 0;
            const PnoBytes bytes = file->ReadTile(kLevel, k % columns, k / columns, &size);
            if (!bytes || size == 0) continue;
            cv::Mat tile;
            try {
                tile = cv::imdecode(cv::Mat(1, int(size), CV_8U, bytes.get()), cv::IMREAD_COLOR);
            } catch (const cv::Exception&) { // damaged: stays black
            }
            if (tile.cols != kTile || tile.rows != kTile) continue;
            // Tile columns run from the picture's right edge to its left.
            tile.copyTo(
                canvas(cv::Rect((columns - 1 - k % columns) * kTile, k / columns * kTile, kTile, kTile)));
        }
    });
    const int width = std::min(int(info.widths[kLevel]), canvas.cols);
    const int height = std::min(int(info.heights[kLevel]), canvas.rows);
    return {canvas(cv::Rect(canvas.cols - width, 0, width, height)).clone(), info.output_min_y,
            info.output_max_y};
}

} // namespace

FrontEnd panoramaFileFrontEnd()
{
    return {identify,
            [](const std::string& path, std::string* error) {
                return std::shared_ptr<const Panorama>(loadPanorama(path, error));
            },
            matchPair,
            colours,
            readRanges,
            alignScans,
            likeness};
}

} // namespace nexomap
