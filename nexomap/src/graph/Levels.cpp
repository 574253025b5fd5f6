// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/Levels.h"

#include "nexomap/src/graph/ScaleRecovery.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace nexomap {

std::optional<LevelPoint> levelPoint(const Eigen::Vector3d& ray_0, const Eigen::Vector3d& ray_1,
                                     const Eigen::Matrix3d& R, const Eigen::Vector3d& t, double tilt)
{
    constexpr double kBearingNoise = 0.001; // radians, of features and what the pose leaves open
    constexpr double kVaguest = 0.06;       // of a depth, relative
    const Eigen::Vector2d depths = rayDepths(ray_0, ray_1, R, t);
    if (!(depths[0] > 0.0)) return std::nullopt;
    const double spread = kBearingNoise / std::max(1e-6, ray_0.cross(R * ray_1).norm());
    if (spread > kVaguest) return std::nullopt;
    // Of the two verticals, neither is better.
    const double height = 0.5 * (depths[0] * ray_0.z() + depths[1] * ray_1.z()),
                 away = 0.5 * (depths[0] * ray_0.head<2>().norm() + depths[1] * ray_1.head<2>().norm());
    return LevelPoint{height, spread + tilt * away / std::max(1e-3, std::abs(height))};
}

double nearlySizeOf(const std::vector<LevelPoint>& points)
{
    std::vector<double> sizes;
    for (const LevelPoint& p : points)
        if (std::isfinite(p.height)) sizes.push_back(std::abs(p.height));
    if (sizes.empty()) return 1e-9;
    const auto nearly = sizes.begin() + std::ptrdiff_t(sizes.size() * 19 / 20);
    std::nth_element(sizes.begin(), nearly, sizes.end());
    return std::max(1e-9, *nearly);
}

Levels::Levels(const std::vector<LevelPoint>& points)
    : m_unit(nearlySizeOf(points) / kSize)
{
    add(points, 1.0);
}

Levels Levels::without(const std::vector<LevelPoint>& points) const
{
    Levels rest = *this;
    rest.add(points, -1.0);
    return rest;
}

double Levels::at(double height, double deviation) const
{
    const double bin = (height + kSpan) * kPerUnit;
    if (!(bin >= 0.0 && bin < kBins)) return 0.0;
    int width = 0;
    while (width + 1 < kWidths && kNarrowest + deviation > widthOf(width) * std::sqrt(kWider))
        ++width;
    const Bins& sums = m_sums[std::size_t(width)];
    const double between = std::clamp(bin - 0.5, 0.0, double(kBins - 1)); // of two bins' middles
    const std::size_t low = std::size_t(between), high = std::min(low + 1, sums.size() - 1);
    const double sum = sums[low] + (between - double(low)) * (sums[high] - sums[low]);
    return std::max(0.0, sum) * kPerUnit / std::max(1.0, m_total);
}

double Levels::logLikelihood(double height, double deviation) const
{
    constexpr double kAnywhere = 0.2, kAnywhereDensity = 0.02;
    return std::log((1.0 - kAnywhere) * at(height, deviation) + kAnywhere * kAnywhereDensity);
}

double Levels::widthOf(int width)
{
    static const std::array<double, std::size_t(kWidths)> widths = [] {
        std::array<double, std::size_t(kWidths)> result{};
        for (int w = 0; w < kWidths; ++w)
            result[std::size_t(w)] = kNarrowest * std::pow(kWider, w);
        return result;
    }();
    return widths[std::size_t(width)];
}

void Levels::add(const std::vector<LevelPoint>& points, double weight)
{
    std::map<int, double> counts;
    for (const LevelPoint& p : points) {
        const double bin = (p.height / m_unit + kSpan) * kPerUnit;
        if (bin >= 0.0 && bin < kBins) counts[int(bin)] += weight;
    }
    m_total += weight * double(points.size());
    for (int w = 0; w < kWidths; ++w) {
        const double sigma = widthOf(w) * kPerUnit;
        const int reach = int(std::ceil(3.0 * sigma));
        std::vector<double> kernel;
        double sum = 0.0;
        for (int d = -reach; d <= reach; ++d)
            sum += kernel.emplace_back(std::exp(-0.5 * d * d / (sigma * sigma)));
        Bins& sums = m_sums[std::size_t(w)];
        for (const auto& [bin, count] : counts)
            for (int j = std::max(0, bin - reach); j <= std::min(kBins - 1, bin + reach); ++j)
                sums[std::size_t(j)] += count / sum * kernel[std::size_t(j - bin + reach)];
    }
}

} // namespace nexomap
