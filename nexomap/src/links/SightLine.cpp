// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/links/SightLine.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {
constexpr double kCone = 2.0 * kDegree;
constexpr double kSlack_m = 0.10;
constexpr double kUsualHeight_m = 1.5;
} // namespace

double rangeAlong(const RangeMap& map, const Eigen::Vector3d& direction)
{
    if (map.empty()) return 0.0;
    const EquirectGrid grid{map.size().width, map.size().height};
    const Eigen::Vector2d pixel = grid.pixel(direction);
    const int x = std::clamp(int(pixel.x()), 0, grid.width - 1);
    const int y = std::clamp(int(pixel.y()), 0, grid.height - 1);
    return map.cell(y, x);
}

bool isOpen(const RangeMap& map, const Eigen::Vector3d& point)
{
    const double distance = point.norm();
    if (distance < kSlack_m) return true;
    const Eigen::Vector3d ahead = point / distance;
    const Eigen::Vector3d side = ahead.unitOrthogonal(), over = ahead.cross(side);
    int samples = 0, blocked = 0;
    const auto look = [&](const Eigen::Vector3d& direction) {
        const double range = rangeAlong(map, direction);
        ++samples;
        blocked += range > 0.0 && range < distance - kSlack_m;
    };
    look(ahead);
    for (int ring = 1; ring <= 3; ++ring) {
        const double radius = std::tan(kCone * ring / 3.0);
        for (int k = 0; k < 8 * ring; ++k) {
            const double angle = 2.0 * kPi * k / (8 * ring);
            look(ahead + radius * (std::cos(angle) * side + std::sin(angle) * over));
        }
    }
    return 2 * blocked <= samples;
}

bool seeEachOther(const Panorama& panorama_0, const Pose& world_from_0, const Panorama& panorama_1,
                  const Pose& world_from_1, const Eigen::Vector3d& up)
{
    if (!panorama_0.metric() || !panorama_1.metric()) return false;
    const Pose pano0_from_world = world_from_0.inverse(), pano1_from_world = world_from_1.inverse();
    const auto open = [&](double share_0, double share_1) {
        return isOpen(panorama_0.range, pano0_from_world * (world_from_1.t - share_1 * up)) &&
               isOpen(panorama_1.range, pano1_from_world * (world_from_0.t - share_0 * up));
    };
    return open(0.0, 0.0) || open(0.5 * heightOf(&panorama_0), 0.5 * heightOf(&panorama_1));
}

double heightOf(const Panorama* panorama)
{
    return panorama && panorama->camera_height_m > 0.0 ? panorama->camera_height_m : kUsualHeight_m;
}

} // namespace nexomap
