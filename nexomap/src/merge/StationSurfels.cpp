// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/StationSurfels.h"

#include "nexomap/src/merge/FloorHole.h"
#include "nexomap/src/model/ParallelFor.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kBelowCeiling_m =
    0.054; // 5 cm, and what small errors of the vertical make of it across a room
constexpr int kBandsAtOnce = 16;
constexpr float kInterpolated = 0.02f; // weight against a measurement
constexpr float kHole = 1e-3f;
constexpr float kJudged_m = 0.02f;

std::int8_t normalByte(float part)
{
    return std::int8_t(std::lround(std::clamp(part, -1.f, 1.f) * 127.f));
}

/// Whether a place is below the ceiling, with its whole cell, and in the building.
bool isAllowed(const PointRules& rules, const Eigen::Vector3f& world, const Eigen::Vector3d& up, bool above)
{
    if (!rules.ceilings || rules.ceilings->empty()) return true;
    const double x = double(world.x()), y = double(world.y());
    if (!rules.ceilings->isInside(x, y)) return false;
    return !above ||
           rules.ceilings->isOpen(x, y, up.dot(world.cast<double>()) + 0.5 * rules.cell_m, kBelowCeiling_m);
}

/// Whether others saw farther through the place than confirm it: people, what was moved, mirrored rooms.
bool isSeenThrough(const PointRules& rules, const Eigen::Vector3f& world)
{
    int through = 0, confirms = 0;
    for (const SeenSpace* other : rules.others) {
        const SeenSpace::Verdict verdict = other->verdict(world);
        through += verdict == SeenSpace::Verdict::SeesThrough;
        confirms += verdict == SeenSpace::Verdict::Confirms;
    }
    return through > confirms;
}

struct Band
{
    std::vector<Surfel> surfels;
    std::vector<FloorHole::Patch> rim;
};

} // namespace

void forEachWantedSurfel(const MergeStation& station, const RangePyramid& pyramid,
                         const StationColours& colours, const PointRules& rules,
                         const std::function<void(const std::vector<Surfel>&)>& take)
{
    const SurfaceSampling sampling(pyramid, {rules.cell_m, rules.interpolate});
    const Eigen::Matrix3f R = station.pose.R.cast<float>();
    const Eigen::Vector3f t = station.pose.t.cast<float>(), up = station.up.cast<float>();
    FloorHole hole(up);
    const auto surfel = [&](const Eigen::Vector3f& world, const Eigen::Vector3f& normal, float weight,
                            float view, const std::array<std::uint8_t, 3>& rgb) {
        return Surfel{world.x(),
                      world.y(),
                      world.z(),
                      normalByte(normal.x()),
                      normalByte(normal.y()),
                      normalByte(normal.z()),
                      weightCode(weight),
                      rgb[0],
                      rgb[1],
                      rgb[2],
                      weightCode(view)};
    };
    const auto work = [&](int number, Band* band) {
        // Looking at others' space takes longest; what lies close together has one verdict.
        Eigen::Vector3f judged = Eigen::Vector3f::Constant(1e9f);
        bool seen_through = false;
        sampling.forEachInBand(number, [&](const SurfaceSample& sample) {
            const Eigen::Vector3f from = R * sample.point, normal = R * sample.normal;
            const Eigen::Vector3f world = t + from;
            if (!isAllowed(rules, world, station.up, from.dot(up) > 0.f)) return;
            if ((world - judged).squaredNorm() > kJudged_m * kJudged_m) {
                judged = world;
                seen_through = isSeenThrough(rules, world);
            }
            if (seen_through) return;
            const float range = std::max(0.5f, sample.range_m);
            const float part = std::min(1.f, sample.area_m2 / float(rules.cell_m * rules.cell_m)) *
                               (sample.measured ? 1.f : kInterpolated);
            const float sharp = sample.cosine / (range * range);
            const std::array<std::uint8_t, 3> rgb = colours.at(sample.point);
            band->surfels.push_back(surfel(world, normal, part / (range * range), part * sharp * sharp, rgb));
            if (rules.interpolate && sample.measured && hole.isRim(from, normal))
                band->rim.push_back({from, {float(rgb[0]), float(rgb[1]), float(rgb[2])}});
        });
    };
    for (int from = 0; from < sampling.bands(); from += kBandsAtOnce) {
        const int count = std::min(kBandsAtOnce, sampling.bands() - from);
        std::vector<Band> bands(static_cast<std::size_t>(count));
        parallelFor(count, [&](int k) { work(from + k, &bands[std::size_t(k)]); });
        for (const Band& band : bands) {
            take(band.surfels);
            for (const FloorHole::Patch& patch : band.rim)
                hole.add(patch);
        }
    }
    if (!rules.interpolate) return;
    std::vector<Surfel> floor;
    for (const FloorHole::Patch& patch : hole.fill(0.8f * float(rules.cell_m))) {
        const Eigen::Vector3f world = t + patch.point;
        if (!isAllowed(rules, world, station.up, false) || isSeenThrough(rules, world)) continue;
        std::array<std::uint8_t, 3> rgb{};
        for (int channel = 0; channel < 3; ++channel)
            rgb[std::size_t(channel)] = std::uint8_t(std::clamp(patch.colour[channel], 0.f, 255.f));
        floor.push_back(surfel(world, up, kHole, kHole * kHole, rgb));
    }
    take(floor);
}

} // namespace nexomap
