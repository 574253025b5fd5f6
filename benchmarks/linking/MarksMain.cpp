// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A linked tour of real panoramas against the directions that people marked in them by eye.
#include "benchmarks/linking/LibraryLinks.h"
#include "benchmarks/linking/PanoramaCache.h"
#include "nexomap/include/NexomapLib.h"
#include "nexomap/src/interface/Library.h"

#include <nlohmann/json.hpp>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace {

constexpr char kUsage[] =
    "bench_marks REPORT.json MARKS.csv [DEGREES]\n"
    "bench_marks FOLDER MARKS.csv [DEGREES] [--cache DIR] [--pictures DIR]\n"
    "REPORT.json  what tourwright-batch link --report wrote; each panorama's base name without its ending is "
    "its\n"
    "             name in the marks\n"
    "FOLDER       panorama files, which are linked here; --cache keeps their features for the next run,\n"
    "             --pictures keeps the pictures of the matches\n"
    "MARKS.csv    columns from, to, yaw_deg (direction of `to` in `from`, 0 the picture's centre, positive "
    "to the\n"
    "             right), placed by eye; pairs that are not listed are unknown\n"
    "DEGREES      how far a direction may be off (30)\n";

using Way = std::pair<std::string, std::string>;

std::string stem(const std::string& name)
{
    return name.substr(0, name.find_last_of('.'));
}

double wrapped(double degrees)
{
    return std::remainder(degrees, 360.0);
}

/// Yaw by way; empty when the file cannot be read.
std::map<Way, double> readMarks(const char* path)
{
    std::map<Way, double> marks;
    std::ifstream file(path);
    std::string line;
    std::getline(file, line); // the head
    while (std::getline(file, line)) {
        std::istringstream cells(line);
        std::string from, to, yaw;
        std::getline(cells, from, ',');
        std::getline(cells, to, ',');
        std::getline(cells, yaw, ',');
        if (!yaw.empty()) marks[{stem(from), stem(to)}] = std::strtod(yaw.c_str(), nullptr);
    }
    return marks;
}

struct Tour
{
    std::map<std::string, nlohmann::json> panoramas; ///< by name
    std::map<Way, double> links;                     ///< yaw of the link, both ways
    std::map<std::string, std::string> group;        ///< name to the group's smallest name

    bool together(const Way& way) const
    {
        const auto a = group.find(way.first), b = group.find(way.second);
        return a != group.end() && b != group.end() && a->second == b->second;
    }
    /// Yaw of the second in the first by the poses.
    double yaw(const Way& way) const
    {
        const auto &a = panoramas.at(way.first), &b = panoramas.at(way.second);
        double step[3], seen[2] = {0.0, 0.0};
        for (int k = 0; k < 3; ++k)
            step[k] = b["position"][k].get<double>() - a["position"][k].get<double>();
        for (int k = 0; k < 2; ++k)
            for (int row = 0; row < 3; ++row)
                seen[k] += a["rotation"][3 * row + k].get<double>() * step[row];
        return -std::atan2(seen[1], seen[0]) * 180.0 / M_PI;
    }
};

/// @throws nlohmann::json::exception
Tour readTour(const nlohmann::json& report)
{
    Tour tour;
    std::map<std::string, std::string> names;
    for (const auto& panorama : report.at("panoramas")) {
        const std::string name = panorama.at("base_name");
        names[panorama.at("id")] = name;
        tour.panoramas[name] = panorama;
        tour.group[name] = name;
    }
    for (const auto& link : report.at("links")) {
        const std::string a = names.at(link.at("id0")), b = names.at(link.at("id1"));
        tour.links[{a, b}] = link.at("rot_0").get<double>() * 180.0 / M_PI;
        tour.links[{b, a}] = wrapped(link.at("rot_1").get<double>() * 180.0 / M_PI + 180.0);
        const std::string from = std::max(tour.group[a], tour.group[b]),
                          to = std::min(tour.group[a], tour.group[b]);
        for (auto& [name, group] : tour.group)
            if (group == from) group = to;
    }
    return tour;
}

struct FolderOptions
{
    std::string cache, pictures;
};

/// Links the panorama files of a folder and writes the result as a report.
/// @return null when they cannot be linked
nlohmann::json linkFolder(const std::string& folder, const FolderOptions& options)
{
    namespace fs = std::filesystem;
    nexomap::FrontEnd front_end = nexomap::panoramaFileFrontEnd();
    std::map<std::string, std::string> names; // by identity
    front_end.load = [&names, options, load = front_end.load](const std::string& path, std::string* error) {
        const auto panorama = cachedPanorama(options.cache, path, error, load);
        if (panorama) names[panorama->id] = fs::path(path).stem().string();
        return panorama;
    };
    nexomap::setFrontEnd(front_end);
    const fs::path work = options.pictures.empty()
                              ? fs::temp_directory_path() / ("bench_marks-" + std::to_string(getpid()))
                              : fs::path(options.pictures);
    fs::create_directories(work);
    if (NexomapInit(work.c_str(), 0) != NEXOMAP_OK) return {};
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".pno") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files)
        if (const int status = NexomapAddNode(file.c_str()); status != NEXOMAP_OK)
            std::printf("  %s is left out (status %d)\n", file.filename().c_str(), status);
    if (NexomapFinishAddNode() != NEXOMAP_OK) return {};
    nlohmann::json report{{"panoramas", nlohmann::json::array()}, {"links", nlohmann::json::array()}};
    for (int k = 0; k < NexomapGetPanoNodeNum(); ++k) {
        char id[16], plan[256];
        double position[3], rotation[9];
        int x = 0, y = 0;
        NexomapGetPanoNodeParasB(id, position, position + 1, position + 2, rotation, &x, &y, plan, k);
        report["panoramas"].push_back(
            {{"id", id}, {"base_name", names.at(id)}, {"position", position}, {"rotation", rotation}});
    }
    for (const LibraryLink& link : libraryLinks()) {
        report["links"].push_back({{"id0", link.id_0},
                                   {"id1", link.id_1},
                                   {"rot_0", link.rot_0()},
                                   {"rot_1", link.rot_1()},
                                   {"reliability", link.reliability}});
        std::printf("  link %s %s, reliability %.2f, mode %d\n", names.at(link.id_0).c_str(),
                    names.at(link.id_1).c_str(), link.reliability, link.mode);
        if (!options.pictures.empty()) NexomapDrawPanoMatchPng(link.id_0.c_str(), link.id_1.c_str());
    }
    NexomapClean();
    if (options.pictures.empty()) fs::remove_all(work);
    return report;
}

void compare(const Tour& tour, const std::map<Way, double>& marks, double tolerance)
{
    std::map<std::string, int> sizes;
    for (const auto& [name, group] : tour.group)
        ++sizes[group];
    int largest = 0;
    for (const auto& [group, size] : sizes)
        largest = std::max(largest, size);
    int both_ways = 0, together = 0, agree = 0, linked = 0;
    for (const auto& [way, yaw] : marks) {
        const Way back{way.second, way.first};
        const auto reverse = marks.find(back);
        if (reverse == marks.end() || way.second < way.first) continue;
        ++both_ways;
        const bool link = tour.links.count(way) > 0;
        linked += link;
        if (!tour.together(way)) {
            std::printf("  apart: %s %s\n", way.first.c_str(), way.second.c_str());
            continue;
        }
        ++together;
        const double off = std::abs(wrapped(tour.yaw(way) - yaw)),
                     off_back = std::abs(wrapped(tour.yaw(back) - reverse->second));
        agree += std::max(off, off_back) <= tolerance;
        if (std::max(off, off_back) > tolerance)
            std::printf("  elsewhere: %s %s, by %.0f and %.0f degrees%s\n", way.first.c_str(),
                        way.second.c_str(), off, off_back, link ? ", linked" : "");
    }
    for (const auto& [way, yaw] : tour.links) {
        if (way.second < way.first || marks.count(way) || marks.count({way.second, way.first})) continue;
        std::printf("  linked without a mark: %s %s, seen at %.0f and %.0f degrees\n", way.first.c_str(),
                    way.second.c_str(), yaw, tour.links.at({way.second, way.first}));
    }
    std::printf(
        "%zu panoramas, largest group %d; pairs marked both ways %d: linked %d, in one group %d, there "
        "within %g degrees %d (%.0f %%)\n",
        tour.panoramas.size(), largest, both_ways, linked, together, tolerance, agree,
        both_ways ? 100.0 * agree / both_ways : 0.0);
}

} // namespace

int main(int argc, char** argv)
{
    FolderOptions options;
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--cache" && i + 1 < argc)
            options.cache = argv[++i];
        else if (argument == "--pictures" && i + 1 < argc)
            options.pictures = argv[++i];
        else
            arguments.push_back(argument);
    }
    if (arguments.size() < 2) return std::fputs(kUsage, argc == 2 ? stdout : stderr), argc == 2 ? 0 : 2;
    const std::map<Way, double> marks = readMarks(arguments[1].c_str());
    if (marks.empty()) return std::fprintf(stderr, "%s: no marks in it\n", arguments[1].c_str()), 1;
    try {
        nlohmann::json report;
        if (std::filesystem::is_directory(arguments[0]))
            report = linkFolder(arguments[0], options);
        else
            report = nlohmann::json::parse(std::ifstream(arguments[0]));
        compare(readTour(report), marks,
                arguments.size() > 2 ? std::strtod(arguments[2].c_str(), nullptr) : 30.0);
    } catch (const std::exception& error) {
        return std::fprintf(stderr, "%s: %s\n", arguments[0].c_str(), error.what()), 1;
    }
    return 0;
}
