// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// How the linking library's time and memory grow with the tour, on panoramas without pictures.
#include "benchmarks/linking/LibraryLinks.h"
#include "benchmarks/linking/MadeUpStorey.h"
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

constexpr char kUsage[] = "bench_growth [--features N] [--seed S] COUNT...\n"
                          "Links made-up storeys of so many panoramas, each with N features (2000) and a "
                          "range map but no picture, through\n"
                          "the library's C functions. Prints processor seconds (reading files and finding "
                          "features not among them), pairs\n"
                          "compared at first sight and in full, station errors, wrong links, the seconds of "
                          "relocating after one deleted\n"
                          "link, and the most memory. Give one COUNT a run to see the memory of each.\n";

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

FrontEnd frontEnd(const MadeUpStorey& storey, Counters& counters)
{
    FrontEnd front = panoramaFileFrontEnd();
    front.identify = [](const std::string& path, std::string*) { return std::optional<std::string>(path); };
    front.load = [&](const std::string& path, std::string* error) -> std::shared_ptr<const Panorama> {
        const double start = processorSeconds();
        for (int k = 0; k < storey.size(); ++k)
            if (MadeUpStorey::nameOf(k) == path) {
                auto panorama = storey.panorama(k);
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

Links judgeLinks(const MadeUpStorey& storey)
{
    Links links;
    const auto indexOf = [&](const std::string& name) {
        int index = 0;
        for (const char c : name)
            index = index * 26 + (c - 'A');
        return index;
    };
    for (const LibraryLink& link : libraryLinks()) {
        const int i = indexOf(link.id_0), j = indexOf(link.id_1);
        const double apart = (storey.station(i).t - storey.station(j).t).norm();
        ++links.count;
        links.wrong += std::abs(link.spacing() - apart) > 0.1;
        if (link.mode == 0) links.last = {link.id_0, link.id_1};
    }
    return links;
}

int run(int count, int features, unsigned seed)
{
    const MadeUpStorey storey(count, features, seed);
    Counters counters;
    const std::filesystem::path work =
        std::filesystem::temp_directory_path() / ("bench_growth-" + std::to_string(getpid()));
    std::filesystem::create_directories(work);
    setFrontEnd(frontEnd(storey, counters));
    const double start = processorSeconds();
    bool usable = NexomapInit(work.c_str(), 0) == NEXOMAP_OK;
    for (int k = 0; k < count; ++k)
        usable = usable && NexomapAddNode(MadeUpStorey::nameOf(k).c_str()) == NEXOMAP_OK;
    const double added = processorSeconds();
    usable = usable && NexomapFinishAddNode() == NEXOMAP_OK;
    const double finished = processorSeconds();
    if (!usable) return std::fprintf(stderr, "cannot be linked; NEXOMAP_VERBOSE=1 tells why\n"), 1;
    Eigen::Matrix3Xd from(3, count), to(3, count);
    for (int k = 0; k < count; ++k) {
        char name[16], plan[256];
        double p[3], r[9];
        int x = 0, y = 0;
        NexomapGetPanoNodeParasB(name, p, p + 1, p + 2, r, &x, &y, plan, k);
        from.col(k) = Eigen::Vector3d(p[0], p[1], p[2]);
        to.col(k) = storey.station(k).t;
    }
    const Eigen::Matrix4d motion = Eigen::umeyama(from, to, false);
    const Eigen::Matrix3Xd off =
        ((motion.topLeftCorner<3, 3>() * from).colwise() + motion.topRightCorner<3, 1>()) - to;
    const Links links = judgeLinks(storey);
    const int groups = NexomapGetPanoGroupNum(), placed = NexomapGetPanoNodeNumInOneGroup(0);
    const double relocating = processorSeconds();
    NexomapDeletePanoMatch(links.last.first.c_str(), links.last.second.c_str());
    NexomapRelocateAll();
    const double relocated = processorSeconds() - relocating, whole = finished - start;
    const double linking = whole - counters.load_seconds;
    std::printf("%5d panoramas, %d features: adding %.1f s, finishing %.1f s, %.3f s a panorama; compared %d "
                "at first "
                "sight, %d in full\n",
                count, features, added - start - counters.load_seconds, finished - added, linking / count,
                counters.coarse.load(), counters.full.load());
    std::printf(
        "      %d links, %d of a wrong length; %d groups, %d in the largest; stations %.1f mm rms, %.1f at "
        "worst (one group only)\n",
        links.count, links.wrong, groups, placed, 1000.0 * std::sqrt(off.squaredNorm() / count),
        1000.0 * std::sqrt(off.colwise().squaredNorm().maxCoeff()));
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
    int features = 2000;
    unsigned seed = 1;
    std::vector<int> counts;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--features" && i + 1 < argc)
            features = std::atoi(argv[++i]);
        else if (argument == "--seed" && i + 1 < argc)
            seed = unsigned(std::atoi(argv[++i]));
        else if (std::atoi(argv[i]) > 0)
            counts.push_back(std::atoi(argv[i]));
        else
            return std::fputs(kUsage, stdout), argument == "--help" ? 0 : 2;
    }
    if (counts.empty() || features < 100) return std::fputs(kUsage, stderr), 2;
    for (const int count : counts)
        if (run(count, features, seed) != 0) return 1;
    return 0;
}
