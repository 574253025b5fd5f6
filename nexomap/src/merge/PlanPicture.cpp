// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PlanPicture.h"

#include <opencv2/imgproc.hpp>

#include <bitset>
#include <cmath>

namespace nexomap {
namespace {
constexpr double kMargin_m = 0.5;
constexpr double kMostPixels = 1e8;
constexpr double kSliceFrom_m = 0.9, kSliceBin_m = 0.05;
constexpr int kSliceBins = 22;
constexpr int kWallBins = 11; // of them: furniture is lower, lintels are thinner
} // namespace

Eigen::Vector2i PlanRaster::pixelOf(const Eigen::Vector3d& world) const
{
    return {int(std::floor((world.x() - left) / pixel_m)), int(std::floor((top - world.y()) / pixel_m))};
}

PlanRaster rasterFor(const Eigen::Vector3d& low, const Eigen::Vector3d& high, double pixel_m)
{
    PlanRaster raster;
    const Eigen::Vector3d size = high - low + Eigen::Vector3d::Constant(2 * kMargin_m);
    raster.pixel_m = std::max(pixel_m, std::sqrt(size.x() * size.y() / kMostPixels));
    raster.left = low.x() - kMargin_m;
    raster.top = high.y() + kMargin_m;
    raster.width = int(std::ceil(size.x() / raster.pixel_m));
    raster.height = int(std::ceil(size.y() / raster.pixel_m));
    return raster;
}

Eigen::Vector3d worldOf(const CloudPoint& point, const CloudGrid& grid)
{
    return Eigen::Vector3d((point.at[0] + 0.5) / grid.stepsPerMetre(),
                           (point.at[1] + 0.5) / grid.stepsPerMetre(),
                           (point.at[2] + 0.5) / grid.stepsPerMetreZ()) -
           grid.originMetres();
}

cv::Mat1b wallPlan(const std::vector<CloudPoint>& points, const CloudGrid& grid, const PlanRaster& raster,
                   double floor_m)
{
    cv::Mat1i filled(raster.height, raster.width, 0);
    for (const CloudPoint& point : points) {
        const Eigen::Vector3d world = worldOf(point, grid);
        const int bin = int(std::floor((world.z() - floor_m - kSliceFrom_m) / kSliceBin_m));
        const Eigen::Vector2i pixel = raster.pixelOf(world);
        const bool inside = pixel.minCoeff() >= 0 && pixel.x() < raster.width && pixel.y() < raster.height;
        if (inside && bin >= 0 && bin < kSliceBins) filled(pixel.y(), pixel.x()) |= 1 << bin;
    }
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

cv::Mat3b topView(const std::vector<CloudPoint>& points, const CloudGrid& grid, const PlanRaster& raster)
{
    cv::Mat3b picture(raster.height, raster.width, cv::Vec3b(255, 255, 255));
    cv::Mat1i highest(raster.height, raster.width, -1);
    for (const CloudPoint& point : points) {
        const Eigen::Vector2i pixel = raster.pixelOf(worldOf(point, grid));
        if (pixel.minCoeff() < 0 || pixel.x() >= raster.width || pixel.y() >= raster.height) continue;
        int& top = highest(pixel.y(), pixel.x());
        if (int(point.at[2]) <= top) continue;
        top = point.at[2];
        picture(pixel.y(), pixel.x()) = {point.blue, point.green, point.red};
    }
    return picture;
}

} // namespace nexomap
