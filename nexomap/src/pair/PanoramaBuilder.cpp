// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// One panorama of the library, from decoded arrays.
#include "nexomap/src/pair/PanoramaBuilder.h"

#include "nexomap/src/pair/BuildingDirection.h"
#include "nexomap/src/pair/FaceFeatures.h"
#include "nexomap/src/pair/RangePlacement.h"
#include "nexomap/src/pair/RangeReduction.h"
#include "nexomap/src/pair/Sphere.h"
#include "nexomap/src/pair/Vertical.h"

#include <opencv2/imgproc.hpp>

#include <cstdio>

namespace nexomap {
namespace {

cv::Mat3b makePreview(const cv::Mat3b& equirect, const PolarExtent& extent)
{
    cv::Mat3b preview(512, 1024, cv::Vec3b(0, 0, 0));
    const int top = std::clamp(int(std::lround(extent.min / kPi * 512)), 0, 511);
    const int bottom = std::clamp(int(std::lround(extent.max / kPi * 512)), top + 1, 512);
    cv::Mat3b part;
    cv::resize(equirect, part, cv::Size(1024, bottom - top), 0, 0, cv::INTER_AREA);
    part.copyTo(preview.rowRange(top, bottom));
    return preview;
}

} // namespace

std::unique_ptr<Panorama> buildPanorama(const std::string& id, const cv::Mat3b& equirect,
                                        const PolarExtent& extent, RangeMap range, std::string* error)
{
    const auto refuse = [error](const char* reason) -> std::unique_ptr<Panorama> {
        if (error) *error = reason;
        return nullptr;
    };
    if (equirect.cols < 256 || equirect.rows < 64) return refuse("the picture is too small to link");
    if (!(extent.min >= -1e-6) || !(extent.max <= kPi + 1e-3) || !(extent.max - extent.min > 0.1))
        return refuse("the picture's polar extent is impossible");
    if (!range.empty() && range.range_m.size() != cv::Size(kRangeWidth, kRangeHeight))
        return refuse("the range map has a wrong size");

    auto panorama = std::make_unique<Panorama>();
    panorama->id = id;
    cv::Mat1b gray;
    cv::cvtColor(equirect, gray, cv::COLOR_BGR2GRAY);
    panorama->walls_azimuth = buildingDirection(gray, extent);
    panorama->features = extractFeatures(gray, extent, panorama->walls_azimuth.value_or(0.0));
    panorama->preview = makePreview(equirect, extent);
    panorama->range = std::move(range);
    if (const double turn = rangeTurnedBy(panorama->preview, panorama->range); turn != 0.0) {
        // Which of the two is right cannot be known: the picture alone is what the visitor sees.
        char text[96];
        std::snprintf(text, sizeof text, "lidar not used: it is turned by %.1f degrees against the picture",
                      std::abs(turn) / kDegree);
        panorama->remark = text;
        panorama->range = {};
    }
    if (!panorama->range.empty()) {
        for (std::size_t i = 0; i < panorama->features.size(); ++i)
            panorama->features.ranges_m[i] =
                surfaceRange(panorama->range, panorama->features.bearings[i].cast<double>());
        panorama->camera_height_m = cameraHeight(panorama->range, uprightOf(panorama->range));
    }
    return panorama;
}

} // namespace nexomap
