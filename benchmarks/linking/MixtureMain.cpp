// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// One tour added in several orders, and with panoramas of another place among them.
#include "benchmarks/linking/LibraryLinks.h"
#include "benchmarks/linking/PanoramaCache.h"
#include "nexomap/include/NexomapLib.h"
#include "nexomap/src/interface/Library.h"
#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/pair/Sphere.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <random>
#include <set>

using namespace nexomap;
namespace fs = std::filesystem;

namespace {

constexpr char kUsage[] =
    "bench_mixture [--pictures-alone] [--cache DIR] [--strangers N] FOLDER STRANGERS...\n"
    "Links the panorama files of FOLDER in three orders and prints how far links and poses differ; then "
    "once\n"
    "with N files (a quarter of FOLDER's number) of each folder STRANGERS shuffled in and prints the links\n"
    "between places that have nothing in common: there should be none.\n";

using Pair = std::pair<std::string, std::string>;

struct Tour
{
    std::map<std::string, RigidPose> poses; ///< world_from_pano, by identity
    std::map<Pair, double> links;           ///< reliability
    std::vector<std::string> largest;       ///< identities of the largest group
};

std::vector<std::string> panoramasIn(const std::string& folder)
{
    std::vector<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".pno") files.push_back(entry.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

bool readTour(Tour* tour)
{
    std::map<std::string, std::string> part; // a member of each one's group
    for (int k = 0; k < NexomapGetPanoNodeNum(); ++k) {
        char name[16], plan[256];
        double position[3], rotation[9];
        int x = 0, y = 0;
        if (NexomapGetPanoNodeParasB(name, position, position + 1, position + 2, rotation, &x, &y, plan, k))
            return false;
        tour->poses[name] = {Eigen::Map<const Eigen::Matrix<double, 3, 3, Eigen::RowMajor>>(rotation),
                             Eigen::Map<const Eigen::Vector3d>(position)};
        part[name] = name;
    }
    const std::vector<LibraryLink> links = libraryLinks();
    if (int(links.size()) != NexomapGetPanoMatchNum()) return false;
    for (const LibraryLink& link : links) {
        tour->links[std::minmax(link.id_0, link.id_1)] = link.reliability;
        const std::string from = part[link.id_1], to = part[link.id_0];
        for (auto& [name, member] : part)
            if (member == from) member = to;
    }
    std::map<std::string, std::vector<std::string>> groups;
    for (const auto& [name, member] : part)
        groups[member].push_back(name);
    for (const auto& [member, names] : groups)
        if (names.size() > tour->largest.size()) tour->largest = names;
    return true;
}

/// @return nothing with a line on standard error
std::optional<Tour> link(const std::vector<std::string>& files, const std::string& work)
{
    Tour tour;
    bool done = NexomapInit(work.c_str(), 0) == NEXOMAP_OK;
    for (const std::string& file : files)
        if (done) {
            const int status = NexomapAddNode(file.c_str());
            done = status == NEXOMAP_OK || status == NEXOMAP_DUPLICATE; // the same picture under two names
        }
    done = done && NexomapFinishAddNode() == NEXOMAP_OK && readTour(&tour);
    NexomapClean();
    if (done) return tour;
    std::fputs("cannot be linked; NEXOMAP_VERBOSE=1 tells why\n", stderr);
    return std::nullopt;
}

/// Links of one tour that the other lacks, and the largest difference of poses within the largest group.
void compare(const char* name, const Tour& first, const Tour& second)
{
    int lost = 0, gained = 0;
    for (const auto& [pair, reliability] : first.links)
        lost += second.links.count(pair) == 0;
    for (const auto& [pair, reliability] : second.links)
        gained += first.links.count(pair) == 0;
    double degrees = 0.0, metres = 0.0;
    const auto between = [](const Tour& tour, const std::string& a, const std::string& b) {
        const RigidPose from = tour.poses.at(a).inverse();
        const RigidPose& to = tour.poses.at(b);
        return RigidPose{from.R * to.R, from * to.t};
    };
    for (const std::string& member : first.largest) {
        const RigidPose was = between(first, first.largest.front(), member),
                        is = between(second, first.largest.front(), member);
        degrees = std::max(degrees, Eigen::AngleAxisd(was.R.transpose() * is.R).angle() / kDegree);
        metres = std::max(metres, (was.t - is.t).norm());
    }
    std::printf(
        "  %-22s %zu links, %d lost, %d new; of %zu in the largest group at worst %.4f degrees, %.4f m\n",
        name, second.links.size(), lost, gained, first.largest.size(), degrees, metres);
}

} // namespace

int main(int argc, char** argv)
{
    bool pictures_alone = false;
    std::size_t strangers = 0;
    std::string cache;
    std::vector<std::string> folders;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--pictures-alone")
            pictures_alone = true;
        else if (argument == "--cache" && i + 1 < argc)
            cache = argv[++i];
        else if (argument == "--strangers" && i + 1 < argc)
            strangers = std::size_t(std::max(0, std::atoi(argv[++i])));
        else if (argument.rfind("--", 0) == 0)
            return std::fputs(kUsage, stdout), argument == "--help" ? 0 : 2;
        else
            folders.push_back(fs::path(argument).lexically_normal().string());
    }
    if (folders.empty()) return std::fputs(kUsage, stderr), 2;
    FrontEnd front_end = panoramaFileFrontEnd();
    front_end.load = [=, load = front_end.load](const std::string& path, std::string* error) {
        const auto panorama = cachedPanorama(cache, path, error, load);
        return panorama && pictures_alone ? withoutRange(panorama) : panorama;
    };
    setFrontEnd(front_end);
    const fs::path work = fs::temp_directory_path() / ("bench_mixture-" + std::to_string(getpid()));
    fs::create_directories(work);

    std::vector<std::string> files = panoramasIn(folders.front());
    const std::size_t own = files.size();
    std::printf("%s%s: %zu panoramas\n", folders.front().c_str(), pictures_alone ? ", pictures alone" : "",
                own);
    const auto as_taken = link(files, work.string());
    std::vector<std::string> order = files;
    std::reverse(order.begin(), order.end());
    const auto reversed = link(order, work.string());
    std::mt19937 random(7);
    std::shuffle(order.begin(), order.end(), random);
    const auto shuffled = link(order, work.string());
    if (!as_taken || !reversed || !shuffled) return 1;
    compare("in their order", *as_taken, *as_taken);
    compare("the other way round", *as_taken, *reversed);
    compare("shuffled", *as_taken, *shuffled);
    std::fflush(stdout);

    if (folders.size() > 1) {
        std::map<std::string, std::size_t> place; // by identity
        std::string error;
        for (const std::string& file : files)
            place[front_end.identify(file, &error).value_or("")] = 0;
        for (std::size_t f = 1; f < folders.size(); ++f) {
            std::vector<std::string> other = panoramasIn(folders[f]);
            other.resize(std::min(other.size(), strangers ? strangers : std::max<std::size_t>(1, own / 4)));
            for (const std::string& file : other)
                place[front_end.identify(file, &error).value_or("")] = f;
            files.insert(files.end(), other.begin(), other.end());
        }
        std::shuffle(files.begin(), files.end(), random);
        const auto mixed = link(files, work.string());
        if (!mixed) return 1;
        int across = 0;
        for (const auto& [pair, reliability] : mixed->links)
            if (place[pair.first] != place[pair.second]) {
                ++across;
                std::printf("  ACROSS %s %s reliability %.3f\n", pair.first.c_str(), pair.second.c_str(),
                            reliability);
            }
        Tour inner = *mixed;
        for (auto link = inner.links.begin(); link != inner.links.end();)
            link = place[link->first.first] == 0 && place[link->first.second] == 0 ? std::next(link)
                                                                                   : inner.links.erase(link);
        std::printf("  with %zu strangers: %d links to them\n", files.size() - own, across);
        compare("its own, then", *as_taken, inner);
    }
    fs::remove_all(work);
    return 0;
}
