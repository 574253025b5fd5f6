// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Verification of a pose by one range map: a camera sees neither through walls nor past what it should match.
#include "nexomap/src/pair/OneSidedSight.h"

#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace nexomap {
namespace {

constexpr double kStep_m = 0.06;
constexpr double kPlace = 15.0 * kDegree;
constexpr int kFewest = 12;                  // features that make a place worth asking
constexpr double kSpeaks = 0.04;             // share of them that match where the pose is right
constexpr double kSameSide = 30.0 * kDegree; // between the two lines of sight
constexpr double kLikeDistance = 1.5;        // ratio of the two distances

enum class Line
{
    Open,    ///< in front of all that was measured
    Crossed, ///< comes out of a surface
    Unknown  ///< begins, or passes, where the map does not reach
};

/// From a camera to a point of the map's surface, in the map's frame.
Line follow(const RangeMap& map, const Eigen::Vector3d& camera, const Eigen::Vector3d& point)
{
    constexpr double kMargin_m = 0.25; // before the point, where everything is near a surface
    const Eigen::Vector3d way = point - camera;
    const double length = way.norm();
    const int steps = int((length - kMargin_m) / kStep_m);
    Line line = Line::Open;
    bool behind = false; // and since then the surface in front has been the same
    double before = 0.0;
    for (int k = 0; k <= steps; ++k) {
        const Eigen::Vector3d at = camera + way * (k * kStep_m / length);
        const double distance = at.norm();
        if (distance < 0.3) {
            behind = false;
            before = 0.0;
            continue;
        }
        const double measured = map.at((at / distance).cast<float>());
        if (!(measured > 0.0)) {
            line = Line::Unknown;
            behind = false;
            before = 0.0;
            continue;
        }
        const double tolerance = 0.05 + 0.015 * measured, gap = distance - measured;
        // A jump of depth is an edge: what comes from behind it comes past it, not through.
        if (before > 0.0 && std::abs(measured - before) > 2.0 * kStep_m + 0.02 * measured) behind = false;
        before = measured;
        if (gap > tolerance) {
            behind = true;
            line = Line::Unknown;
        } else if (gap < -tolerance && behind) {
            return Line::Crossed;
        }
    }
    return line;
}

using Place = std::pair<int, int>;

Place placeOf(const Eigen::Vector3d& bearing)
{
    const int row = int(polarOf(bearing) / kPlace);
    const double sine = std::max(0.1, std::sin((row + 0.5) * kPlace));
    return {row, int((azimuthOf(bearing) + kPi) * sine / kPlace)};
}

} // namespace

OneSidedSight oneSidedSight(const Panorama& ranged, const RigidPose& pose,
                            const std::vector<Correspondence>& matches)
{
    OneSidedSight sight;
    const Eigen::Vector3d camera = pose.inverse().t;
    std::map<Place, int> matched, expected;
    int crossed = 0, open = 0;
    for (const Correspondence& match : matches) {
        if (!(match.range_1 > 0.0)) continue;
        ++matched[placeOf(match.bearing_1)];
        const Line line = follow(ranged.range, camera, match.point_1());
        ++sight.lines;
        crossed += line == Line::Crossed;
        open += line == Line::Open;
    }
    if (sight.lines > 0) {
        sight.crossed = double(crossed) / sight.lines;
        sight.open = double(open) / sight.lines;
    }
    const Features& f = ranged.features;
    for (std::size_t i = 0; i < f.size(); ++i) {
        const double range = f.ranges_m[i];
        if (!(range > 0.3)) continue;
        const Eigen::Vector3d bearing = f.bearings[i].cast<double>();
        const Eigen::Vector3d point = bearing * range, ray = point - camera;
        const double there = ray.norm();
        if (there < 0.3 || std::max(range, there) > kLikeDistance * std::min(range, there)) continue;
        if (ray.dot(bearing) < std::cos(kSameSide) * there) continue;
        if (follow(ranged.range, camera, point) == Line::Open) ++expected[placeOf(bearing)];
    }
    int silent = 0;
    for (const auto& [place, count] : expected) {
        if (count < kFewest) continue;
        ++sight.places;
        const auto found = matched.find(place);
        silent += found == matched.end() || found->second < kSpeaks * count;
    }
    if (sight.places > 0) sight.silent = double(silent) / sight.places;
    return sight;
}

} // namespace nexomap
