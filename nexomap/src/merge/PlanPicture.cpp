// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PlanPicture.h"

#include <opencv2/imgproc.hpp>

#include <bitset>
#include <cmath>

namespace nexomap {
namespace {
constexpr double kSliceFrom_m = 0.9, kSliceBin_m = 0.05;
constexpr int kSliceBins = 22;
constexpr int kWallBins = 11; // of them: furniture is lower, lintels are thinner
} // namespace

cv::Mat1b wallPlan(const CloudBlocks& cloud, const PlanRaster& raster,
                   const std::vector<PlanStation>& stations)
{
    std::vector<double> floors;
    for (const PlanStation& station : stations)
        floors.push_back(station.position.z() - (station.height_m > 0.0 ? station.height_m : 1.5));
    std::nth_element(floors.begin(), floors.begin() + std::ptrdiff_t(floors.size() / 2), floors.end());
    const double floor_m = floors[floors.size() / 2];
    cv::Mat1i filled(raster.height, raster.width, 0);
    cloud.forEachBlock([&](const CloudPoint* points, std::size_t point_count) {
        for (std::size_t k = 0; k < point_count; ++k) {
            const Eigen::Vector3d world = worldOf(points[k], cloud.grid());
            const int bin = int(std::floor((world.z() - floor_m - kSliceFrom_m) / kSliceBin_m));
            const Eigen::Vector2i pixel = raster.pixelOf(world);
            const bool inside =
                pixel.minCoeff() >= 0 && pixel.x() < raster.width && pixel.y() < raster.height;
            if (inside && bin >= 0 && bin < kSliceBins) filled(pixel.y(), pixel.x()) |= 1 << bin;
        }
    });
    cv::Mat1b plan(raster.height, raster.width, std::uint8_t(255));
    // A wall's points spread over neighbouring pixels: together they fill the heights.
    for (int y = 1; y + 1 < raster.height; ++y)
        for (int x = 1; x + 1 < raster.width; ++x) {
            if (!filled(y, x)) continue;
            const int about =
                filled(y, x) | filled(y, x - 1) | filled(y, x + 1) | filled(y - 1, x) | filled(y + 1, x);
            if (std::bitset<32>(unsigned(about)).count() >= kWallBins) plan(y, x) = 0;
        }
    // Closes gaps of a pixel and takes away specks: black is 0, so the operations change places.
    const cv::Mat square = cv::getStructuringElement(cv::MORPH_RECT, {3, 3});
    cv::morphologyEx(plan, plan, cv::MORPH_OPEN, square);
    cv::Mat1i labels, stats;
    cv::Mat1d centres;
    const cv::Mat1b black = plan == 0;
    const int count = cv::connectedComponentsWithStats(black, labels, stats, centres);
    const int speck = int(std::lround(0.2 / raster.pixel_m));
    for (int y = 0; y < plan.rows; ++y)
        for (int x = 0; x < plan.cols; ++x) {
            const int label = labels(y, x);
            if (label > 0 && label < count &&
                std::max(stats(label, cv::CC_STAT_WIDTH), stats(label, cv::CC_STAT_HEIGHT)) < speck)
                plan(y, x) = 255;
        }
    return plan;
}

cv::Mat3b topView(const CloudBlocks& cloud, const PlanRaster& raster)
{
    cv::Mat3b picture(raster.height, raster.width, cv::Vec3b(255, 255, 255));
    cv::Mat1i highest(raster.height, raster.width, -1);
    cloud.forEachBlock([&](const CloudPoint* points, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k) {
            const CloudPoint& point = points[k];
            const Eigen::Vector2i pixel = raster.pixelOf(worldOf(point, cloud.grid()));
            if (!raster.has(pixel)) continue;
            int& top = highest(pixel.y(), pixel.x());
            if (int(point.at[2]) <= top) continue;
            top = point.at[2];
            picture(pixel.y(), pixel.x()) = {point.blue, point.green, point.red};
        }
    });
    return picture;
}

} // namespace nexomap
