// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A linked tour of real panoramas against the directions that people marked in them by eye.
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace {

constexpr char kUsage[] =
    "bench_marks REPORT.json MARKS.csv [DEGREES]\n"
    "REPORT.json  what tourwright-batch link --report wrote; each panorama's base name without its ending is "
    "its\n"
    "             name in the marks\n"
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
Tour readTour(const char* path)
{
    std::ifstream file(path);
    const nlohmann::json report = nlohmann::json::parse(file);
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
    if (argc < 3) return std::fputs(kUsage, argc == 2 ? stdout : stderr), argc == 2 ? 0 : 2;
    const std::map<Way, double> marks = readMarks(argv[2]);
    if (marks.empty()) return std::fprintf(stderr, "%s: no marks in it\n", argv[2]), 1;
    try {
        compare(readTour(argv[1]), marks, argc > 3 ? std::strtod(argv[3], nullptr) : 30.0);
    } catch (const std::exception& error) {
        return std::fprintf(stderr, "%s: %s\n", argv[1], error.what()), 1;
    }
    return 0;
}
