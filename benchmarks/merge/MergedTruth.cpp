// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A folder of panorama files with known poses, merged: time, memory, and the cloud itself to look at.
#include "nexomap/src/interface/Library.h"
#include "nexomap/src/merge/MergeGroup.h"

#include <nlohmann/json.hpp>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

using namespace nexomap;

namespace {

double peakMemory_mib()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0) return std::atof(line.c_str() + 6) / 1024.0;
    return 0.0;
}

/// The stations of truth.json as one group; taken over and over, side by side, until there are `count`.
Model groupOf(const std::string& folder, const nlohmann::json& truth, int count)
{
    Model model;
    const auto& panoramas = truth.at("panoramas");
    const int given = int(panoramas.size());
    for (int k = 0; k < (count > 0 ? count : given); ++k) {
        const auto& entry = panoramas.at(std::size_t(k % given));
        const auto position = entry.at("position").get<std::array<double, 3>>();
        const auto rotation = entry.at("rotation").get<std::array<double, 9>>();
        Node node;
        node.name = entry.at("id").get<std::string>();
        node.path = folder + "/" + entry.at("file").get<std::string>();
        node.source = std::make_shared<PanoramaSource>(node.path, node.name);
        node.pose.R = Eigen::Map<const Eigen::Matrix<double, 3, 3, Eigen::RowMajor>>(rotation.data());
        node.pose.t = Eigen::Map<const Eigen::Vector3d>(position.data());
        node.pose.t.y() += 12.0 * (k / given);
        node.height_m = entry.at("camera_height").get<double>();
        model.nodes.push_back(node);
        if (k == 0) continue;
        Edge edge;
        edge.node_0 = k - 1;
        edge.node_1 = k;
        edge.link = true;
        model.edges.push_back(edge);
    }
    return model;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::printf("merged_truth FOLDER WORK [indoor|outdoor] [high|mid|low] [2d|3d] [COUNT] [pts]\n"
                    "Merges the panoramas of a folder with a truth.json at their true poses into WORK.\n");
        return 2;
    }
    const auto has = [&](const char* word) {
        for (int k = 3; k < argc; ++k)
            if (std::string(argv[k]) == word) return true;
        return false;
    };
    MergeOptions options;
    options.indoor = !has("outdoor");
    options.density = has("low") ? 0 : has("mid") ? 1 : 2;
    options.cloud_map = !has("2d");
    options.pts = has("pts");
    int count = 0;
    for (int k = 3; k < argc; ++k)
        if (std::isdigit(argv[k][std::strlen(argv[k]) - 1])) count = std::atoi(argv[k]);
    try {
        std::filesystem::create_directories(argv[2]);
        std::ifstream file(std::string(argv[1]) + "/truth.json");
        Model model = groupOf(argv[1], nlohmann::json::parse(file), count);
        const WorkingFolder folder(argv[2]);
        const FrontEnd front_end = panoramaFileFrontEnd();
        const auto start = std::chrono::steady_clock::now();
        for (const std::string& reason : mergeGroup(model, {folder, front_end}, options))
            std::printf("left out: %s\n", reason.c_str());
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        std::printf("%zu panoramas merged in %.1f s, at most %.0f MiB of memory\n", model.nodes.size(),
                    seconds, peakMemory_mib());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "merged_truth: %s\n", error.what());
        return 1;
    }
    return 0;
}
