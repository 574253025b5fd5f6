// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PlanPicture.h"

#include "nexomap/src/merge/WallDrawing.h"

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <limits>

namespace nexomap {
namespace {

/// A bar of a round length with ticks at its ends and its length in metres, black.
void drawScaleBar(cv::Mat& picture, const PlanRaster& raster)
{
    double length_m = 1.0;
    for (const double longer : {2.0, 5.0, 10.0, 20.0, 50.0, 100.0, 200.0, 500.0, 1000.0})
        if (longer < 0.3 * raster.width * raster.pixel_m) length_m = longer;
    const cv::Scalar black = cv::Scalar::all(0);
    const int long_px = int(std::lround(length_m / raster.pixel_m));
    const int left = std::min(24, raster.width / 10), y = raster.legend_top + 24;
    cv::rectangle(picture, cv::Rect(left, y - 1, long_px, 2), black, cv::FILLED);
    for (const int x : {left, left + long_px - 2})
        cv::rectangle(picture, cv::Rect(x, y - 8, 2, 16), black, cv::FILLED);
    cv::putText(picture, std::to_string(int(length_m)) + " m", {left + long_px + 10, y + 7},
                cv::FONT_HERSHEY_SIMPLEX, 0.6, black, 1, cv::LINE_8);
}

/// White pixels with most of their neighbours coloured take the neighbours' mean.
void fillHoles(cv::Mat3b& picture, const cv::Mat1f& highest)
{
    const float none = -std::numeric_limits<float>::infinity();
    for (int y = 1; y + 1 < picture.rows; ++y)
        for (int x = 1; x + 1 < picture.cols; ++x) {
            if (highest(y, x) != none) continue;
            int count = 0;
            cv::Vec3i sum(0, 0, 0);
            for (int v = y - 1; v <= y + 1; ++v)
                for (int u = x - 1; u <= x + 1; ++u)
                    if (highest(v, u) != none) ++count, sum += cv::Vec3i(picture(v, u));
            if (count >= 5) picture(y, x) = sum / count;
        }
}

} // namespace

cv::Mat1b wallPlan(const CloudBlocks& cloud, const PlanRaster& raster,
                   const std::vector<PlanStation>& stations)
{
    cv::Mat1b plan =
        drawWalls(wallEvidence(HeightColumns(cloud, raster, stations), raster), raster, stations);
    drawScaleBar(plan, raster);
    return plan;
}

cv::Mat3b topView(const CloudBlocks& cloud, const PlanRaster& raster)
{
    cv::Mat3b picture(raster.height, raster.width, cv::Vec3b(255, 255, 255));
    cv::Mat1f highest(raster.height, raster.width, -std::numeric_limits<float>::infinity());
    const Eigen::Vector3d up = raster.up();
    cloud.forEachBlock([&](const CloudPoint* points, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k) {
            const CloudPoint& point = points[k];
            const Eigen::Vector3d world = worldOf(point, cloud.grid());
            const Eigen::Vector2i pixel = raster.pixelOf(world);
            if (!raster.has(pixel)) continue;
            float& top = highest(pixel.y(), pixel.x());
            const float height = float(up.dot(world));
            if (height <= top) continue;
            top = height;
            picture(pixel.y(), pixel.x()) = {point.blue, point.green, point.red};
        }
    });
    fillHoles(picture, highest);
    drawScaleBar(picture, raster);
    return picture;
}

} // namespace nexomap
