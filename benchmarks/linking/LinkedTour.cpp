// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A whole tour through the linking library's C functions, against the truth of a made-up building: poses
// after the best rigid (without lidar: similarity) motion, and links against what sees what. Usage:
// linked_tour FOLDER [WORK]   FOLDER holds truth.json and the panorama files

#include "benchmarks/linking/LibraryLinks.h"
#include "nexomap/include/NexomapLib.h"

#include <Eigen/Dense>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

namespace {

using Json = nlohmann::json;
using Pair = std::pair<std::string, std::string>;

struct Stand
{
    Eigen::Matrix3d R;
    Eigen::Vector3d t;
};

double median(std::vector<double> values)
{
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

Pair pairOf(const std::string& a, const std::string& b)
{
    return {std::min(a, b), std::max(a, b)};
}

Stand standOf(const Json& panorama)
{
    Stand stand;
    for (int k = 0; k < 3; ++k)
        stand.t[k] = panorama["position"][k];
    for (int k = 0; k < 9; ++k)
        stand.R(k / 3, k % 3) = panorama["rotation"][k];
    return stand;
}

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) return std::fprintf(stderr, "usage: linked_tour FOLDER [WORK [2d|3d]]\n"), 2;
    const std::filesystem::path folder = argv[1];
    const std::filesystem::path work =
        argc > 2 ? std::filesystem::path(argv[2]) : std::filesystem::temp_directory_path() / "linked_tour";
    std::filesystem::create_directories(work);
    Json truth;
    std::ifstream(folder / "truth.json") >> truth;
    const bool lidar = truth["options"].value("lidar", true);

    NexomapInit(work.string().c_str(), 0);
    NexomapReset();
    const auto start = std::chrono::steady_clock::now();
    std::map<std::string, Stand> true_stands;
    for (const Json& panorama : truth["panoramas"]) {
        const std::string path = (folder / panorama["file"].get<std::string>()).string();
        if (const int status = NexomapAddNode(path.c_str()))
            std::printf("%s: status %d\n", path.c_str(), status);
        true_stands[panorama["id"]] = standOf(panorama);
    }
    const double added = secondsSince(start);
    const auto finish = std::chrono::steady_clock::now();
    NexomapFinishAddNode();
    std::printf("seconds: add %.2f, finish %.2f\n", added, secondsSince(finish));

    std::map<std::string, std::set<std::string>> linked;
    std::map<Pair, double> links;
    for (const LibraryLink& link : libraryLinks()) {
        linked[link.id_0].insert(link.id_1);
        linked[link.id_1].insert(link.id_0);
        links[pairOf(link.id_0, link.id_1)] = link.spacing();
        std::printf("link %s %s mode %d spacing %.3f reliability %.3f\n", link.id_0.c_str(),
                    link.id_1.c_str(), link.mode, link.spacing(), link.reliability);
    }
    std::map<std::string, Stand> found;
    std::vector<std::string> order;
    for (int k = 0; k < NexomapGetPanoNodeNum(); ++k) {
        char name[16], plan[256];
        double p[3], r[9];
        int x = 0, y = 0;
        NexomapGetPanoNodeParasB(name, p, p + 1, p + 2, r, &x, &y, plan, k);
        Stand stand;
        stand.t = {p[0], p[1], p[2]};
        for (int c = 0; c < 9; ++c)
            stand.R(c / 3, c % 3) = r[c];
        found[name] = stand;
        order.push_back(name);
    }
    std::set<std::string> seen, largest;
    for (const std::string& name : order) {
        if (seen.count(name)) continue;
        std::set<std::string> group{name};
        std::vector<std::string> open{name};
        while (!open.empty()) {
            const std::string at = open.back();
            open.pop_back();
            for (const std::string& next : linked[at])
                if (group.insert(next).second) open.push_back(next);
        }
        seen.insert(group.begin(), group.end());
        if (group.size() > largest.size()) largest = group;
    }
    std::printf("groups %d, largest %zu of %zu\n", NexomapGetPanoGroupNum(), largest.size(), order.size());

    Eigen::Matrix3Xd from(3, largest.size()), to(3, largest.size());
    Eigen::Matrix3d sum = Eigen::Matrix3d::Zero();
    int column = 0;
    for (const std::string& name : largest) {
        from.col(column) = found[name].t;
        to.col(column++) = true_stands[name].t;
        sum += true_stands[name].R * found[name].R.transpose();
    }
    const Eigen::JacobiSVD<Eigen::Matrix3d> svd(sum, Eigen::ComputeFullU | Eigen::ComputeFullV);
    const Eigen::Matrix3d world = svd.matrixU() * svd.matrixV().transpose();
    double scale = 1.0;
    if (!lidar) scale = Eigen::umeyama(from, to, true).topLeftCorner<3, 1>().norm();
    const Eigen::Vector3d shift = to.rowwise().mean() - scale * (world * from.rowwise().mean());
    std::vector<double> turns, headings, shifts;
    for (const std::string& name : largest) {
        const Eigen::Matrix3d error = true_stands[name].R.transpose() * world * found[name].R;
        turns.push_back(Eigen::AngleAxisd(error).angle() * 180 / M_PI);
        headings.push_back(std::abs(std::atan2(error(1, 0), error(0, 0))) * 180 / M_PI);
        shifts.push_back((true_stands[name].t - scale * (world * found[name].t) - shift).norm());
    }
    const double extent = (to.rowwise().maxCoeff() - to.rowwise().minCoeff()).norm();
    std::printf("rotation: median %.3f max %.3f deg; heading: median %.3f deg\n", median(turns),
                *std::max_element(turns.begin(), turns.end()), median(headings));
    std::printf("position: median %.4f max %.4f m (%.2f %% of %.2f m); scale %.4f\n", median(shifts),
                *std::max_element(shifts.begin(), shifts.end()),
                100 * *std::max_element(shifts.begin(), shifts.end()) / extent, extent, scale);

    int near = 0, near_linked = 0, right = 0;
    for (const Json& pair : truth["pairs"]) {
        const Pair key = pairOf(pair["id0"], pair["id1"]);
        const bool sees = pair["sees"], link = links.count(key) > 0;
        right += sees && link;
        if (link && !sees)
            std::printf("  linked without sight: %s %s\n", key.first.c_str(), key.second.c_str());
        if (!sees || pair["distance"].get<double>() >= 6.0) continue;
        ++near;
        near_linked += link;
        if (!link)
            std::printf("  neighbours not linked: %s %s, %.2f m, share %.3f\n", key.first.c_str(),
                        key.second.c_str(), pair["distance"].get<double>(), pair["share0"].get<double>());
    }
    std::printf("links %zu, of them with sight %d; neighbours within 6 m that see each other %d, linked %d\n",
                links.size(), right, near, near_linked);
    if (argc > 3) {
        const auto merging = std::chrono::steady_clock::now();
        NexomapAutoCreatePanoMatch();
        const bool cloud = std::string(argv[3]) == "3d";
        const int status = NexomapMergePointCloud(1, 3, 1, 2, cloud ? 1 : 0);
        std::printf("links after completing %d; merge: status %d, %.2f s\n", NexomapGetPanoMatchNum(), status,
                    secondsSince(merging));
    }
    NexomapClean();
    return 0;
}
