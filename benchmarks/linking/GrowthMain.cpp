// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// How the linking library's time and memory grow with the tour, on panoramas without pictures.
#include "benchmarks/linking/LibraryLinks.h"
#include "benchmarks/linking/MadeUpStorey.h"
#include "benchmarks/linking/PanoramaCache.h"
#include "nexomap/include/NexomapLib.h"
#include "nexomap/src/interface/Library.h"

#include <Eigen/Geometry>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

using namespace nexomap;

namespace {

constexpr char kUsage[] =
    "bench_growth [--pictures-alone | --half-ranged] [--features N] [--seed S] COUNT...\n"
    "Links made-up storeys of so many panoramas, each with N features (2000) and a "
    "range map but no picture, through\n"
    "the library's C functions. Prints processor seconds (reading files and finding "
    "features not among them), pairs\n"
    "compared at first sight and in full, station errors, wrong links, the seconds of "
    "relocating after one deleted\n"
    "link, and the most memory. Give one COUNT a run to see the memory of each.\n"
    "  --pictures-alone  without range maps, features without ranges; stations and "
    "lengths are compared\n"
    "                    after the best similarity of the largest group\n"
    "  --half-ranged     without them in every second panorama\n";

/// Of all threads.
double processorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           1e-6 * double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

double peakMemory_mib()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

struct Counters
{
    std::atomic<int> full{0}, coarse{0};
    double load_seconds = 0.0;
};

struct Options
{
    int features = 2000;
    unsigned seed = 1;
    bool pictures_alone = false, half_ranged = false;
};

FrontEnd frontEnd(const MadeUpStorey& storey, const Options& options, Counters& counters)
{
    FrontEnd front = panoramaFileFrontEnd();
    front.identify = [](const std::string& path, std::string*) { return std::optional<std::string>(path); };
    front.load = [&](const std::string& path, std::string* error) -> std::shared_ptr<const Panorama> {
        const double start = processorSeconds();
        for (int k = 0; k < storey.size(); ++k)
            if (MadeUpStorey::nameOf(k) == path) {
                auto panorama = storey.panorama(k);
                if (options.pictures_alone || (options.half_ranged && k % 2 == 1))
                    panorama = withoutRange(panorama);
                counters.load_seconds += processorSeconds() - start;
                return panorama;
            }
        *error = "no such panorama";
        return nullptr;
    };
    front.match = [&, match = front.match](const Panorama& p, const Panorama& q) {
        ++counters.full;
        return match(p, q);
    };
    front.likeness = [&, likeness = front.likeness](const Features& p, const Features& q) {
        ++counters.coarse;
        return likeness(p, q);
    };
    front.ranges = nullptr;
    return front;
}

struct Links
{
    int count = 0, wrong = 0;
    std::pair<std::string, std::string> last;
};

int indexOf(const std::string& name)
{
    int index = 0;
    for (const char c : name)
        index = index * 26 + (c - 'A');
    return index;
}

/// Lengths in metres are wrong when they are 10 cm off; others when a fifth from what most links say that the
/// tour's own unit is.
Links judgeLinks(const MadeUpStorey& storey, const std::vector<LibraryLink>& all, bool metric)
{
    const auto apart_m = [&](const LibraryLink& link) {
        return (storey.station(indexOf(link.id_0)).t - storey.station(indexOf(link.id_1)).t).norm();
    };
    std::vector<double> units{1.0};
    for (const LibraryLink& link : all)
        units.push_back(link.spacing() / apart_m(link));
    std::nth_element(units.begin(), units.begin() + long(units.size() / 2), units.end());
    const double unit = units[units.size() / 2];
    Links links;
    for (const LibraryLink& link : all) {
        const double apart = apart_m(link);
        ++links.count;
        links.wrong += metric ? std::abs(link.spacing() - apart) > 0.1
                              : !(std::abs(std::log(link.spacing() / (unit * apart))) < 0.2);
        if (link.mode == 0) links.last = {link.id_0, link.id_1};
    }
    return links;
}

std::vector<int> largestGroup(int count, const std::vector<LibraryLink>& links)
{
    std::vector<std::vector<int>> members;
    members.resize(std::size_t(count));
    std::vector<int> group;
    for (int n = 0; n < count; ++n)
        group.push_back(n), members[std::size_t(n)] = {n};
    for (const LibraryLink& link : links) {
        const int a = group[std::size_t(indexOf(link.id_0))], b = group[std::size_t(indexOf(link.id_1))];
        if (a == b) continue;
        for (const int n : members[std::size_t(b)])
            group[std::size_t(n)] = a, members[std::size_t(a)].push_back(n);
        members[std::size_t(b)].clear();
    }
    return *std::max_element(members.begin(), members.end(),
                             [](const auto& p, const auto& q) { return p.size() < q.size(); });
}

struct StationErrors
{
    double rms_m = 0.0, worst_m = 0.0;
};

/// Of the largest group after the best rigid motion, or similarity.
StationErrors stationErrors(const MadeUpStorey& storey, const std::vector<int>& group, bool metric)
{
    Eigen::Matrix3Xd found(3, storey.size()), from(3, group.size()), to(3, group.size());
    for (int k = 0; k < storey.size(); ++k) {
        char name[16], plan[256];
        double p[3], r[9];
        int x = 0, y = 0;
        NexomapGetPanoNodeParasB(name, p, p + 1, p + 2, r, &x, &y, plan, k);
        found.col(indexOf(name)) = Eigen::Vector3d(p[0], p[1], p[2]);
    }
    for (std::size_t k = 0; k < group.size(); ++k) {
        from.col(int(k)) = found.col(group[k]);
        to.col(int(k)) = storey.station(group[k]).t;
    }
    const Eigen::Matrix4d motion = Eigen::umeyama(from, to, !metric);
    const Eigen::Matrix3Xd off =
        ((motion.topLeftCorner<3, 3>() * from).colwise() + motion.topRightCorner<3, 1>()) - to;
    return {std::sqrt(off.squaredNorm() / double(group.size())),
            std::sqrt(off.colwise().squaredNorm().maxCoeff())};
}

int run(int count, const Options& options)
{
    const MadeUpStorey storey(count, options.features, options.seed);
    const bool metric = !options.pictures_alone;
    Counters counters;
    const std::filesystem::path work =
        std::filesystem::temp_directory_path() / ("bench_growth-" + std::to_string(getpid()));
    std::filesystem::create_directories(work);
    setFrontEnd(frontEnd(storey, options, counters));
    const double start = processorSeconds();
    bool usable = NexomapInit(work.c_str(), 0) == NEXOMAP_OK;
    for (int k = 0; k < count; ++k)
        usable = usable && NexomapAddNode(MadeUpStorey::nameOf(k).c_str()) == NEXOMAP_OK;
    const double added = processorSeconds();
    usable = usable && NexomapFinishAddNode() == NEXOMAP_OK;
    const double finished = processorSeconds();
    if (!usable) return std::fprintf(stderr, "cannot be linked; NEXOMAP_VERBOSE=1 tells why\n"), 1;
    const std::vector<LibraryLink> all = libraryLinks();
    const std::vector<int> group = largestGroup(count, all);
    const StationErrors errors = stationErrors(storey, group, metric);
    const Links links = judgeLinks(storey, all, metric);
    const int groups = NexomapGetPanoGroupNum();
    const double relocating = processorSeconds();
    NexomapDeletePanoMatch(links.last.first.c_str(), links.last.second.c_str());
    NexomapRelocateAll();
    const double relocated = processorSeconds() - relocating, whole = finished - start;
    const double linking = whole - counters.load_seconds;
    std::printf("%5d panoramas, %d features: adding %.1f s, finishing %.1f s, %.3f s a panorama; compared %d "
                "at first "
                "sight, %d in full\n",
                count, options.features, added - start - counters.load_seconds, finished - added,
                linking / count, counters.coarse.load(), counters.full.load());
    std::printf("      %d links, %d of a wrong length; %d groups, %d in the largest; stations there %.1f mm "
                "rms, %.1f at "
                "worst\n",
                links.count, links.wrong, groups, int(group.size()), 1000.0 * errors.rms_m,
                1000.0 * errors.worst_m);
    std::printf("      relocating after one deleted link %.3f s, 1/%.0f of linking; peak memory %.0f MiB\n",
                relocated, linking / std::max(1e-6, relocated), peakMemory_mib());
    std::fflush(stdout);
    NexomapClean();
    std::filesystem::remove_all(work);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    std::vector<int> counts;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--features" && i + 1 < argc)
            options.features = std::atoi(argv[++i]);
        else if (argument == "--seed" && i + 1 < argc)
            options.seed = unsigned(std::atoi(argv[++i]));
        else if (argument == "--pictures-alone")
            options.pictures_alone = true;
        else if (argument == "--half-ranged")
            options.half_ranged = true;
        else if (std::atoi(argv[i]) > 0)
            counts.push_back(std::atoi(argv[i]));
        else
            return std::fputs(kUsage, stdout), argument == "--help" ? 0 : 2;
    }
    if (counts.empty() || options.features < 100) return std::fputs(kUsage, stderr), 2;
    for (const int count : counts)
        if (run(count, options) != 0) return 1;
    return 0;
}
