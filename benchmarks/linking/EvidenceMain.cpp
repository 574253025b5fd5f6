// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The evidence for every pair's pose beside whether it is right, as a table: what reliability is fitted to.
#include "benchmarks/linking/PanoramaCache.h"
#include "benchmarks/linking/TruthSet.h"
#include "nexomap/src/pair/PairSolver.h"
#include "nexomap/src/pair/Sphere.h"

#include <Eigen/Dense>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <thread>

using namespace nexomap;

namespace {

constexpr char kUsage[] =
    "bench_evidence [--pictures-alone | --one-sided] [--cache DIR] FOLDER...\n"
    "Prints one line of comma-separated values for each pair of panoramas in the folders (panorama\n"
    "files and a truth.json) for which a pose was found, good or bad.\n"
    "  --one-sided  each pair twice, the ranges of one panorama left out\n";

enum class Ranges
{
    AsTheyAre,
    OnlyFirst,
    OnlySecond
};

std::string line(const TruthSet& set, const std::string& name, const TruthSet::Pair& pair, Ranges ranges)
{
    const auto side = [&](int index, Ranges bare) {
        const auto& panorama = set.panoramas[std::size_t(index)];
        return ranges == bare ? withoutRange(panorama) : panorama;
    };
    const auto kept_0 = side(pair.index_0, Ranges::OnlySecond),
               kept_1 = side(pair.index_1, Ranges::OnlyFirst);
    const Panorama &p0 = *kept_0, &p1 = *kept_1;
    const bool swapped = p1.id < p0.id; // as the library orders them
    const Panorama &first = swapped ? p1 : p0, &second = swapped ? p0 : p1;
    Evidence e;
    const auto solved = solvePair(first, second, matchFeatures(first, second), &e);
    if (!solved) return {};
    const PairPose pose = swapped ? inverted(*solved) : *solved;
    const RigidPose truth = set.relative(pair);
    const double turn = Eigen::AngleAxisd(pose.R_0_from_1.transpose() * truth.R).angle() / kDegree;
    const double shift = (pose.t_0_from_1 - truth.t).norm(), apart = truth.t.norm();
    const double off =
        std::atan2(pose.t_0_from_1.cross(truth.t).norm(), pose.t_0_from_1.dot(truth.t)) / kDegree;
    const bool right = turn < 1.0 && (pose.rotation_only ? apart < 0.2
                                      : pose.metric      ? shift < 0.1
                                                         : off < 5.0);
    const Matrix6d covariance = (pose.information + 1e-9 * Matrix6d::Identity()).inverse();
    char text[800];
    std::snprintf(text, sizeof text,
                  "%s,%d,%d,%.4f,%.3f,%d,%d,%d,%.3f,%.2f,%.4f,%d,%d,%d,%.4f,%.4f,%.3f,%.3f,%d,%.2f,%.3f,%.3f,"
                  "%.3f,%d,%.4f,%.4f,%.4f,%.3f,%.4f,%.4f,%.3f,%d,%.3f,%.4f,%d,%.4f,%.3f,%d,%.3f,%.3f,%.3f,%d,"
                  "%.3f,%d,%d\n",
                  name.c_str(), pair.index_0, pair.index_1, pair.covisible, apart, int(right),
                  int(pose.metric), int(pose.rotation_only), turn, pose.metric ? shift * 100.0 : off,
                  pose.reliability, e.inliers, e.cells, e.outside, e.inlier_share, e.second_share,
                  e.lean / kDegree, e.rms, e.guided, e.chance, e.elevation / kDegree,
                  e.direction_sigma / kDegree, e.floor_step_m, e.ranges.samples, e.ranges.agree,
                  e.ranges.violation, e.ranges.covisible, pose.t_0_from_1.norm(),
                  std::sqrt(covariance.topLeftCorner<3, 3>().trace()) / kDegree,
                  std::sqrt(covariance.bottomRightCorner<3, 3>().trace()), e.parallax / kDegree,
                  e.silent.places, e.silent.share, e.position_sigma_m, e.sight.lines, e.sight.crossed,
                  e.sight.open, e.sight.places, e.sight.silent, e.walls.agree_m2, e.walls.moved_m2,
                  e.silent.expected, e.skew ? *e.skew / kDegree : -1.0, e.silent.comparable, e.silent.alike);
    return text;
}

} // namespace

int main(int argc, char** argv)
{
    TruthSetOptions options;
    bool one_sided = false;
    const auto end = std::remove_if(argv + 1, argv + argc, [&](const char* argument) {
        const bool asked = std::strcmp(argument, "--one-sided") == 0;
        one_sided = one_sided || asked;
        return asked;
    });
    const std::vector<std::string> folders = readArguments(int(end - argv), argv, kUsage, &options);
    std::puts(
        "set,a,b,covisible,apart_m,right,metric,rotation_only,turn_deg,off,reliability,inliers,cells,outside,"
        "inlier_share,second_share,lean_deg,rms,guided,chance,elevation_deg,direction_sigma_deg,floor_step_m,"
        "samples,agree,violation,range_covisible,length_m,sigma_deg,sigma_m,parallax_deg,silent_places,"
        "silent_share,position_sigma_m,lines,crossed,open,sight_places,sight_silent,walls_agree_m2,"
        "walls_moved_m2,expected,skew_deg,comparable,alike");
    for (const std::string& folder : folders) {
        const auto set = readTruthSet(folder, options);
        if (!set) return 1;
        const std::size_t ways = one_sided ? 2 : 1;
        std::vector<std::string> lines(set->pairs.size() * ways);
        std::atomic<std::size_t> next{0};
        const auto work = [&] {
            for (std::size_t k = next++; k < lines.size(); k = next++)
                lines[k] = line(*set, folder, set->pairs[k / ways],
                                !one_sided ? Ranges::AsTheyAre
                                : k % 2    ? Ranges::OnlySecond
                                           : Ranges::OnlyFirst);
        };
        std::vector<std::thread> helpers;
        for (unsigned k = 1; k < std::thread::hardware_concurrency(); ++k)
            helpers.emplace_back(work);
        work();
        for (std::thread& helper : helpers)
            helper.join();
        for (const std::string& text : lines)
            std::fputs(text.c_str(), stdout);
    }
    return 0;
}
