// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Sight lines that the library ought to have linked.
#include "benchmarks/linking/MissedSights.h"

#include "benchmarks/linking/LinkFigures.h"
#include "nexomap/src/model/LinkChoice.h"

#include <algorithm>
#include <cstdio>

using namespace nexomap;

namespace {

/// Why the library did not link a pair that sees each other.
const char* whyMissed(const LinkedSet& set, const Pair& pair)
{
    if (set.group[std::size_t(pair.first)] != set.group[std::size_t(pair.second)]) return "not in one group";
    const PairError error =
        errorOf(LinkedSet::relative(set.found, pair), LinkedSet::relative(set.truth, pair));
    if (!isRight(error, set.ranged)) return "the poses are wrong";
    const auto open = set.open.find(pair);
    if (open != set.open.end() && !open->second) return "judged closed";
    const bool measured = set.measured.count(pair) > 0;
    if (open == set.open.end()) return measured ? "measured, not believed" : "not measured";
    if (!measured && set.sights.at(pair).distance_m > kNeighbours_m) return "not measured, far";
    return measured ? "measured, but cut, or a chain took its place" : "near, open and not linked";
}

} // namespace

std::set<Pair> sightsByRule(const LinkedSet& set)
{
    std::vector<Eigen::Vector3d> stations;
    for (const RigidPose& pose : set.truth)
        stations.push_back(pose.t);
    std::vector<std::pair<double, Pair>> by_length;
    for (const auto& [pair, sight] : set.sights)
        if (sight.sees) by_length.emplace_back(sight.distance_m, pair);
    std::sort(by_length.begin(), by_length.end());
    LinkedPairs linked(stations.size());
    std::set<Pair> left;
    for (const auto& [length, pair] : by_length) {
        if (isNeedless(stations, linked, pair.first, pair.second)) continue;
        linked.add(pair.first, pair.second);
        left.insert(pair);
    }
    return left;
}

void printMissedSights(const LinkedSet& set)
{
    for (const Pair& pair : sightsByRule(set)) {
        if (set.links.count(pair)) continue;
        const LinkedSet::Sight& sight = set.sights.at(pair);
        std::printf("  missed sight line %d-%d: co-visible %.3f, %.2f m apart: %s\n", pair.first, pair.second,
                    sight.covisible, sight.distance_m, whyMissed(set, pair));
    }
}
