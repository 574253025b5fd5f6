// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// From raw range samples to the map that linking works on.
#include "nexomap/src/pair/RangeReduction.h"

#include "nexomap/src/pair/Sphere.h"

#include <Eigen/Dense>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>

namespace nexomap {
namespace {

constexpr float kEdgeShare = 0.08f; ///< jump inside a cell, share of its median

int wrapColumn(int column)
{
    return (column % kRangeWidth + kRangeWidth) % kRangeWidth;
}

} // namespace

float RangeMap::at(const Eigen::Vector3f& bearing) const
{
    if (empty() || !bearing.allFinite()) return 0.f;
    const EquirectGrid grid{size().width, size().height};
    const Eigen::Vector2d pixel = grid.pixel(bearing.cast<double>());
    return cell(std::clamp(int(pixel.y()), 0, grid.height - 1),
                std::clamp(int(pixel.x()), 0, grid.width - 1));
}

void reduceRangeCells(const cv::Mat1w& raw, float unit_m, int cell, cv::Mat1f range_m, cv::Mat1b edge)
{
    std::array<ushort, 64> values;
    for (int y = 0; y < range_m.rows; ++y)
        for (int x = 0; x < range_m.cols; ++x) {
            std::size_t count = 0;
            for (int dy = 0; dy < cell; ++dy) {
                const ushort* row = raw[y * cell + dy] + x * cell;
                for (int dx = 0; dx < cell; ++dx)
                    if (row[dx]) values[count++] = row[dx];
            }
            range_m(y, x) = 0.f;
            edge(y, x) = 0;
            if (!count) continue;
            std::sort(values.begin(), values.begin() + count);
            const float median = 0.5f * (float(values[(count - 1) / 2]) + float(values[count / 2]));
            range_m(y, x) = median * unit_m;
            edge(y, x) = float(values[count - 1] - values[0]) > kEdgeShare * median ? 255 : 0;
        }
}

RangeMap rangeMapFromPicture(const cv::Mat1w& raw, float unit_m)
{
    const int cell = std::clamp(raw.cols / kRangeWidth, 1, 8);
    cv::Mat1w fitted = raw;
    const cv::Size size(kRangeWidth * cell, kRangeHeight * cell);
    if (raw.size() != size) cv::resize(raw, fitted, size, 0, 0, cv::INTER_NEAREST);
    RangeMap map{cv::Mat1f(kRangeHeight, kRangeWidth), cv::Mat1b(kRangeHeight, kRangeWidth), unit_m, nullptr};
    reduceRangeCells(fitted, unit_m, cell, map.range_m, map.edge);
    return map;
}

float surfaceRange(const RangeMap& map, const Eigen::Vector3d& direction)
{
    if (map.empty()) return 0.f;
    const EquirectGrid grid{kRangeWidth, kRangeHeight};
    const Eigen::Vector2d pixel = grid.pixel(direction);
    const int cx = int(pixel.x()), cy = int(pixel.y());
    std::array<Eigen::Vector3d, 25> samples; // offset x, offset y, range
    std::array<double, 25> ranges;
    int count = 0;
    for (int y = std::max(0, cy - 2); y <= std::min(kRangeHeight - 1, cy + 2); ++y)
        for (int dx = -2; dx <= 2; ++dx) {
            const int x = wrapColumn(cx + dx);
            const float range = map.range_m(y, x);
            if (!(range > 0.f) || map.edge(y, x)) continue;
            ranges[count] = range;
            samples[count++] = {cx + dx + 0.5 - pixel.x(), y + 0.5 - pixel.y(), range};
        }
    if (count < 4) return 0.f;
    std::nth_element(ranges.begin(), ranges.begin() + count / 2, ranges.begin() + count);
    const double median = ranges[count / 2];
    Eigen::Matrix3d normal = Eigen::Matrix3d::Zero();
    Eigen::Vector3d right = Eigen::Vector3d::Zero();
    int used = 0;
    for (int i = 0; i < count; ++i) {
        if (std::abs(samples[i].z() - median) > kEdgeShare * median) continue;
        const Eigen::Vector3d row(1.0, samples[i].x(), samples[i].y());
        normal += row * row.transpose();
        right += row * (median / samples[i].z());
        ++used;
    }
    if (used < 4 || 10 * used < 7 * count) return 0.f; // two surfaces in the window
    // Few samples leave the slope to the noise: a weak prior of a surface across the ray.
    normal.diagonal() += Eigen::Vector3d(0.0, 0.5, 0.5);
    const Eigen::Vector3d line = normal.ldlt().solve(right);
    double squares = 0.0;
    for (int i = 0; i < count; ++i) {
        if (std::abs(samples[i].z() - median) > kEdgeShare * median) continue;
        const double fitted = median / (line[0] + line[1] * samples[i].x() + line[2] * samples[i].y());
        squares += (fitted - samples[i].z()) * (fitted - samples[i].z());
    }
    if (std::sqrt(squares / used) > 0.02 + 0.01 * median) return 0.f;
    const double range = median / line[0];
    return std::abs(range - median) < 2.0 * kEdgeShare * median ? float(range) : 0.f;
}

double cameraHeight(const RangeMap& map, const Eigen::Vector3d& up)
{
    if (map.empty()) return 0.0;
    constexpr double kBin_m = 0.02;
    std::array<double, 300> histogram{};
    const EquirectGrid grid{kRangeWidth, kRangeHeight};
    for (int y = kRangeHeight * 11 / 18; y + 6 < kRangeHeight; y += 2)
        for (int x = 0; x < kRangeWidth; x += 4) {
            const float near = map.range_m(y + 6, x), far = map.range_m(y, x);
            if (!(near > 0.f) || !(far > 0.f) || map.edge(y, x)) continue;
            const double height = -far * grid.direction(x + 0.5, y + 0.5).dot(up);
            const double height_near = -near * grid.direction(x + 0.5, y + 6.5).dot(up);
            if (std::abs(height - height_near) > 0.02 + 0.01 * far) continue; // not level
            const int bin = int(height / kBin_m);
            // Weighted by the area that the sample covers on a level surface.
            if (bin >= 10 && bin < int(histogram.size())) histogram[bin] += std::min(25.f, far * far);
        }
    double best = 0.0, total = 0.0;
    int floor_bin = 0;
    for (std::size_t bin = 1; bin + 1 < histogram.size(); ++bin) {
        const double weight = histogram[bin - 1] + histogram[bin] + histogram[bin + 1];
        total += histogram[bin];
        if (weight > best) best = weight, floor_bin = int(bin);
    }
    if (!(best > 0.2 * total) || total <= 0.0) return 0.0;
    double sum = 0.0, moment = 0.0;
    for (int bin = floor_bin - 1; bin <= floor_bin + 1; ++bin) {
        sum += histogram[bin];
        moment += histogram[bin] * (bin + 0.5) * kBin_m;
    }
    return moment / sum;
}

} // namespace nexomap
