// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/GroupLayout.h"

#include "nexomap/src/graph/ScaleRecovery.h"

#include <algorithm>
#include <numeric>

namespace nexomap {
namespace {

constexpr double kRoomBetweenGroups_m = 10.0;

std::vector<std::vector<int>> membersOf(const std::vector<int>& component)
{
    std::vector<std::vector<int>> members;
    for (std::size_t n = 0; n < component.size(); ++n) {
        if (component[n] >= int(members.size())) members.resize(component[n] + 1);
        members[component[n]].push_back(int(n));
    }
    return members;
}

} // namespace

std::vector<int> componentsBySize(const std::vector<int>& component)
{
    const std::vector<std::vector<int>> members = membersOf(component);
    std::vector<int> order(members.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return members[a].size() > members[b].size(); });
    return order;
}

void rescaleGroups(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                   const std::vector<int>& component, std::vector<Pose>& poses)
{
    for (const std::vector<int>& members : membersOf(component)) {
        bool metric = false;
        for (std::size_t e = 0; e < edges.size(); ++e) {
            if (!kept[e] || component[edges[e].i] != component[members.front()]) continue;
            metric |= edges[e].pose->metric;
            for (const PairInlier& inlier : edges[e].pose->inliers)
                metric |= inlier.range_0_m > 0.f || inlier.range_1_m > 0.f;
        }
        if (metric || members.size() < 2) continue;
        const double scale = conventionalScale(poses, members, edges, kept);
        for (const int n : members)
            poses[n].t *= scale;
    }
}

void layOutGroups(const std::vector<int>& component, std::vector<Pose>& poses,
                  std::vector<Eigen::Vector3d>& up)
{
    const std::vector<std::vector<int>> members = membersOf(component);
    up.assign(poses.size(), Eigen::Vector3d::UnitZ());
    double free_from = 0.0;
    bool first_group = true;
    for (const int group : componentsBySize(component)) {
        const int first = members[group].front();
        const Pose first_from_world = poses[first].inverse();
        double left = 0.0, right = 0.0;
        for (const int n : members[group]) {
            poses[n] = n == first ? Pose{} : first_from_world * poses[n];
            up[n] = first_from_world.R.col(2);
            left = std::min(left, poses[n].t.x());
            right = std::max(right, poses[n].t.x());
        }
        const double offset = first_group ? 0.0 : free_from + kRoomBetweenGroups_m - left;
        for (const int n : members[group])
            poses[n].t.x() += offset;
        free_from = offset + right;
        first_group = false;
    }
}

} // namespace nexomap
