// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/RangePoints.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace pnomaker {
namespace {

struct Direction
{
    double azimuth; ///< (-pi, pi]
    double polar;
};

/// Direction `index` of `count` on the Fibonacci lattice, which covers the sphere evenly (Gonzalez, Math.
/// Geosci. 42, 2010).
Direction latticeDirection(int index, int count)
{
    const double golden = pno::kPi * (3 - std::sqrt(5.0));
    return {std::remainder(index * golden, 2 * pno::kPi), std::acos(1 - (2 * index + 1.0) / count)};
}

/// Index of the pixel that a direction falls into.
std::size_t pixelAt(const Direction& direction, int width, int height)
{
    const int x = static_cast<int>((pno::kPi - direction.azimuth) / (2 * pno::kPi) * width);
    const int y = static_cast<int>(direction.polar / pno::kPi * height);
    return static_cast<std::size_t>(std::clamp(y, 0, height - 1)) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(std::clamp(x, 0, width - 1));
}

std::size_t countReturns(const RangePicture& range, int directions)
{
    std::size_t returns = 0;
    for (int i = 0; i < directions; ++i)
        returns += range.values[pixelAt(latticeDirection(i, directions), range.width, range.height)] != 0;
    return returns;
}

} // namespace

std::vector<CloudPoint> pointsFromRange(const RangePicture& range, const SpherePicture& picture)
{
    // More directions where only a part of the sphere has returns, so that the points are used up.
    const std::size_t returns = std::max<std::size_t>(1, countReturns(range, pno::kMaxPoints));
    const int directions =
        static_cast<int>(std::min<std::size_t>(64, pno::kMaxPoints / returns + 1) * pno::kMaxPoints);
    std::vector<CloudPoint> points;
    for (int i = 0; i < directions; ++i) {
        const Direction direction = latticeDirection(i, directions);
        const double distance_m = range.values[pixelAt(direction, range.width, range.height)] * range.unit_m;
        if (distance_m == 0) continue;
        const std::uint8_t* colour = &picture.rgb[3 * pixelAt(direction, picture.width, picture.height)];
        const double flat = distance_m * std::sin(direction.polar);
        points.push_back({static_cast<float>(flat * std::cos(direction.azimuth)),
                          static_cast<float>(flat * std::sin(direction.azimuth)),
                          static_cast<float>(distance_m * std::cos(direction.polar)), colour[0], colour[1],
                          colour[2]});
    }
    return thinned(points);
}

std::vector<CloudPoint> thinned(const std::vector<CloudPoint>& points)
{
    std::vector<CloudPoint> finite;
    for (const CloudPoint& point : points)
        if (std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z))
            finite.push_back(point);
    const std::size_t limit = pno::kMaxPoints;
    if (finite.size() <= limit) return finite;
    std::vector<CloudPoint> kept;
    for (std::size_t i = 0; i < limit; ++i)
        kept.push_back(finite[i * finite.size() / limit]);
    return kept;
}

std::vector<std::uint8_t> pointPayload(const std::vector<CloudPoint>& points)
{
    constexpr std::size_t kMinimum = pno::kPointBlockMinBytes - pno::kPointBlockHeaderBytes;
    std::vector<std::uint8_t> bytes(std::max(kMinimum, points.size() * pno::kPointBytes));
    std::uint8_t* at = bytes.data();
    for (const CloudPoint& point : points) {
        const float position[3] = {point.x, point.y, point.z};
        const std::uint8_t colour[4] = {point.red, point.green, point.blue, 255};
        std::memcpy(at, position, 12);
        std::memcpy(at + 12, colour, 4);
        at += pno::kPointBytes;
    }
    return bytes;
}

} // namespace pnomaker
