// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Rooms that are furnished alike, told by stations that crowd one of them.
#include "nexomap/src/graph/Crowding.h"

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
    const auto length = [&](std::size_t e) { return (poses[edges[e].i].t - poses[edges[e].j].t).norm(); };
    for (std::size_t s = 0; s < edges.size(); ++s) {
        if (!kept[s] || tied[s] < 0 || !sameView(*edges[s].pose)) continue;
        const int group = component[edges[s].i];
        std::vector<int> members;
        for (std::size_t n = 0; n < poses.size(); ++n)
            if (component[n] == group) members.push_back(int(n));
        const double close = kCrowded_m / conventionalScale(poses, members, edges, kept);
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
    return crowded;
}

} // namespace nexomap
