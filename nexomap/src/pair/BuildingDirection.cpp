// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which way the walls of a building stand, from one picture of it.
#include "nexomap/src/pair/BuildingDirection.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace nexomap {
namespace {

constexpr int kWidth = 2048;           // pixels; an edge's direction needs no more
constexpr int kBins = 360;             // of a quarter turn
constexpr double kLeastContrast = 6.0; // grey steps a pixel; less is noise
constexpr double kMostContrast = 40.0; // a black line counts no more than a skirting board
constexpr double kUprightEdge = 0.25;  // sine of an edge's slope from which on it may stand upright
constexpr double kStandsOut = 2.0;     // the peak's votes over the mean: about 1 for noise, 2.1 to 8 indoors
constexpr double kFewestEdges = 0.002; // of the pixels: a few spots are no building; bare rooms have 0.01

using Votes = std::array<double, kBins>;

Votes smoothed(const Votes& votes, double sigma_bins)
{
    Votes result{};
    const int reach = int(std::ceil(3.0 * sigma_bins));
    for (int i = 0; i < kBins; ++i)
        for (int k = -reach; k <= reach; ++k)
            result[std::size_t(i)] += votes[std::size_t((i + k + kBins) % kBins)] *
                                      std::exp(-0.5 * k * k / (sigma_bins * sigma_bins));
    return result;
}

/// @param edges  written: pixels that voted
Votes castVotes(const cv::Mat1b& gray, const PolarExtent& extent, int* edges)
{
    const EquirectGrid grid{gray.cols, gray.rows, extent.min, extent.max};
    const double column_step = 2.0 * kPi / grid.width,
                 row_step = (grid.polar_max - grid.polar_min) / grid.height;
    cv::Mat1f along, down;
    cv::Sobel(gray, along, CV_32F, 1, 0, 3, 0.125);
    cv::Sobel(gray, down, CV_32F, 0, 1, 3, 0.125);
    Votes votes{};
    for (int y = 1; y + 1 < gray.rows; ++y) {
        const double polar = grid.polar_min + row_step * (y + 0.5);
        if (polar < std::max(extent.valid_min, 0.1) || polar > std::min(extent.valid_max, 2.6)) continue;
        for (int x = 1; x + 1 < gray.cols; ++x) {
            const double contrast = std::hypot(along(y, x), down(y, x));
            if (contrast < kLeastContrast) continue;
            // The normal of the great circle through an edge is the gradient's direction.
            const double azimuth = kPi - column_step * (x + 0.5);
            const double step_left = -along(y, x) / column_step / std::sin(polar),
                         step_down = down(y, x) / row_step;
            const Eigen::Vector3d left(-std::sin(azimuth), std::cos(azimuth), 0.0);
            const Eigen::Vector3d below(std::cos(polar) * std::cos(azimuth),
                                        std::cos(polar) * std::sin(azimuth), -std::sin(polar));
            const Eigen::Vector3d normal = (left * step_left + below * step_down).normalized();
            if (std::abs(normal.z()) < kUprightEdge) continue;
            const double level = normal.head<2>().norm(); // 0: at the horizon, where an edge tells nothing
            ++*edges;
            double quarter = std::atan2(-normal.x(), normal.y()) / (0.5 * kPi);
            quarter -= std::floor(quarter);
            votes[std::size_t(std::min(int(quarter * kBins), kBins - 1))] +=
                std::min(contrast, kMostContrast) * level * level * std::sin(polar);
        }
    }
    return votes;
}

} // namespace

std::optional<double> buildingDirection(const cv::Mat1b& gray, const PolarExtent& extent)
{
    cv::Mat1b small = gray;
    if (gray.cols > kWidth)
        cv::resize(gray, small,
                   {kWidth, std::max(1, int(std::lround(double(gray.rows) * kWidth / gray.cols)))}, 0, 0,
                   cv::INTER_AREA);
    int edges = 0;
    const Votes votes = smoothed(castVotes(small, extent, &edges), 1.0 * kBins / 90.0);
    if (edges < kFewestEdges * double(small.total())) return std::nullopt;
    double sum = 0.0;
    for (const double vote : votes)
        sum += vote;
    const auto best = std::max_element(votes.begin(), votes.end());
    if (!(sum > 0.0) || *best * kBins < kStandsOut * sum) return std::nullopt;
    return (double(best - votes.begin()) + 0.5) / kBins * 0.5 * kPi;
}

} // namespace nexomap
