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
#include <map>

using namespace nexomap;

namespace {

double peakMemory_mib()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0) return std::atof(line.c_str() + 6) / 1024.0;
    return 0.0;
}

/// Sharing nothing with the original, as if it were another station's.
std::shared_ptr<const Panorama> copyOf(const Panorama& panorama)
{
    auto copy = std::make_shared<Panorama>(panorama);
    copy->preview = panorama.preview.clone();
    copy->range.range_m = panorama.range.range_m.clone();
    copy->range.edge = panorama.range.edge.clone();
    return copy;
}

/// The stations of truth.json as one group; taken over and over, side by side, until there are `count`.
/// @param loaded  with all that the library keeps of a panorama once it has linked it
Model groupOf(const std::string& folder, const nlohmann::json& truth, int count, bool loaded)
{
    Model model;
    std::map<std::string, std::unique_ptr<Panorama>> read;
    const auto& panoramas = truth.at("panoramas");
    const int given = int(panoramas.size());
    for (int k = 0; k < (count > 0 ? count : given); ++k) {
        const auto& entry = panoramas.at(std::size_t(k % given));
        const auto position = entry.at("position").get<std::array<double, 3>>();
        const auto rotation = entry.at("rotation").get<std::array<double, 9>>();
        Node node;
        node.name = entry.at("id").get<std::string>();
        node.path = folder + "/" + entry.at("file").get<std::string>();
        if (loaded) {
            std::unique_ptr<Panorama>& panorama = read[node.path];
            std::string error;
            if (!panorama) panorama = loadPanorama(node.path, &error);
            if (!panorama) throw Failure(NEXOMAP_BAD_FILE, error);
            node.source = std::make_shared<PanoramaSource>(copyOf(*panorama));
            node.source->rest();
        } else {
            node.source = std::make_shared<PanoramaSource>(node.path, node.name);
        }
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
        std::printf(
            "merged_truth FOLDER WORK [indoor|outdoor] [high|mid|low] [2d|3d] [COUNT] [pts] [loaded]\n"
            "Merges the panoramas of a folder with a truth.json at their true poses into WORK.\n"
            "COUNT stations: those of the folder over and over, side by side. loaded: with all in memory\n"
            "that the library keeps of each panorama once it has linked it.\n");
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
        Model model = groupOf(argv[1], nlohmann::json::parse(file), count, has("loaded"));
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
