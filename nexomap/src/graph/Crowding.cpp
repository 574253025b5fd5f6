// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Rooms that are furnished alike, told by stations that crowd one of them.
#include "nexomap/src/graph/Crowding.h"

#include "nexomap/src/graph/LengthTies.h"
#include "nexomap/src/graph/ScaleRecovery.h"

#include <algorithm>
#include <limits>

namespace nexomap {
namespace {

constexpr double kSameView = 0.45; // share of the matches that agree
constexpr double kCrowded_m = 1.25;
constexpr double kCrowdedShare = 0.55; // of what the stations' nearest ones are away in the median

bool sameView(const PairPose& pose)
{
    return !pose.metric && !pose.rotation_only && double(pose.inliers.size()) > kSameView * pose.matches;
}

} // namespace

std::vector<char> crowdedStations(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                                  const std::vector<int>& component, const std::vector<Pose>& poses)
{
    std::vector<char> crowded(poses.size(), 0);
    const auto length = [&](const GraphEdge& edge) { return (poses[edge.i].t - poses[edge.j].t).norm(); };
    const int groups = component.empty() ? 0 : *std::max_element(component.begin(), component.end()) + 1;
    for (int group = 0; group < groups; ++group) {
        std::vector<int> members;
        for (std::size_t n = 0; n < poses.size(); ++n)
            if (component[n] == group) members.push_back(int(n));
        if (members.size() < 3) continue;
        const double close = kCrowded_m / conventionalScale(poses, members, edges, kept);
        std::vector<double> nearest(poses.size(), std::numeric_limits<double>::infinity()), usual;
        std::vector<std::size_t> suspects;
        for (std::size_t e = 0; e < edges.size(); ++e) {
            const int i = edges[e].i, j = edges[e].j;
            if (component[i] != group || component[j] != group) continue;
            if (sameView(*edges[e].pose) && length(edges[e]) < close)
                suspects.push_back(e); // whether believed or not: both stand there
            else if (kept[e])
                for (const int n : {i, j})
                    nearest[n] = std::min(nearest[n], length(edges[e]));
        }
        for (const int n : members)
            if (nearest[n] < std::numeric_limits<double>::infinity()) usual.push_back(nearest[n]);
        if (suspects.empty() || usual.empty()) continue;
        const double least = kCrowdedShare * median(usual);
        for (const std::size_t e : suspects)
            if (length(edges[e]) < least) crowded[edges[e].i] = crowded[edges[e].j] = 1;
    }
    return crowded;
}

} // namespace nexomap
