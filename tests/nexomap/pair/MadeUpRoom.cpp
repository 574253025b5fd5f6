// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/nexomap/pair/MadeUpRoom.h"

#include "nexomap/src/pair/RangeReduction.h"
#include "nexomap/src/pair/Sphere.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nexomap;

namespace {

std::uint32_t hash(std::uint32_t a, std::uint32_t b, std::uint32_t c)
{
    std::uint32_t h = a * 0x9e3779b1u ^ b * 0x85ebca77u ^ c * 0xc2b2ae3du;
    h = (h ^ (h >> 15)) * 0x2c1b3c6du;
    h = (h ^ (h >> 12)) * 0x297a2d39u;
    return h ^ (h >> 15);
}

float unit(std::uint32_t h)
{
    return float(h >> 8) / float(1 << 24);
}

float noise(double u, double v, std::uint32_t key)
{
    const int x = int(std::floor(u)), y = int(std::floor(v));
    const auto at = [&](int dx, int dy) {
        return unit(hash(std::uint32_t(x + dx), std::uint32_t(y + dy), key));
    };
    const auto ease = [](double f) { return float(f * f * (3.0 - 2.0 * f)); };
    const float fx = ease(u - x), fy = ease(v - y);
    return (at(0, 0) * (1 - fx) + at(1, 0) * fx) * (1 - fy) + (at(0, 1) * (1 - fx) + at(1, 1) * fx) * fy;
}

/// Distance to a box's surface along the ray, from inside or from outside; 0: missed.
double hit(const MadeUpRoom::Box& box, const Eigen::Vector3d& from, const Eigen::Vector3d& ray, bool inside,
           int* side)
{
    double near = -1e30, far = 1e30;
    int near_side = 0, far_side = 0;
    for (int k = 0; k < 3; ++k) {
        double a = (box.low[k] - from[k]) / ray[k], b = (box.high[k] - from[k]) / ray[k];
        int side_a = 2 * k, side_b = 2 * k + 1;
        if (a > b) std::swap(a, b), std::swap(side_a, side_b);
        if (a > near) near = a, near_side = side_a;
        if (b < far) far = b, far_side = side_b;
    }
    *side = inside ? far_side : near_side;
    if (inside) return far;
    return near < far && near > 1e-6 ? near : 0.0;
}

} // namespace

cv::Vec3b paintAt(double u, double v, std::uint32_t key, double blankness)
{
    float grey = 0.5f * noise(u * 3.0, v * 3.0, key) + 0.25f * noise(u * 11.0, v * 11.0, key + 1);
    for (const double size : {0.37, 0.13}) {
        const double a = u / size + 0.3 * v, b = v / size - 0.2 * u;
        const std::uint32_t h = hash(std::uint32_t(int(std::floor(a))), std::uint32_t(int(std::floor(b))),
                                     key + std::uint32_t(100 * size));
        if (h % 3 != 0) continue;
        const double fa = a - std::floor(a), fb = b - std::floor(b);
        if (std::abs(fa - 0.5) < 0.2 + 0.25 * unit(hash(h, 1, 2)) &&
            std::abs(fb - 0.5) < 0.2 + 0.25 * unit(hash(h, 3, 4)))
            grey += 0.9f * (unit(hash(h, 5, 6)) - 0.5f);
    }
    grey = std::clamp(float(0.5 * blankness + (1.0 - blankness) * grey), 0.02f, 0.98f);
    return cv::Vec3b(uchar(255 * grey), uchar(240 * grey), uchar(225 * grey));
}

MadeUpRoom::Shot MadeUpRoom::shoot(const RigidPose& world_from_pano, int width, double noise_m) const
{
    const EquirectGrid grid{width, width / 2};
    Shot shot{cv::Mat3b(grid.height, grid.width), cv::Mat1w(grid.height, grid.width)};
    cv::parallel_for_(cv::Range(0, grid.height), [&](const cv::Range& rows) {
        for (int y = rows.start; y < rows.end; ++y)
            for (int x = 0; x < width; ++x) {
                const Eigen::Vector3d ray = world_from_pano.R * grid.direction(x + 0.5, y + 0.5);
                int side = 0, box_index = 0, candidate = 0;
                double range = hit(walls, world_from_pano.t, ray, true, &side);
                for (std::size_t i = 0; i < furniture.size(); ++i) {
                    const double r = hit(furniture[i], world_from_pano.t, ray, false, &candidate);
                    if (r > 0.0 && r < range) range = r, side = candidate, box_index = int(i) + 1;
                }
                const Eigen::Vector3d point = world_from_pano.t + range * ray;
                const int axis = side / 2;
                shot.picture(y, x) = paintAt(point[(axis + 1) % 3], point[(axis + 2) % 3],
                                             seed * 1000 + std::uint32_t(box_index * 10 + side), blankness);
                double error = 0.0; // the sum of four uniform numbers is near enough to a bell
                for (std::uint32_t k = 0; k < 4; ++k)
                    error += unit(hash(std::uint32_t(x), std::uint32_t(y) + k * 7919,
                                       seed + std::uint32_t(1000 * point.x()))) -
                             0.5;
                shot.range_mm(y, x) = ushort(std::lround((range + noise_m * error / 0.577) * 1000.0));
            }
    });
    return shot;
}

RigidPose standAt(double x, double y, double z, double heading, double lean_x, double lean_y)
{
    return {headingRotation(heading) * rotationFromVector({lean_x, lean_y, 0.0}), {x, y, z}};
}

std::unique_ptr<Panorama> panoramaOf(const std::string& id, const MadeUpRoom::Shot& shot, bool with_range)
{
    std::string error;
    auto panorama = buildPanorama(
        id, shot.picture, {}, with_range ? rangeMapFromPicture(shot.range_mm, 0.001f) : RangeMap{}, &error);
    EXPECT_TRUE(panorama) << error;
    return panorama;
}
