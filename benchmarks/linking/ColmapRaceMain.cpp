// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The linking library beside COLMAP, from the same pictures.
#include "benchmarks/linking/ColmapPeer.h"
#include "benchmarks/linking/LinkedSet.h"
#include "nexomap/src/pair/Sphere.h"

#include <Eigen/SVD>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

using namespace nexomap;
namespace fs = std::filesystem;

namespace {

constexpr char kUsage[] =
    "race_colmap [--work DIR] FOLDER...\n"
    "Places the panoramas of each folder (panorama files and a truth.json, as samplescene writes them) by "
    "the\n"
    "linking library from the pictures alone and by COLMAP from six views of 90 degrees and 1024 pixels "
    "each,\n"
    "with known intrinsics, exhaustive matching and two threads. Prints panoramas placed (largest group, "
    "largest\n"
    "model), rotation errors after the best turn, and time. Takes minutes. Without COLMAP nothing is raced.\n"
    "  --work DIR  keep views, models and logs there\n";

struct Runner
{
    std::map<int, RigidPose> placed; ///< by index
    double wall_s = 0.0, user_s = 0.0;
};

double userSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec) + 1e-6 * double(usage.ru_utime.tv_usec);
}

std::vector<std::string> filesOf(const std::string& folder)
{
    std::vector<std::string> files;
    std::ifstream in(folder + "/truth.json");
    const nlohmann::json truth = nlohmann::json::parse(in);
    for (const auto& entry : truth.at("panoramas"))
        files.push_back(folder + "/" + entry.at("file").get<std::string>());
    return files;
}

Runner oursOf(const LinkedSet& set, double user_s)
{
    std::map<int, std::vector<int>> groups;
    for (std::size_t n = 0; n < set.group.size(); ++n)
        groups[set.group[n]].push_back(int(n));
    Runner ours;
    ours.wall_s = set.add_seconds + set.finish_seconds;
    ours.user_s = user_s;
    for (const auto& [first, members] : groups) {
        if (members.size() <= ours.placed.size()) continue;
        ours.placed.clear();
        for (const int n : members)
            ours.placed[n] = set.found[std::size_t(n)];
    }
    return ours;
}

/// Degrees, sorted, after the turn of the world that suits all rotations best.
std::vector<double> rotationErrors(const std::map<int, RigidPose>& placed,
                                   const std::vector<RigidPose>& truth)
{
    Eigen::Matrix3d sum = Eigen::Matrix3d::Zero();
    for (const auto& [n, pose] : placed)
        sum += truth[std::size_t(n)].R * pose.R.transpose();
    const Eigen::JacobiSVD<Eigen::Matrix3d> svd(sum, Eigen::ComputeFullU | Eigen::ComputeFullV);
    const double sign = svd.matrixU().determinant() * svd.matrixV().determinant() < 0.0 ? -1.0 : 1.0;
    const Eigen::Matrix3d turn =
        svd.matrixU() * Eigen::Vector3d(1.0, 1.0, sign).asDiagonal() * svd.matrixV().transpose();
    std::vector<double> errors;
    for (const auto& [n, pose] : placed)
        errors.push_back(Eigen::AngleAxisd(truth[std::size_t(n)].R.transpose() * turn * pose.R).angle() /
                         kDegree);
    std::sort(errors.begin(), errors.end());
    return errors;
}

void print(const char* name, const Runner& runner, const std::vector<RigidPose>& truth)
{
    const std::vector<double> errors = rotationErrors(runner.placed, truth);
    std::printf("  %-14s %2zu of %2zu placed, rotation median %.3f worst %.3f degrees, %.1f s, %.1f s of "
                "processor\n",
                name, errors.size(), truth.size(), errors.empty() ? 0.0 : errors[errors.size() / 2],
                errors.empty() ? 0.0 : errors.back(), runner.wall_s, runner.user_s);
}

bool race(const std::string& folder, const std::string& work)
{
    const double user_before = userSeconds();
    fs::create_directories(work + "/links");
    LinkSetOptions linking;
    linking.pictures_alone = true;
    linking.work = work + "/links";
    const auto set = linkSet(folder, linking);
    if (!set) return false;
    const Runner ours = oursOf(*set, userSeconds() - user_before);
    ColmapOptions options;
    options.work = work;
    const auto colmap = placeWithColmap(filesOf(folder), options);
    if (!colmap) return false;
    const Runner theirs{colmap->world_from_pano, colmap->wall_s(), colmap->user_s()};
    std::printf("%s\n", set->name.c_str());
    print("this library", ours, set->truth);
    print("COLMAP", theirs, set->truth);
    std::printf("  COLMAP: %d of %d views in the largest of %d models;", colmap->views_placed, colmap->views,
                colmap->models);
    for (const ColmapResult::Step& step : colmap->steps)
        std::printf(" %s %.1f s (%.1f s)", step.name.c_str(), step.wall_s, step.user_s);
    std::printf("\n  ratios: placed %.2f, time %.1f, processor time %.1f\n",
                double(ours.placed.size()) / double(std::max<std::size_t>(1, theirs.placed.size())),
                theirs.wall_s / ours.wall_s, theirs.user_s / ours.user_s);
    std::fflush(stdout);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    std::string kept;
    std::vector<std::string> folders;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--work" && i + 1 < argc)
            kept = argv[++i];
        else if (argument.rfind("--", 0) == 0)
            return std::fputs(kUsage, stdout), argument == "--help" ? 0 : 2;
        else
            folders.push_back(fs::path(argument).lexically_normal().string());
    }
    if (folders.empty()) return std::fputs(kUsage, stderr), 2;
    if (!hasColmap()) return std::puts("COLMAP is not installed: nothing to race against"), 0;
    const fs::path base = kept.empty()
                              ? fs::temp_directory_path() / ("race_colmap-" + std::to_string(getpid()))
                              : fs::absolute(kept).lexically_normal();
    bool all = true;
    for (std::size_t k = 0; k < folders.size(); ++k)
        all = race(folders[k], (base / std::to_string(k)).string()) && all;
    if (kept.empty()) fs::remove_all(base);
    return all ? 0 : 1;
}
