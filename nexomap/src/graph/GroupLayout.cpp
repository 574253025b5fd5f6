// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/GroupLayout.h"

#include "nexomap/src/graph/ScaleRecovery.h"

#include <algorithm>
#include <numeric>

namespace nexomap {
namespace {
constexpr double kRoomBetweenGroups_m = 10.0;
} // namespace

std::vector<std::vector<int>> membersOf(const std::vector<int>& component)
{
    std::vector<std::vector<int>> members;
    for (std::size_t n = 0; n < component.size(); ++n) {
        if (component[n] >= int(members.size())) members.resize(component[n] + 1);
        members[component[n]].push_back(int(n));
    }
    return members;
}

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

GroupExtent extentOf(const std::vector<Pose>& poses)
{
    GroupExtent extent;
    for (const Pose& pose : poses) {
        extent.left = std::min(extent.left, pose.t.x());
        extent.right = std::max(extent.right, pose.t.x());
    }
    return extent;
}

std::vector<double> offsetsSideBySide(const std::vector<GroupExtent>& extents)
{
    std::vector<double> offsets;
    double free_from = 0.0;
    for (const GroupExtent& extent : extents) {
        offsets.push_back(offsets.empty() ? 0.0 : free_from + kRoomBetweenGroups_m - extent.left);
        free_from = offsets.back() + extent.right;
    }
    return offsets;
}

void layOutGroups(const std::vector<int>& component, std::vector<Pose>& poses,
                  std::vector<Eigen::Vector3d>& up)
{
    const std::vector<std::vector<int>> members = membersOf(component);
    const std::vector<int> order = componentsBySize(component);
    std::vector<GroupExtent> extents;
    for (const int group : order) {
        const int first = members[group].front();
        const Pose first_from_world = poses[first].inverse();
        std::vector<Pose> placed;
        for (const int n : members[group]) {
            poses[n] = n == first ? Pose{} : first_from_world * poses[n];
            up[n] = first_from_world.R * up[n];
            placed.push_back(poses[n]);
        }
        extents.push_back(extentOf(placed));
    }
    const std::vector<double> offsets = offsetsSideBySide(extents);
    for (std::size_t k = 0; k < order.size(); ++k)
        for (const int n : members[order[k]])
            poses[n].t.x() += offsets[k];
}

} // namespace nexomap
