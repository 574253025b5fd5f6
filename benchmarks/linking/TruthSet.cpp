// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Panoramas and their true poses, from a folder.
#include "benchmarks/linking/TruthSet.h"

#include "benchmarks/linking/PanoramaCache.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

using namespace nexomap;

RigidPose TruthSet::relative(const Pair& pair) const
{
    const RigidPose pano_0_from_world = world_from_pano[std::size_t(pair.index_0)].inverse();
    const RigidPose& second = world_from_pano[std::size_t(pair.index_1)];
    return {pano_0_from_world.R * second.R, pano_0_from_world * second.t};
}

std::optional<TruthSet> readTruthSet(const std::string& folder, const TruthSetOptions& options)
{
    std::ifstream file(folder + "/truth.json");
    const nlohmann::json truth = nlohmann::json::parse(file, nullptr, false);
    if (truth.is_discarded()) {
        std::fprintf(stderr, "%s/truth.json: missing, or not JSON\n", folder.c_str());
        return std::nullopt;
    }
    TruthSet set;
    try {
        const auto start = std::chrono::steady_clock::now();
        for (const auto& entry : truth.at("panoramas")) {
            std::string error;
            set.panoramas.push_back(
                cachedPanorama(options.cache, folder + "/" + entry.at("file").get<std::string>(), &error,
                               [](const std::string& path, std::string* reason) {
                                   return std::shared_ptr<const Panorama>(loadPanorama(path, reason));
                               }));
            if (!set.panoramas.back()) {
                std::fprintf(stderr, "%s\n", error.c_str());
                return std::nullopt;
            }
            if (options.pictures_alone) set.panoramas.back() = withoutRange(set.panoramas.back());
            const auto position = entry.at("position").get<std::array<double, 3>>();
            const auto rotation = entry.at("rotation").get<std::array<double, 9>>();
            RigidPose pose;
            pose.t = Eigen::Map<const Eigen::Vector3d>(position.data());
            pose.R = Eigen::Map<const Eigen::Matrix<double, 3, 3, Eigen::RowMajor>>(rotation.data());
            set.world_from_pano.push_back(pose);
        }
        set.load_seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        const int count = int(set.panoramas.size());
        for (const auto& entry : truth.at("pairs")) {
            TruthSet::Pair pair;
            pair.index_0 = entry.at("panorama0");
            pair.index_1 = entry.at("panorama1");
            pair.covisible = 0.5 * (entry.at("share0").get<double>() + entry.at("share1").get<double>());
            pair.sees = entry.at("sees");
            if (pair.index_0 < 0 || pair.index_0 >= count || pair.index_1 < 0 || pair.index_1 >= count)
                throw std::out_of_range("a pair of panoramas that are not listed");
            set.pairs.push_back(pair);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s/truth.json: %s\n", folder.c_str(), error.what());
        return std::nullopt;
    }
    return set;
}

std::vector<std::string> readArguments(int argc, char** argv, const char* usage, TruthSetOptions* options)
{
    std::vector<std::string> folders;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--pictures-alone")
            options->pictures_alone = true;
        else if (argument == "--cache" && i + 1 < argc)
            options->cache = argv[++i];
        else if (argument == "--help")
            std::exit((std::fputs(usage, stdout), 0));
        else if (argument.rfind("--", 0) == 0)
            std::exit((std::fputs(usage, stderr), 2));
        else
            folders.push_back(argument);
    }
    if (folders.empty()) std::exit((std::fputs(usage, stderr), 2));
    return folders;
}
