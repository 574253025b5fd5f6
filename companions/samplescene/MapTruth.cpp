// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/MapTruth.h"

#include "companions/samplescene/PlanCut.h"
#include "companions/samplescene/Tessellation.h"

#include <nlohmann/json.hpp>

#include <cstring>

namespace samplescene {
namespace {

using Json = nlohmann::ordered_json;

constexpr float kCut_m = 1.2f; ///< above the floor: above tables, through windows

void put(std::string& bytes, std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift & 0xff);
}

void put(std::string& bytes, float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    put(bytes, bits);
}

/// To the tenth of a millimetre, so that the text stays short.
double rounded(float metres)
{
    return std::round(static_cast<double>(metres) * 1e4) / 1e4;
}

Json outlinesOf(const std::vector<Outline>& outlines)
{
    Json list = Json::array();
    for (const Outline& outline : outlines) {
        Json points = Json::array();
        for (const Vec2 p : outline)
            points.push_back({rounded(p.x), rounded(p.y)});
        list.push_back(points);
    }
    return list;
}

Json roomsOf(const World& world)
{
    Json rooms = Json::array();
    for (const RoomBounds& r : world.rooms)
        rooms.push_back({{"name", r.name},
                         {"low", {rounded(r.x0), rounded(r.y0)}},
                         {"high", {rounded(r.x1), rounded(r.y1)}}});
    return rooms;
}

} // namespace

std::string surfacesOf(const Scene& scene)
{
    const Triangles mesh = tessellate(*scene.worlds[0]);
    std::string bytes = "ply\nformat binary_little_endian 1.0\n"
                        "comment part: 0 furniture, 1 floor, 2 ceiling, 3 wall, 4 lintel, 5 door, 6 window, "
                        "7 lamp, 8 glass, 9 mirror, 10 ground, 11 house, 12 plant, 13 other things outdoors\n"
                        "element vertex " +
                        std::to_string(mesh.points.size()) +
                        "\nproperty float x\nproperty float y\nproperty float z\nelement face " +
                        std::to_string(mesh.triangles.size()) +
                        "\nproperty list uchar uint vertex_indices\nproperty uchar part\nend_header\n";
    bytes.reserve(bytes.size() + 12 * mesh.points.size() + 14 * mesh.triangles.size());
    for (const Vec3 p : mesh.points)
        for (const float v : {p.x, p.y, p.z})
            put(bytes, v);
    for (const Triangle& t : mesh.triangles) {
        bytes += '\3';
        for (const std::uint32_t corner : t.corner)
            put(bytes, corner);
        bytes += static_cast<char>(t.part);
    }
    return bytes;
}

std::string floorPlanOf(const Scene& scene)
{
    const World& world = *scene.worlds[0];
    const float floor = world.rooms.empty() ? 0.0f : world.rooms.front().floor;
    const PlanCut cut = cutAt(world, floor + kCut_m);
    Json storey = {{"floor", floor},
                   {"ceiling", nullptr},
                   {"cut", rounded(floor + kCut_m)},
                   {"rooms", roomsOf(world)},
                   {"walls", outlinesOf(cut.walls)},
                   {"openings", outlinesOf(cut.openings)},
                   {"furniture", outlinesOf(cut.furniture)}};
    if (!world.rooms.empty()) storey["ceiling"] = rounded(world.rooms.front().ceiling);
    Json stations = Json::array();
    for (const Station& s : scene.stations)
        stations.push_back({{"id", s.id}, {"position", s.position}});
    return Json{{"storeys", Json::array({storey})}, {"stations", stations}}.dump() + "\n";
}

} // namespace samplescene
