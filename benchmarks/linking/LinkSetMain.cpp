// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The linking library's figures on made-up buildings.
#include "benchmarks/linking/LinkFigures.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

namespace {

constexpr char kUsage[] =
    "bench_linkset [--pictures-alone | --half-ranged] [--wrong] [--pairs] [--cache DIR] FOLDER...\n"
    "Links each folder (panorama files and a truth.json, as samplescene writes them) through the library "
    "and\n"
    "prints how the result compares with the truth: right relative poses by co-visibility, area under the\n"
    "recall curve, station errors, wrong links, links against sight lines, calibration of the reliability.\n"
    "  --pictures-alone  leave the ranges out\n"
    "  --half-ranged     leave them out of every second panorama\n"
    "  --wrong           list every wrong link and measurement, and the sight lines missed by no rule\n"
    "  --pairs           list the errors of right metric pairs beside what they state\n"
    "  --cache DIR       keep the panoramas' features there for the next run\n";

double peakMemory_mib()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

} // namespace

int main(int argc, char** argv)
{
    LinkSetOptions options;
    bool list_wrong = false, list_pairs = false;
    std::vector<std::string> folders;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--pictures-alone")
            options.pictures_alone = true;
        else if (argument == "--half-ranged")
            options.half_ranged = true;
        else if (argument == "--wrong")
            list_wrong = true;
        else if (argument == "--pairs")
            list_pairs = true;
        else if (argument == "--cache" && i + 1 < argc)
            options.cache = argv[++i];
        else if (argument.rfind("--", 0) == 0)
            return std::fputs(kUsage, stdout), argument == "--help" ? 0 : 2;
        else
            folders.push_back(std::filesystem::path(argument).lexically_normal().string());
    }
    if (folders.empty()) return std::fputs(kUsage, stderr), 2;
    const std::filesystem::path work =
        std::filesystem::temp_directory_path() / ("bench_linkset-" + std::to_string(getpid()));
    std::filesystem::create_directories(work);
    options.work = work.string();
    LinkFigures total;
    bool all = true;
    for (const std::string& folder : folders) {
        const auto set = linkSet(folder, options);
        all = all && set;
        if (!set) continue;
        const LinkFigures figures = figuresOf(*set);
        printFigures(set->name, figures);
        if (list_wrong) printWrong(*set);
        if (list_pairs) printPairs(*set);
        std::fflush(stdout);
        total.add(figures);
    }
    if (total.sets > 1) printFigures("all sets", total);
    printCalibration(total);
    std::printf("peak memory %.0f MiB\n", peakMemory_mib());
    std::filesystem::remove_all(work);
    return all ? 0 : 1;
}
