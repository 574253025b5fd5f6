// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/SurfaceSampling.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {
constexpr double kBin_m = 0.02;
constexpr double kBelowCeiling_m = 0.06;
constexpr double kGrazing = 8.0 * kDegree;
} // namespace

double ceilingAbove(const Panorama& panorama, const Pose& pose, const Eigen::Vector3d& up)
{
    const cv::Mat1f& ranges = panorama.range.range_m;
    const EquirectGrid grid{ranges.cols, ranges.rows};
    const Eigen::Vector3d up_in_pano = pose.R.transpose() * up;
    std::vector<double> area(1000, 0.0);
    double all = 0.0;
    for (int y = 0; y < ranges.rows / 2; y += 2)
        for (int x = 0; x < ranges.cols; x += 2) {
            const double range = ranges(y, x);
            if (range <= 0.0) continue;
            const Eigen::Vector3d direction = grid.direction(x + 0.5, y + 0.5);
            const double sine = direction.dot(up_in_pano);
            if (sine < 0.34) continue; // below 20 degrees it is walls
            // Area of a level patch: range squared, its solid angle, over the cosine of incidence.
            const double share = range * range * std::sin(polarOf(direction)) / sine;
            const std::size_t bin = std::size_t(range * sine / kBin_m);
            all += share;
            if (bin < area.size()) area[bin] += share;
        }
    const std::size_t best = std::size_t(std::max_element(area.begin(), area.end()) - area.begin());
    double level = area[best];
    if (best > 0) level += area[best - 1];
    if (best + 1 < area.size()) level += area[best + 1];
    return all > 0.0 && level > 0.3 * all ? (double(best) + 0.5) * kBin_m : 0.0;
}

void forEachSurfacePoint(
    const MergeStation& station,
    const std::function<void(const Eigen::Vector3d&, double, const Eigen::Vector3d&)>& take)
{
    const RangeMap& map = station.panorama->range;
    const int width = map.range_m.cols, height = map.range_m.rows;
    const EquirectGrid grid{width, height};
    const double step = kPi / height;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double range = map.range_m(y, x);
            if (range <= 0.0 || map.edge(y, x)) continue;
            const Eigen::Vector3d direction = grid.direction(x + 0.5, y + 0.5);
            // The slope of the range against the way across tells the angle at which the surface is seen.
            const double left = map.range_m(y, (x + width - 1) % width),
                         right = map.range_m(y, (x + 1) % width);
            const double over = map.range_m(std::max(0, y - 1), x),
                         under = map.range_m(std::min(height - 1, y + 1), x);
            if (left <= 0.0 || right <= 0.0 || over <= 0.0 || under <= 0.0) continue;
            const double across = 2.0 * step * range;
            const double sine = std::max(0.05, std::sin(polarOf(direction)));
            const double slope = std::hypot((right - left) / (across * sine), (under - over) / across);
            if (slope > 1.0 / std::tan(kGrazing)) continue;
            take(station.pose * (range * direction), range, direction);
        }
}

bool isCeiling(const std::vector<MergeStation>& stations, const Eigen::Vector3d& world)
{
    double nearest = 1e300, height = 0.0, ceiling = 0.0;
    for (const MergeStation& station : stations) {
        if (station.ceiling_m <= 0.0) continue;
        const Eigen::Vector3d from = world - station.pose.t;
        const double above = from.dot(station.up);
        const double away2 = from.squaredNorm() - above * above;
        if (away2 >= nearest) continue;
        nearest = away2;
        height = above;
        ceiling = station.ceiling_m;
    }
    return ceiling > 0.0 && height > ceiling - kBelowCeiling_m;
}

} // namespace nexomap
