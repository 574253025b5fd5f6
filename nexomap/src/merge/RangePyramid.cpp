// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/RangePyramid.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nexomap {
namespace {

constexpr int kCoarsestWidth = 512;
constexpr float kSameSurface = 0.04f; // ranges within this share of each other may be one surface

/// Mean of the returns of the larger surface among four; 0 when fewer than two agree.
float meanOfFour(std::array<float, 4> q)
{
    std::sort(q.begin(), q.end(), std::greater<float>());
    int count = 0;
    while (count < 4 && q[std::size_t(count)] > 0.f)
        ++count;
    if (count == 0) return 0.f;
    int best_from = 0, best_to = 0;
    for (int from = 0; from < count; ++from) {
        int to = from;
        while (to < count && q[std::size_t(from)] - q[std::size_t(to)] <= kSameSurface * q[std::size_t(from)])
            ++to;
        if (to - from > best_to - best_from) best_from = from, best_to = to;
    }
    if (best_to - best_from < std::min(2, count)) return 0.f;
    float sum = 0.f;
    for (int k = best_from; k < best_to; ++k)
        sum += q[std::size_t(k)];
    return sum / float(best_to - best_from);
}

cv::Mat1f halved(const cv::Mat1f& fine)
{
    cv::Mat1f coarse(fine.rows / 2, fine.cols / 2);
    cv::parallel_for_(cv::Range(0, coarse.rows), [&](const cv::Range& range) {
        for (int y = range.start; y < range.end; ++y) {
            const float *upper = fine[2 * y], *lower = fine[2 * y + 1];
            for (int x = 0; x < coarse.cols; ++x, upper += 2, lower += 2) {
                const float most = std::max(std::max(upper[0], upper[1]), std::max(lower[0], lower[1]));
                const float least = std::min(std::min(upper[0], upper[1]), std::min(lower[0], lower[1]));
                coarse(y, x) = most - least <= kSameSurface * most
                                   ? 0.25f * (upper[0] + upper[1] + lower[0] + lower[1])
                                   : meanOfFour({upper[0], upper[1], lower[0], lower[1]});
            }
        }
    });
    return coarse;
}

/// Whether the picture was made from one of half its size: then its finest level says nothing new.
bool isEnlarged(const cv::Mat1w& steps)
{
    for (int y = 0; y + 1 < steps.rows; y += 2)
        for (int x = 0; x + 1 < steps.cols; x += 2) {
            const std::uint16_t v = steps(y, x);
            if (steps(y, x + 1) != v || steps(y + 1, x) != v || steps(y + 1, x + 1) != v) return false;
        }
    return true;
}

/// From the second differences of neighbours, which are 0 on planes.
double noiseOf(const cv::Mat1f& nearness)
{
    std::vector<float> bends;
    for (int y = nearness.rows / 8; y < nearness.rows * 7 / 8; y += std::max(1, nearness.rows / 128))
        for (int x = 1; x + 1 < nearness.cols; x += std::max(2, nearness.cols / 512)) {
            const float left = nearness(y, x - 1), q = nearness(y, x), right = nearness(y, x + 1);
            const float slack = kSameSurface * q;
            if (!(left > 0.f) || !(q > 0.f) || !(right > 0.f)) continue;
            if (std::abs(left - q) > slack || std::abs(right - q) > slack) continue;
            bends.push_back(std::abs(left - 2.f * q + right) / (q * q));
        }
    if (bends.size() < 100) return 0.004;
    const auto middle = bends.begin() + std::ptrdiff_t(bends.size() / 2);
    std::nth_element(bends.begin(), middle, bends.end());
    return std::clamp(double(*middle) / 0.6745 / std::sqrt(6.0), 0.0005, 0.03);
}

} // namespace

RangePyramid::RangePyramid(const RangePicture& picture, double farthest_m)
{
    const auto addLevel = [&](cv::Mat1f nearness) {
        Level level{nearness, 0.0, kPi / nearness.rows};
        level.noise_m = noiseOf(nearness);
        m_levels.push_back(std::move(level));
    };
    const bool enlarged = picture.steps.cols >= 2 * kCoarsestWidth && isEnlarged(picture.steps);
    const int every = enlarged ? 2 : 1;
    cv::Mat1f finest(picture.steps.rows / every, picture.steps.cols / every);
    const float nearest = 1.f / 0.05f, least = float(1.0 / farthest_m);
    for (int y = 0; y < finest.rows; ++y)
        for (int x = 0; x < finest.cols; ++x) {
            const std::uint16_t steps = picture.steps(y * every, x * every);
            const float q = steps ? 1.f / (float(steps) * picture.unit_m) : 0.f;
            finest(y, x) = q >= least && q <= nearest ? q : 0.f;
        }
    addLevel(finest);
    while (m_levels.back().columns() >= 2 * kCoarsestWidth && m_levels.back().rows() % 2 == 0)
        addLevel(halved(m_levels.back().nearness));
}

RangePicture rangePictureOf(const RangeMap& map)
{
    RangePicture picture;
    picture.unit_m = 0.001f;
    picture.steps.create(map.range_m.size());
    for (int y = 0; y < map.range_m.rows; ++y)
        for (int x = 0; x < map.range_m.cols; ++x) {
            const float steps = map.range_m(y, x) * 1000.f + 0.5f;
            picture.steps(y, x) = steps < 65535.f && !map.edge(y, x) ? std::uint16_t(steps) : 0;
        }
    return picture;
}

} // namespace nexomap
