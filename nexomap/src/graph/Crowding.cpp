// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Rooms that are furnished alike, told by stations that crowd one of them.
#include "nexomap/src/graph/Crowding.h"

#include "nexomap/src/graph/GroupLayout.h"
#include "nexomap/src/graph/LengthTies.h"
#include "nexomap/src/graph/ScaleRecovery.h"

#include <algorithm>
#include <map>

namespace nexomap {
namespace {

constexpr double kSameView = 0.45; // share of the matches that agree
constexpr double kCrowded_m = 1.25;
constexpr double kCrowdedShare = 0.55; // of what the stations' nearest ones are away in the median
constexpr std::size_t kFewest = 4;     // stations of which that is known
constexpr std::size_t kMostShare = 2;  // at most one of so many stations of a group

bool sameView(const PairPose& pose)
{
    return !pose.metric && !pose.rotation_only && double(pose.inliers.size()) > kSameView * pose.matches;
}

} // namespace

std::vector<char> crowdedStations(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                                  const std::vector<int>& tied, const std::vector<int>& component,
                                  const std::vector<Pose>& poses)
{
    std::vector<char> crowded(poses.size(), 0);
    const std::vector<std::vector<int>> members = membersOf(component);
    std::map<int, std::optional<double>> scales;
    const auto length = [&](std::size_t e) { return (poses[edges[e].i].t - poses[edges[e].j].t).norm(); };
    for (std::size_t s = 0; s < edges.size(); ++s) {
        if (!kept[s] || tied[s] < 0 || !sameView(*edges[s].pose)) continue;
        const int group = component[edges[s].i];
        const auto [known, fresh] = scales.try_emplace(group);
        if (fresh) known->second = scaleByFloor(poses, members[std::size_t(group)], edges, kept);
        if (!known->second) continue;
        const double close = kCrowded_m / *known->second;
        if (length(s) >= close) continue;
        // How far the others' nearest stand, whose lengths are tied to this one's.
        std::map<int, double> nearest;
        for (std::size_t e = 0; e < edges.size(); ++e) {
            if (!kept[e] || tied[e] != tied[s] || component[edges[e].i] != group) continue;
            if (sameView(*edges[e].pose) && length(e) < close) continue;
            for (const int n : {edges[e].i, edges[e].j}) {
                const auto at = nearest.emplace(n, length(e)).first;
                at->second = std::min(at->second, length(e));
            }
        }
        std::vector<double> usual;
        for (const auto& [node, distance] : nearest)
            usual.push_back(distance);
        if (usual.size() >= kFewest && length(s) < kCrowdedShare * median(usual))
            crowded[edges[s].i] = crowded[edges[s].j] = 1;
    }
    for (const std::vector<int>& nodes : members) {
        const auto count = std::count_if(nodes.begin(), nodes.end(), [&](int n) { return crowded[n]; });
        if (kMostShare * std::size_t(count) <= nodes.size()) continue;
        for (const int n : nodes)
            crowded[n] = 0;
    }
    return crowded;
}

} // namespace nexomap
