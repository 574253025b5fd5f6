// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Verification of a pose by free space: nobody may stand in front of what the other measured.
#include "nexomap/src/pair/RangeAgreement.h"

#include "nexomap/src/pair/Sphere.h"

namespace nexomap {
namespace {

constexpr int kStep = 12; // cells between samples: 14,000 samples a map, 1 ms

struct Counts
{
    int agree = 0, violation = 0, occluded = 0;
    int total() const { return agree + violation + occluded; }
};

/// Floors and ceilings agree under any pose that keeps the height: they prove nothing.
bool level(const RangeMap& map, const EquirectGrid& grid, int row, int column)
{
    constexpr int kReach = 3;
    if (row < kReach || row + kReach >= grid.height) return true;
    const float above = map.range_m(row - kReach, column), below = map.range_m(row + kReach, column);
    if (!(above > 0.f) || !(below > 0.f)) return false;
    const Eigen::Vector3d step = grid.direction(column + 0.5, row + kReach + 0.5) * double(below) -
                                 grid.direction(column + 0.5, row - kReach + 0.5) * double(above);
    return std::abs(step.z()) < 0.35 * step.norm();
}

Counts project(const RangeMap& from, const RangeMap& into, const RigidPose& into_from, double company_m)
{
    const EquirectGrid grid{from.range_m.cols, from.range_m.rows};
    Counts counts;
    for (int row = kStep / 2; row < grid.height; row += kStep) {
        const double sine = std::sin(kPi * (row + 0.5) / grid.height);
        const int step = std::max(kStep, int(kStep / std::max(0.05, sine)));
        for (int column = step / 2; column < grid.width; column += step) {
            const float range = from.range_m(row, column);
            if (!(range > 0.f) || from.edge(row, column) || level(from, grid, row, column)) continue;
            const Eigen::Vector3d point =
                into_from * (grid.direction(column + 0.5, row + 0.5) * double(range));
            const double expected = point.norm();
            if (expected < 0.3) continue;
            const Eigen::Vector2d pixel = grid.pixel(point);
            const int x = std::min(grid.width - 1, int(pixel.x())),
                      y = std::min(grid.height - 1, int(pixel.y()));
            const double measured = into.range_m(y, x);
            if (!(measured > 0.0) || into.edge(y, x)) continue;
            const double tolerance = 0.05 + 0.015 * expected;
            if (std::abs(measured - expected) < tolerance)
                ++counts.agree;
            else if (expected < measured)
                counts.violation += range > company_m;
            else
                ++counts.occluded;
        }
    }
    return counts;
}

} // namespace

RangeAgreement checkRanges(const RangeMap& map_0, const RangeMap& map_1, const RigidPose& pose,
                           double company_m)
{
    RangeAgreement result;
    if (map_0.empty() || map_1.empty()) return result;
    const Counts into_0 = project(map_1, map_0, pose, company_m),
                 into_1 = project(map_0, map_1, pose.inverse(), company_m);
    result.samples = into_0.total() + into_1.total();
    if (into_0.total() == 0 || into_1.total() == 0) return result;
    const double all = result.samples;
    result.agree = (into_0.agree + into_1.agree) / all;
    result.violation = (into_0.violation + into_1.violation) / all;
    result.occluded = (into_0.occluded + into_1.occluded) / all;
    result.covisible = 0.5 * (double(into_0.agree) / into_0.total() + double(into_1.agree) / into_1.total());
    return result;
}

} // namespace nexomap
