// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Arguments.h"

#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <sstream>

namespace samplescene {
namespace {

struct Rule
{
    std::string name;
    std::string value; ///< placeholder; empty: a switch
    std::string help;
    std::function<std::string(const std::string&)> read; ///< returns what is wrong
};

/// A number within limits.
std::function<std::string(const std::string&)> number(double low, double high,
                                                      std::function<void(double)> store)
{
    return [=](const std::string& text) -> std::string {
        char* end = nullptr;
        const double v = std::strtod(text.c_str(), &end);
        std::ostringstream limits;
        limits << " must be a number from " << low << " to " << high;
        if (text.empty() || *end || !(v >= low && v <= high)) return limits.str();
        store(v);
        return {};
    };
}

std::function<std::string(const std::string&)> whole(double low, double high,
                                                     std::function<void(double)> store)
{
    const auto read = number(low, high, [](double) {});
    return [=](const std::string& text) -> std::string {
        const std::string wrong = read(text);
        if (!wrong.empty()) return wrong;
        const double v = std::strtod(text.c_str(), nullptr);
        if (v != std::floor(v)) return " must be a whole number";
        store(v);
        return {};
    };
}

template <typename T>
std::function<std::string(const std::string&)> word(std::map<std::string, T> words, T* store)
{
    return [=](const std::string& text) -> std::string {
        const auto found = words.find(text);
        if (found == words.end()) {
            std::string list;
            for (const auto& w : words)
                list += (list.empty() ? "" : ", ") + w.first;
            return " must be one of: " + list;
        }
        *store = found->second;
        return {};
    };
}

std::vector<Rule> rulesFor(Arguments& a)
{
    Options& o = a.options;
    const auto set = [](auto* field) {
        return [field](double v) { *field = static_cast<std::decay_t<decltype(*field)>>(v); };
    };
    const auto on = [](bool* field, bool value) {
        return [field, value](const std::string&) {
            *field = value;
            return std::string();
        };
    };
    return {
        {"--out", "DIR", "where all files go; made if missing",
         [&a](const std::string& v) {
             a.folder = v;
             return v.empty() ? std::string(" must name a folder") : std::string();
         }},
        {"--count", "N", "panoramas, 1 to 1000 (8)", whole(1, 1000, set(&o.count))},
        {"--seed", "S", "another number is another building (1)", whole(0, 4294967295.0, set(&o.seed))},
        {"--kind", "WORD", "flat, office or street (flat)",
         word<Kind>({{"flat", Kind::Flat}, {"office", Kind::Office}, {"street", Kind::Street}}, &o.kind)},
        {"--width", "W", "pixels of the pictures, 512 to 16384, even (4096)",
         [&a](const std::string& v) {
             double w = 0;
             const std::string wrong = whole(512, 16384, [&w](double n) { w = n; })(v);
             if (!wrong.empty()) return wrong;
             a.width = static_cast<int>(w);
             return a.width % 2 ? std::string(" must be even") : std::string();
         }},
        {"--rooms", "N", "rooms beside the corridors, 1 to 1000 (three for five panoramas)",
         whole(1, 1000, set(&o.rooms))},
        {"--lean", "DEG", "standard deviation of the camera's tilt about each level axis (0.3)",
         number(0, 20, set(&o.lean_deg))},
        {"--exposure-steps", "STOPS", "panoramas differ by up to this, either way (0.15)",
         number(0, 4, set(&o.exposureSteps))},
        {"--identical-rooms", "N", "so many rooms are the same to the last book (0)",
         whole(0, 100, set(&o.identicalRooms))},
        {"--mirrors", "SHARE", "rooms with a large mirror on a wall (0)", number(0, 1, set(&o.mirrors))},
        {"--glass", "SHARE", "walls to the corridor that are panes (0)", number(0, 1, set(&o.glass))},
        {"--closed-doors", "SHARE", "inner doors that are shut (0)", number(0, 1, set(&o.closedDoors))},
        {"--moved-furniture", "SHARE", "loose furniture that moved before the second half was taken (0)",
         number(0, 1, set(&o.movedFurniture))},
        {"--texture", "WORD", "rich, plain or mixed (rich)",
         word<Texture>({{"rich", Texture::Rich}, {"plain", Texture::Plain}, {"mixed", Texture::Mixed}},
                       &o.texture)},
        {"--nadir", "WORD", "below the camera: clear, patch, tripod or operator (clear)",
         word<Nadir>({{"clear", Nadir::Clear},
                      {"patch", Nadir::Patch},
                      {"tripod", Nadir::Tripod},
                      {"operator", Nadir::Operator}},
                     &o.nadir)},
        {"--picture-noise", "SD", "of the sensor at mid-grey, in steps of 255 (1.5)",
         number(0, 50, set(&o.pictureNoise))},
        {"--interleaved-noise", "SD", "even and odd columns differ, row by row, in steps of 255 (0)",
         number(0, 50, set(&o.interleavedNoise))},
        {"--no-lidar", "", "pictures alone", on(&o.lidar, false)},
        {"--range-noise", "METRES", "standard deviation along the ray (0.006)",
         number(0, 1, set(&o.rangeNoise_m))},
        {"--range-fill", "SHARE",
         "range pixels that are measured; below 1 they form a comb (1; a common device: 0.29)",
         number(0.01, 1, set(&o.rangeFill))},
        {"--drop-outs", "SHARE", "returns lost at random (0.01)", number(0, 1, set(&o.dropOuts))},
        {"--max-range", "METRES", "no return from farther away (40)", number(1, 65, set(&o.maxRange_m))},
        {"--blind-cone", "DEG", "half angle below the scanner without returns (20)",
         number(0, 90, set(&o.blindCone_deg))},
        {"--light-spacing", "METRES",
         "between the points where the light is worked out; coarser is faster (0.08)",
         number(0.02, 2, set(&o.lightSpacing_m))},
        {"--pictures", "", "also writes each picture as PPM and each range picture as 16-bit PGM in mm",
         on(&a.pictures, true)},
        {"--threads", "N", "0: as many as the machine runs at once; the files do not depend on it (0)",
         whole(0, 256, set(&o.threads))},
        {"--help", "", "this text", on(&a.help, true)},
    };
}

} // namespace

std::string parseArguments(const std::vector<std::string>& words, Arguments* arguments)
{
    const std::vector<Rule> rules = rulesFor(*arguments);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const Rule* rule = nullptr;
        for (const Rule& r : rules)
            if (r.name == words[i]) rule = &r;
        if (!rule) return "unknown argument \"" + words[i] + "\"; --help lists them all";
        std::string value;
        if (!rule->value.empty()) {
            if (++i == words.size()) return rule->name + " needs a value";
            value = words[i];
        }
        const std::string wrong = rule->read(value);
        if (!wrong.empty()) return rule->name + wrong;
    }
    if (arguments->folder.empty() && !arguments->help) return "--out DIR is needed; --help tells more";
    return {};
}

std::string helpText()
{
    Arguments unused;
    std::string text =
        "Usage: samplescene --out DIR [options]\n\n"
        "Makes panorama files of a made-up building, and truth.json: where each was taken and\n"
        "which of them see each other; surfaces.ply and floorplan.json: its true surfaces and\n"
        "walls, to compare a map with. Equal arguments give equal files.\n\nOptions (default):\n";
    for (const Rule& r : rulesFor(unused)) {
        std::string left = "  " + r.name + (r.value.empty() ? "" : " " + r.value);
        left.resize(std::max<std::size_t>(left.size() + 1, 28), ' ');
        text += left + r.help + "\n";
    }
    return text + "\ntruth.json: world z up, metres; rotation is row by row, X_world = rotation * X_panorama "
                  "+ position;\n"
                  "a panorama's x points to the middle column of its picture, y to the left of it, z up.\n"
                  "Exit status: 0 success, 1 the work failed, 2 wrong usage.\n";
}

} // namespace samplescene
