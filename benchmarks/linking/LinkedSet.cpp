// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A made-up building through the linking library, with what happens pair by pair written down on the way.
#include "benchmarks/linking/LinkedSet.h"

#include "benchmarks/linking/LibraryLinks.h"
#include "benchmarks/linking/PanoramaCache.h"
#include "nexomap/include/NexomapLib.h"
#include "nexomap/src/interface/Library.h"
#include "nexomap/src/links/SightLine.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <mutex>

using namespace nexomap;

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

Pair ordered(int a, int b)
{
    return {std::min(a, b), std::max(a, b)};
}

RigidPose poseOf(const double* position, const double* rotation)
{
    RigidPose pose;
    pose.t = Eigen::Map<const Eigen::Vector3d>(position);
    pose.R = Eigen::Map<const Eigen::Matrix<double, 3, 3, Eigen::RowMajor>>(rotation);
    return pose;
}

struct Description
{
    std::vector<std::string> files, ids;
    std::map<std::string, int> index;
    LinkedSet set;
};

/// @throws nlohmann::json::exception
Description describe(const std::string& folder)
{
    Description description;
    description.set.name = folder.substr(folder.find_last_of('/') + 1);
    std::ifstream file(folder + "/truth.json");
    const nlohmann::json truth = nlohmann::json::parse(file);
    for (const auto& entry : truth.at("panoramas")) {
        description.files.push_back(folder + "/" + entry.at("file").get<std::string>());
        description.ids.push_back(entry.at("id"));
        description.index[description.ids.back()] = int(description.ids.size()) - 1;
        const auto position = entry.at("position").get<std::array<double, 3>>();
        const auto rotation = entry.at("rotation").get<std::array<double, 9>>();
        description.set.truth.push_back(poseOf(position.data(), rotation.data()));
    }
    for (const auto& entry : truth.at("pairs")) {
        LinkedSet::Sight sight;
        sight.covisible = 0.5 * (entry.at("share0").get<double>() + entry.at("share1").get<double>());
        sight.distance_m = entry.at("distance");
        sight.sees = entry.at("sees");
        description.set.sights[ordered(entry.at("panorama0"), entry.at("panorama1"))] = sight;
    }
    return description;
}

/// The library's own front end, with ears.
FrontEnd recordingFrontEnd(const LinkSetOptions& options, const std::map<std::string, int>& index,
                           std::map<Pair, PairPose>* measured)
{
    FrontEnd front_end = panoramaFileFrontEnd();
    front_end.load = [options, &index, load = front_end.load](const std::string& path, std::string* error) {
        const auto panorama = cachedPanorama(options.cache, path, error, load);
        if (!panorama) return panorama;
        const bool bare = options.pictures_alone || (options.half_ranged && index.at(panorama->id) % 2 == 1);
        return bare ? withoutRange(panorama) : panorama;
    };
    front_end.match = [&index, measured, match = front_end.match,
                       lock = std::make_shared<std::mutex>()](const Panorama& p0, const Panorama& p1) {
        auto pose = match(p0, p1);
        const int a = index.at(p0.id), b = index.at(p1.id);
        const std::lock_guard<std::mutex> guard(*lock);
        if (pose && a < b) measured->emplace(Pair(a, b), *pose);
        return pose;
    };
    return front_end;
}

void readBack(Description& description)
{
    LinkedSet& set = description.set;
    set.found.resize(set.truth.size());
    set.group.resize(set.truth.size());
    for (int k = 0; k < NexomapGetPanoNodeNum(); ++k) {
        char name[16], plan[256];
        double position[3], rotation[9];
        int x = 0, y = 0;
        NexomapGetPanoNodeParasB(name, position, position + 1, position + 2, rotation, &x, &y, plan, k);
        set.found[std::size_t(description.index.at(name))] = poseOf(position, rotation);
    }
    for (std::size_t n = 0; n < set.group.size(); ++n)
        set.group[n] = int(n);
    for (const LibraryLink& link : libraryLinks()) {
        const Pair pair = ordered(description.index.at(link.id_0), description.index.at(link.id_1));
        set.links[pair] = {link.mode, link.reliability};
        const int from = set.group[std::size_t(pair.second)], to = set.group[std::size_t(pair.first)];
        std::replace(set.group.begin(), set.group.end(), from, to);
    }
}

/// Asks again what the library asked itself when it chose its links.
void judgeSightLines(Description& description)
{
    LinkedSet& set = description.set;
    const Library& here = library();
    const std::vector<Node>& nodes = here.model.nodes;
    const auto look = [&](const Node& node) -> const Panorama& { return node.source->look(here.front_end); };
    for (std::size_t k = 0; k < nodes.size(); ++k)
        for (std::size_t l = k + 1; l < nodes.size(); ++l) {
            const Pair pair =
                ordered(description.index.at(nodes[k].name), description.index.at(nodes[l].name));
            if (set.group[std::size_t(pair.first)] != set.group[std::size_t(pair.second)]) continue;
            const Panorama &p = look(nodes[k]), &q = look(nodes[l]);
            if (p.metric() && q.metric())
                set.open[pair] = seeEachOther(p, nodes[k].pose, q, nodes[l].pose, nodes[k].up);
        }
}

} // namespace

std::optional<LinkedSet> linkSet(const std::string& folder, const LinkSetOptions& options)
{
    Description description;
    try {
        description = describe(folder);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s/truth.json: %s\n", folder.c_str(), error.what());
        return std::nullopt;
    }
    LinkedSet& set = description.set;
    setFrontEnd(recordingFrontEnd(options, description.index, &set.measured));
    bool usable = NexomapInit(options.work.c_str(), 0) == NEXOMAP_OK;
    const auto adding = Clock::now();
    for (const std::string& path : description.files)
        usable = usable && NexomapAddNode(path.c_str()) == NEXOMAP_OK;
    set.add_seconds = secondsSince(adding);
    const auto finishing = Clock::now();
    usable = usable && NexomapFinishAddNode() == NEXOMAP_OK;
    set.finish_seconds = secondsSince(finishing);
    if (!usable) {
        std::fprintf(stderr, "%s: cannot be linked; NEXOMAP_VERBOSE=1 tells why\n", folder.c_str());
        return std::nullopt;
    }
    readBack(description);
    judgeSightLines(description);
    for (const auto& [pair, pose] : set.measured)
        set.ranged = set.ranged || pose.metric;
    NexomapClean();
    return set;
}
