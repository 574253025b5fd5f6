// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "benchmarks/cloud/SampleCloud.h"

#include <algorithm>
#include <random>
#include <vector>

namespace {

constexpr unsigned kWidth = 10000, kHeight = 5000, kTop = 280; // cells of 1 cm

struct Point
{
    std::uint16_t x, y, z;
};

/// Bits of the coordinates in turn: Morton's curve.
std::uint64_t alongCurve(const Point& point)
{
    std::uint64_t key = 0;
    for (unsigned bit = 0; bit < 16; ++bit) {
        key |= std::uint64_t(point.x >> bit & 1) << (3 * bit) |
               std::uint64_t(point.y >> bit & 1) << (3 * bit + 1) |
               std::uint64_t(point.z >> bit & 1) << (3 * bit + 2);
    }
    return key;
}

} // namespace

cloud::PointCloud sampleCloud(std::size_t points, PointOrder order)
{
    std::mt19937 random(1);
    std::vector<Point> made;
    made.reserve(points);
    while (made.size() < points) {
        const auto below = [&](unsigned limit) { return static_cast<std::uint16_t>(random() % limit); };
        switch (random() % 3) {
        case 0: // floor
            made.push_back({below(kWidth), below(kHeight), static_cast<std::uint16_t>(4 + below(3))});
            break;
        case 1: // a wall every four metres, each way
            made.push_back(
                {static_cast<std::uint16_t>(below(25) * 400 + below(3)), below(kHeight), below(kTop)});
            break;
        default:
            made.push_back(
                {below(kWidth), static_cast<std::uint16_t>(below(12) * 400 + below(3)), below(kTop)});
        }
    }
    if (order == PointOrder::AlongACurve) {
        std::sort(made.begin(), made.end(),
                  [](const Point& a, const Point& b) { return alongCurve(a) < alongCurve(b); });
    }

    cloud::Header header;
    header.setField(12, 1);
    header.setField(20, kWidth);
    header.setField(24, kHeight);
    header.setField(32, 1);
    header.setField(36, 1);
    header.setPoints(static_cast<std::uint32_t>(points));
    cloud::PointCloud cloud;
    if (!cloud.allocate(header)) return cloud;
    for (std::size_t i = 0; i < points; ++i) {
        const std::uint16_t at[] = {made[i].x, made[i].y, made[i].z};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            cloud.plane(2 * axis)[i] = static_cast<std::uint8_t>(at[axis]);
            cloud.plane(2 * axis + 1)[i] = static_cast<std::uint8_t>(at[axis] >> 8);
        }
        for (std::size_t plane = 6; plane < cloud::kPlanes; ++plane)
            cloud.plane(plane)[i] = static_cast<std::uint8_t>(64 + random() % 192);
    }
    return cloud;
}
