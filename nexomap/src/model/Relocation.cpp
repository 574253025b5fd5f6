// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/Relocation.h"

#include "nexomap/src/graph/GroupLayout.h"
#include "nexomap/src/graph/NamedGraph.h"
#include "nexomap/src/links/SightLine.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace nexomap {
namespace {

constexpr double kBelievable = 0.5;
constexpr double kConfirmedAngle = 0.5 * kDegree;
constexpr double kConfirmed_m = 0.05;

/// Edge numbers in an order that does not depend on how the edges came: a reopened tour lists them otherwise.
std::vector<int> canonicalOrder(const Model& model)
{
    std::vector<int> order(model.edges.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return pairOf(model.edges[a].node_0, model.edges[a].node_1) <
               pairOf(model.edges[b].node_0, model.edges[b].node_1);
    });
    return order;
}

GraphEdge graphEdge(const Model& model, const Edge& edge)
{
    return {edge.node_0, edge.node_1, edge.pose.get(), edge.origin == Origin::ByPose,
            tiesOf(model, *edge.pose)};
}

void takePoses(Model& model, const GraphSolution& solution)
{
    for (std::size_t n = 0; n < model.nodes.size(); ++n) {
        model.nodes[n].pose = solution.poses[n];
        model.nodes[n].up = solution.up[n];
        model.nodes[n].vertex = solution.poses[n].t.head<2>();
    }
}

/// Whether the poses, found without it, say what a doubtful measurement says.
bool confirms(const GraphSolution& solution, const Edge& edge)
{
    if (!edge.pose->metric || edge.pose->rotation_only) return false;
    if (solution.component[edge.node_0] != solution.component[edge.node_1]) return false;
    const Pose step = solution.poses[edge.node_0].inverse() * solution.poses[edge.node_1];
    return rotationAngle(step.R, edge.pose->R_0_from_1) < kConfirmedAngle &&
           (step.t - edge.pose->t_0_from_1).norm() < kConfirmed_m + 0.01 * step.t.norm();
}

/// What was solved before, if nothing has changed since.
std::shared_ptr<const SettledGroup> findSettled(const Model& model, const SettledGroup& group)
{
    const auto same = [](const SettledGroup::Measurement& a, const SettledGroup::Measurement& b) {
        return a.node_0 == b.node_0 && a.node_1 == b.node_1 && a.pose == b.pose &&
               a.connector == b.connector && a.held == b.held;
    };
    for (const auto& known : model.settled)
        if (known->nodes == group.nodes &&
            std::equal(known->measurements.begin(), known->measurements.end(), group.measurements.begin(),
                       group.measurements.end(), same))
            return known;
    return nullptr;
}

/// Solves one group by itself: nothing that happens to the others moves it.
void settle(const Model& model, SettledGroup& group)
{
    std::map<int, int> place;
    std::vector<std::string> names;
    for (const int n : group.nodes) {
        place.emplace(n, int(place.size()));
        names.push_back(model.nodes[std::size_t(n)].name);
    }
    std::vector<GraphEdge> graph;
    std::vector<char> held;
    for (const SettledGroup::Measurement& m : group.measurements) {
        std::vector<GraphEdge::Tie> ties;
        for (GraphEdge::Tie tie : tiesOf(model, *m.pose)) {
            const auto i = place.find(tie.i), j = place.find(tie.j);
            if (i == place.end() || j == place.end()) continue;
            ties.push_back({i->second, j->second, tie.log_ratio, tie.sigma});
        }
        graph.push_back({place.at(m.node_0), place.at(m.node_1), m.pose.get(), m.connector, std::move(ties)});
        held.push_back(m.held);
    }
    GraphSolution solution = NamedGraph(names, graph).solve(held);
    group.poses = std::move(solution.poses);
    group.up = std::move(solution.up);
}

/// Lays the groups side by side, the largest first.
void takePoses(Model& model)
{
    std::vector<GroupExtent> extents;
    for (const auto& group : model.settled)
        extents.push_back(extentOf(group->poses));
    const std::vector<double> offsets = offsetsSideBySide(extents);
    for (std::size_t g = 0; g < model.settled.size(); ++g) {
        const SettledGroup& group = *model.settled[g];
        for (std::size_t k = 0; k < group.nodes.size(); ++k) {
            Node& node = model.nodes[group.nodes[k]];
            node.pose = group.poses[k];
            node.pose.t.x() += offsets[g];
            node.up = group.up[k];
            node.vertex = node.pose.t.head<2>();
        }
    }
}

} // namespace

std::vector<GraphEdge::Tie> tiesOf(const Model& model, const PairPose& pose)
{
    std::vector<GraphEdge::Tie> ties;
    for (const LengthTie& tie : pose.ties) {
        const int i = model.findNode(tie.name_0), j = model.findNode(tie.name_1);
        if (i >= 0 && j >= 0) ties.push_back({i, j, tie.log_ratio, tie.sigma});
    }
    return ties;
}

LinkValues valuesByPoses(const Model& model, int node_0, int node_1)
{
    const Node &a = model.nodes[node_0], &b = model.nodes[node_1];
    const auto height = [](const Node& node) {
        return node.height_m > 0.0 ? node.height_m : heightOf(nullptr);
    };
    return linkValues(a.pose, b.pose, height(a), height(b), a.up);
}

void solveAfterAdding(Model& model)
{
    std::vector<GraphEdge> graph;
    std::vector<char> held;
    std::vector<int> believed;
    for (const int e : canonicalOrder(model)) {
        const Edge& edge = model.edges[e];
        if (edge.origin == Origin::Matched && edge.reliability < kBelievable) continue;
        believed.push_back(e);
        graph.push_back(graphEdge(model, edge));
        held.push_back(edge.link);
    }
    const GraphSolution solution = NamedGraph(model.names(), graph).solve(held);
    takePoses(model, solution);
    std::vector<char> stays(model.edges.size(), 0);
    for (std::size_t k = 0; k < believed.size(); ++k)
        stays[believed[k]] = solution.kept[k] || model.edges[believed[k]].link;
    for (std::size_t e = 0; e < model.edges.size(); ++e) {
        Edge& edge = model.edges[e];
        if (stays[e] || edge.reliability >= kBelievable || !confirms(solution, edge)) continue;
        stays[e] = 1;
        // A wrong pose agrees with the others by chance in fewer than one of a thousand cases.
        edge.reliability = edge.reliability / (edge.reliability + (1.0 - edge.reliability) * 1e-2);
        if (edge.reliability < kBelievable) stays[e] = 0;
    }
    std::vector<Edge> edges;
    for (const int e : canonicalOrder(model))
        if (stays[e]) edges.push_back(model.edges[e]);
    model.edges = std::move(edges);
}

void relocate(Model& model)
{
    const std::vector<std::vector<int>> groups = model.groups();
    std::vector<int> group_of(model.nodes.size(), 0);
    for (std::size_t g = 0; g < groups.size(); ++g)
        for (const int n : groups[g])
            group_of[n] = int(g);
    std::vector<SettledGroup> next(groups.size());
    for (std::size_t g = 0; g < groups.size(); ++g)
        next[g].nodes = groups[g];
    for (const int e : canonicalOrder(model)) {
        const Edge& edge = model.edges[e];
        if (group_of[edge.node_0] != group_of[edge.node_1]) continue;
        next[group_of[edge.node_0]].measurements.push_back(
            {edge.node_0, edge.node_1, edge.pose, edge.origin == Origin::ByPose, edge.link});
    }
    std::vector<std::shared_ptr<const SettledGroup>> settled;
    for (SettledGroup& group : next) {
        std::shared_ptr<const SettledGroup> known = findSettled(model, group);
        if (!known) {
            settle(model, group);
            known = std::make_shared<const SettledGroup>(std::move(group));
        }
        settled.push_back(std::move(known));
    }
    model.settled = std::move(settled);
    takePoses(model);
    for (Edge& edge : model.edges)
        if (edge.link) edge.values = valuesByPoses(model, edge.node_0, edge.node_1);
}

} // namespace nexomap
