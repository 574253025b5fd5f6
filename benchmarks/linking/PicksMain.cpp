// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What links made by hand are worth: pairs picked with the noise of clicks in buildings whose poses are
// known.
#include "benchmarks/linking/TruthSet.h"
#include "nexomap/src/links/HandMadeBearings.h"
#include "nexomap/src/links/PickResiduals.h"
#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

using namespace nexomap;

namespace {

constexpr char kUsage[] =
    "bench_picks [--cache DIR] FOLDER...\n"
    "Draws pairs of picks between panoramas 1.5 to 4 m apart that see each other, on surfaces 1 to 5 m away\n"
    "from both, adds the noise of clicks, and compares the poses found with the truth, with the ranges and\n"
    "without. Folders hold panorama files with lidar and a truth.json.\n";

constexpr int kDraws = 200;
constexpr double kApart = 25.0 * kDegree; // people spread their picks
constexpr double kSurface_m = 0.03;
constexpr double kWrongHeading = 5.0 * kDegree, kWrongDirection = 10.0 * kDegree;

struct Scene
{
    const Panorama *panorama_0, *panorama_1;
    RigidPose truth; ///< of panorama_1 in panorama_0
};

std::vector<Scene> scenesOf(const TruthSet& set)
{
    std::vector<Scene> scenes;
    for (const TruthSet::Pair& pair : set.pairs) {
        const RigidPose truth = set.relative(pair);
        const double apart = truth.t.norm();
        if (!pair.sees || pair.covisible < 0.2 || apart < 1.5 || apart > 4.0) continue;
        scenes.push_back({set.panoramas[std::size_t(pair.index_0)].get(),
                          set.panoramas[std::size_t(pair.index_1)].get(), truth});
    }
    return scenes;
}

/// Metres along a direction where the surface around it is one piece; 0 elsewhere: nobody clicks into the
/// air.
double solidRange(const RangeMap& map, const Eigen::Vector3d& direction)
{
    const EquirectGrid grid{map.size().width, map.size().height};
    const Eigen::Vector2d centre = grid.pixel(direction);
    const double middle = map.at(direction.cast<float>());
    for (int dy = -3; dy <= 3; ++dy)
        for (int dx = -3; dx <= 3; ++dx) {
            const int y = int(centre.y()) + dy, x = (int(centre.x()) + dx + grid.width) % grid.width;
            if (y < 0 || y >= grid.height || map.edge(y, x)) return 0.0;
            if (std::abs(map.range_m(y, x) - middle) > 0.1 * middle) return 0.0;
        }
    return middle;
}

/// A direction moved by `angle` any way.
Eigen::Vector3d moved(const Eigen::Vector3d& direction, double angle, std::mt19937& random)
{
    const double way = std::uniform_real_distribution<double>(0.0, 2.0 * kPi)(random);
    const Eigen::Vector3d side = direction.unitOrthogonal(), over = direction.cross(side);
    return std::cos(angle) * direction + std::sin(angle) * (std::cos(way) * side + std::sin(way) * over);
}

/// Normal noise of `sigma` along and across.
Eigen::Vector3d clicked(const Eigen::Vector3d& direction, double sigma, std::mt19937& random)
{
    std::normal_distribution<double> normal(0.0, sigma);
    const Eigen::Vector3d side = direction.unitOrthogonal(), over = direction.cross(side);
    return (direction + normal(random) * side + normal(random) * over).normalized();
}

PickedPair pickOf(const Eigen::Vector3d& u_0, const Eigen::Vector3d& u_1)
{
    return {azimuthOf(u_0), polarOf(u_0), azimuthOf(u_1), polarOf(u_1)};
}

/// Empty where the two do not share enough.
std::vector<PickedPair> draw(const Scene& scene, int count, double noise, std::mt19937& random)
{
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const RigidPose to_1 = scene.truth.inverse();
    std::vector<PickedPair> picks;
    std::vector<Eigen::Vector3d> taken;
    for (int attempt = 0; attempt < 3000 && int(picks.size()) < count; ++attempt) {
        const Eigen::Vector3d u =
            directionFromAngles(2.0 * kPi * unit(random), (0.25 + 0.5 * unit(random)) * kPi);
        const double range = solidRange(scene.panorama_0->range, u);
        if (range < 1.0 || range > 5.0) continue;
        const Eigen::Vector3d there = to_1 * (u * range), v = there.normalized();
        if (there.norm() < 1.0 || there.norm() > 5.0) continue;
        if (std::abs(solidRange(scene.panorama_1->range, v) - there.norm()) > kSurface_m) continue;
        // Where many are wanted they come closer in the end.
        const double apart = kApart * (attempt < 1500 ? 1.0 : 0.3);
        if (std::any_of(taken.begin(), taken.end(),
                        [&](const Eigen::Vector3d& other) { return other.dot(u) > std::cos(apart); }))
            continue;
        taken.push_back(u);
        picks.push_back(pickOf(clicked(u, noise, random), clicked(v, noise, random)));
    }
    if (int(picks.size()) < count) picks.clear();
    return picks;
}

struct Misses
{
    std::vector<double> turns_deg, headings_deg, directions_deg, shifts_mm;
    int refused = 0, sure_and_wrong = 0;
};

void record(const std::optional<PairPose>& pose, const RigidPose& truth, Misses* misses)
{
    if (!pose) {
        ++misses->refused;
        return;
    }
    const Eigen::Matrix3d turn = pose->R_0_from_1.transpose() * truth.R;
    const double heading = std::abs(std::atan2(turn(1, 0) - turn(0, 1), turn(0, 0) + turn(1, 1)));
    const double direction =
        std::atan2(pose->t_0_from_1.cross(truth.t).norm(), pose->t_0_from_1.dot(truth.t));
    misses->turns_deg.push_back(Eigen::AngleAxisd(turn).angle() / kDegree);
    misses->headings_deg.push_back(heading / kDegree);
    misses->directions_deg.push_back(direction / kDegree);
    misses->shifts_mm.push_back(1000.0 * (pose->t_0_from_1 - truth.t).norm());
    misses->sure_and_wrong +=
        pose->reliability > 0.5 && (heading > kWrongHeading || direction > kWrongDirection);
}

double quantile(std::vector<double> values, double share)
{
    if (values.empty()) return 0.0;
    const auto place = values.begin() + long(share * double(values.size() - 1));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

void printNoise(const std::vector<Scene>& scenes, int count, double noise_deg)
{
    std::mt19937 random(unsigned(1000 * count) + unsigned(1000.0 * noise_deg));
    Misses ranged, alone;
    for (int k = 0, tries = 0; k < kDraws && tries < 4 * kDraws; ++tries) {
        const Scene& scene = scenes[random() % scenes.size()];
        const std::vector<PickedPair> picks = draw(scene, count, noise_deg * kDegree, random);
        if (picks.empty()) continue;
        ++k;
        record(poseFromPicks(*scene.panorama_0, *scene.panorama_1, picks), scene.truth, &ranged);
        record(poseFromBearingPicks(picks), scene.truth, &alone);
    }
    std::printf(
        "| %d, %.2f | %.3f / %.3f deg, %.1f / %.1f mm, %d, %d | %.2f / %.2f, %.2f / %.2f deg, %d, %d |\n",
        count, noise_deg, quantile(ranged.turns_deg, 0.5), quantile(ranged.turns_deg, 0.95),
        quantile(ranged.shifts_mm, 0.5), quantile(ranged.shifts_mm, 0.95), ranged.refused,
        ranged.sure_and_wrong, quantile(alone.headings_deg, 0.5), quantile(alone.headings_deg, 0.95),
        quantile(alone.directions_deg, 0.5), quantile(alone.directions_deg, 0.95), alone.refused,
        alone.sure_and_wrong);
}

/// How often one pick among `count` that is off by 3 to 15 degrees is told, and it alone.
void printMisclick(const std::vector<Scene>& scenes, int count, bool ranged)
{
    std::mt19937 random(unsigned(7 * count + ranged));
    int draws = 0, told = 0, alone = 0, right = 0;
    for (int tries = 0; draws < kDraws && tries < 4 * kDraws; ++tries) {
        const Scene& scene = scenes[random() % scenes.size()];
        std::vector<PickedPair> picks = draw(scene, count, 0.1 * kDegree, random);
        if (picks.empty()) continue;
        ++draws;
        const std::size_t odd = random() % picks.size();
        const double off = std::uniform_real_distribution<double>(3.0, 15.0)(random) * kDegree;
        const Eigen::Vector3d v =
            moved(directionFromAngles(picks[odd].azimuth_1, picks[odd].polar_1), off, random);
        picks[odd].azimuth_1 = azimuthOf(v);
        picks[odd].polar_1 = polarOf(v);
        const auto pose =
            ranged ? poseFromPicks(*scene.panorama_0, *scene.panorama_1, picks) : poseFromBearingPicks(picks);
        if (!pose) continue;
        const auto residuals = pickResiduals(*scene.panorama_0, *scene.panorama_1, picks, *pose);
        const auto left_out = std::count_if(residuals.begin(), residuals.end(),
                                            [](const PickResidual& r) { return r.left_out; });
        told += residuals[odd].left_out;
        alone += residuals[odd].left_out && left_out == 1;
        right += Eigen::AngleAxisd(pose->R_0_from_1.transpose() * scene.truth.R).angle() < 1.0 * kDegree;
    }
    std::printf(
        "one of %d picks off by 3 to 15 degrees, %s: told in %.3f of %d draws, it alone in %.3f; pose "
        "within a degree in %.3f\n",
        count, ranged ? "lidar" : "pictures alone", double(told) / std::max(1, draws), draws,
        double(alone) / std::max(1, draws), double(right) / std::max(1, draws));
}

} // namespace

int main(int argc, char** argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // rows take a minute each
    TruthSetOptions options;
    std::vector<TruthSet> sets;
    std::vector<Scene> scenes;
    for (const std::string& folder : readArguments(argc, argv, kUsage, &options)) {
        auto set = readTruthSet(folder, options);
        if (!set) return 1;
        const auto more = scenesOf(*set);
        scenes.insert(scenes.end(), more.begin(), more.end());
        sets.push_back(std::move(*set));
    }
    scenes.erase(
        std::remove_if(scenes.begin(), scenes.end(),
                       [](const Scene& s) { return !s.panorama_0->metric() || !s.panorama_1->metric(); }),
        scenes.end());
    if (scenes.empty()) return std::fputs("no pair with lidar 1.5 to 4 m apart\n", stderr), 1;
    std::printf(
        "%zu pairs of panoramas, %d draws each row; median / 95th percentile, refused, sure and wrong\n",
        scenes.size(), kDraws);
    std::puts("| picks, noise (deg) | lidar: rotation, place | pictures alone: heading, direction |");
    for (const double noise : {0.1, 0.25})
        for (const int count : {3, 4, 6, 10})
            printNoise(scenes, count, noise);
    for (const bool ranged : {true, false})
        for (const int count : {5, 6, 8})
            printMisclick(scenes, count, ranged);
    return 0;
}
