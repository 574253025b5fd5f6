// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Stations.h"

#include "companions/samplescene/Parallel.h"
#include "companions/samplescene/Random.h"

#include <algorithm>

namespace samplescene {
namespace {

constexpr float kEye = 1.55f;
constexpr float kFarthest = 5.6f; ///< metres to an earlier station in sight
constexpr double kTurn = 6.283185307179586;

struct Candidate
{
    float x = 0, y = 0, ground = 0;
    std::size_t zone = 0;
    float nearest = 1e9f; ///< distance to a chosen station in sight
    int seen = 0;         ///< chosen stations in sight
    float closest = 1e9f; ///< distance to any chosen station
    bool chosen = false;
    std::vector<std::size_t> sees; ///< other candidates in sight and near enough for a neighbour
};

/// Room for a stand and a person: no solid within 0.4 m from the ankle to the head.
bool standable(const World& world, Candidate& c)
{
    const Hit below = world.trace({c.x, c.y, kEye}, {0, 0, -1}, 1e-3f, 10);
    if (below.shape < 0) return false;
    c.ground = kEye - below.distance;
    if (std::fabs(c.ground) > 0.15f) return false;
    for (const float z : {0.12f, 0.35f, 0.6f, 0.9f, 1.2f, kEye, 1.75f}) {
        if (world.bvh.inside({c.x, c.y, z})) return false;
        for (int i = 0; i < 12; ++i) {
            const float a = static_cast<float>(i) * 0.5235988f;
            if (world.bvh.blocked({c.x, c.y, z}, {std::cos(a), std::sin(a), 0}, 1e-4f, 0.4f, true))
                return false;
        }
    }
    return true;
}

/// The cameras see each other with a hand's breadth to spare.
bool inSight(const World& world, const Candidate& a, const Candidate& b)
{
    const Vec3 from{a.x, a.y, a.ground + kEye};
    const Vec3 to{b.x, b.y, b.ground + kEye};
    const Vec3 way = to - from;
    const Vec3 side = normalized(cross(way, {0, 0, 1})) * 0.1f;
    for (const Vec3 shift : {Vec3{}, side, -side, Vec3{0, 0, 0.08f}, Vec3{0, 0, -0.08f}})
        if (world.bvh.blocked(from + shift, way, 1e-4f, 1, true)) return false;
    return true;
}

std::vector<Candidate> candidates(const std::vector<Zone>& zones, const World& first, const World& later,
                                  Random& random)
{
    std::vector<Candidate> list;
    for (std::size_t z = 0; z < zones.size(); ++z) {
        const Zone& zone = zones[z];
        const float area = (zone.x1 - zone.x0) * (zone.y1 - zone.y0);
        const float step = std::max(0.32f, std::sqrt(area / 120));
        for (float y = zone.y0 + 0.4f; y < zone.y1 - 0.4f; y += step) {
            for (float x = zone.x0 + 0.4f; x < zone.x1 - 0.4f; x += step) {
                Candidate c;
                c.x = x + random.uniform(-0.5f, 0.5f) * step;
                c.y = y + random.uniform(-0.5f, 0.5f) * step;
                c.zone = z;
                if (standable(first, c) && (&first == &later || standable(later, c))) list.push_back(c);
            }
        }
    }
    return list;
}

void findSights(const World& first, const World& later, std::vector<Candidate>& list, int threads)
{
    parallelFor(list.size(), 8, threads, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            for (std::size_t j = 0; j < list.size(); ++j) {
                const float d = std::hypot(list[i].x - list[j].x, list[i].y - list[j].y);
                if (i == j || d > kFarthest || d < 0.3f) continue;
                const Candidate& a = list[std::min(i, j)]; // the same answer from either end
                const Candidate& b = list[std::max(i, j)];
                if (inSight(first, a, b) && (&first == &later || inSight(later, a, b)))
                    list[i].sees.push_back(j);
            }
        }
    });
}

/// Rooms without a station that a camera here would bring into sight for the first time.
int roomsOpened(const std::vector<Candidate>& list, const Candidate& c, const std::vector<int>& taken,
                const std::vector<bool>& inReach)
{
    std::vector<std::size_t> opened;
    for (const std::size_t j : c.sees) {
        const std::size_t zone = list[j].zone;
        if (zone == c.zone || taken[zone] > 0 || inReach[zone]) continue;
        if (std::find(opened.begin(), opened.end(), zone) == opened.end()) opened.push_back(zone);
    }
    return static_cast<int>(opened.size());
}

std::string idOf(std::uint32_t seed, std::uint32_t kind, std::uint32_t index)
{
    Random random(hash(hash(seed, kind), 0x1d5U, index));
    std::string id; // 26^14 are enough for chance
    for (int i = 0; i < 14; ++i)
        id += static_cast<char>('A' + random.below(26));
    return id;
}

Station stationAt(const Options& options, const Candidate& c, const std::string& room, std::uint32_t index)
{
    Random random(hash(options.seed, 0x57a7U, index));
    Station s;
    s.id = idOf(options.seed, static_cast<std::uint32_t>(options.kind), index);
    s.room = room;
    s.state = options.movedFurniture > 0 && static_cast<int>(index) >= (options.count + 1) / 2 ? 1 : 0;
    s.cameraHeight = 1.5 + 0.1 * static_cast<double>(random.uniform());
    s.position = {static_cast<double>(c.x), static_cast<double>(c.y),
                  static_cast<double>(c.ground) + s.cameraHeight};
    s.exposure = options.exposureSteps * (2 * static_cast<double>(random.uniform()) - 1);
    const double heading = kTurn * (static_cast<double>(random.uniform()) - 0.5);
    const double lean = options.lean_deg * kTurn / 360;
    // Rz(heading) * Rx(a) * Ry(b): the stand leans, its heading is that of the level rest.
    const double a = lean * static_cast<double>(random.gaussian());
    const double b = lean * static_cast<double>(random.gaussian());
    const double ch = std::cos(heading), sh = std::sin(heading);
    const double ca = std::cos(a), sa = std::sin(a);
    const double cb = std::cos(b), sb = std::sin(b);
    const std::array<double, 9> tilt = {cb, 0, sb, sa * sb, ca, -sa * cb, -ca * sb, sa, ca * cb};
    for (std::size_t column = 0; column < 3; ++column) {
        s.rotation[column] = ch * tilt[column] - sh * tilt[3 + column];
        s.rotation[3 + column] = sh * tilt[column] + ch * tilt[3 + column];
        s.rotation[6 + column] = tilt[6 + column];
    }
    return s;
}

} // namespace

std::vector<Station> chooseStations(const Options& options, const std::vector<Zone>& zones,
                                    const World& first, const World& later)
{
    Random random(hash(options.seed, 0xca3e7aU));
    std::vector<Candidate> list = candidates(zones, first, later, random);
    findSights(first, later, list, options.threads);
    std::vector<int> taken(zones.size());
    std::vector<bool> inReach(zones.size()); // a place in it is in sight of a station
    std::vector<float> jitter;
    for (std::size_t i = 0; i < list.size(); ++i)
        jitter.push_back(random.uniform());
    const float good = options.kind == Kind::Street ? 4.2f : 2.8f; // metres from station to station
    // A room behind a shut door is worth a station of its own; otherwise all are to be joined by sight.
    const float unseenPenalty = options.closedDoors > 0 ? 1.5f : 50.0f;
    std::vector<Station> stations;
    while (static_cast<int>(stations.size()) < options.count) {
        Candidate* best = nullptr;
        float bestScore = -1e9f;
        for (std::size_t i = 0; i < list.size(); ++i) {
            Candidate& c = list[i];
            if (c.chosen) continue;
            const Zone& zone = zones[c.zone];
            float score = 0.4f * jitter[i];
            if (stations.empty()) { // somewhere in the middle of the first zone
                const float dx = c.x - (zone.x0 + zone.x1) / 2;
                const float dy = c.y - (zone.y0 + zone.y1) / 2;
                score -= static_cast<float>(c.zone) + 0.3f * std::sqrt(dx * dx + dy * dy);
            } else {
                const float area = (zone.x1 - zone.x0) * (zone.y1 - zone.y0);
                if (taken[c.zone] == 0) score += 2.5f;
                score -= 6.0f * static_cast<float>(taken[c.zone]) / std::max(4.0f, area);
                if (c.seen == 0)
                    score -= unseenPenalty;
                else
                    score -= 0.6f * std::fabs(c.nearest - good);
                score += 0.3f * static_cast<float>(std::min(c.seen, 3));
                score += 1.3f * static_cast<float>(roomsOpened(list, c, taken, inReach));
                if (c.closest < 1.2f) score -= 4 * (1.2f - c.closest) + 2;
            }
            if (score > bestScore) {
                bestScore = score;
                best = &c;
            }
        }
        if (!best) break;
        best->chosen = true;
        ++taken[best->zone];
        stations.push_back(
            stationAt(options, *best, zones[best->zone].name, static_cast<std::uint32_t>(stations.size())));
        for (Candidate& c : list)
            c.closest = std::min(c.closest, std::hypot(c.x - best->x, c.y - best->y));
        for (const std::size_t j : best->sees) {
            ++list[j].seen;
            list[j].nearest = std::min(list[j].nearest, std::hypot(list[j].x - best->x, list[j].y - best->y));
            inReach[list[j].zone] = true;
        }
    }
    return stations;
}

} // namespace samplescene
