// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/Relocation.h"

#include "nexomap/src/graph/PoseGraph.h"
#include "nexomap/src/links/SightLine.h"

#include <algorithm>
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

GraphEdge graphEdge(const Edge& edge)
{
    return {edge.node_0, edge.node_1, edge.pose.get(), edge.origin == Origin::ByPose};
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

} // namespace

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
        graph.push_back(graphEdge(edge));
        held.push_back(edge.link);
    }
    const GraphSolution solution = solvePoseGraph(int(model.nodes.size()), graph, held);
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
    std::vector<GraphEdge> graph;
    std::vector<char> held;
    for (const int e : canonicalOrder(model)) {
        const Edge& edge = model.edges[e];
        if (group_of[edge.node_0] != group_of[edge.node_1]) continue;
        graph.push_back(graphEdge(edge));
        held.push_back(edge.link);
    }
    takePoses(model, solvePoseGraph(int(model.nodes.size()), graph, held));
    for (Edge& edge : model.edges)
        if (edge.link) edge.values = valuesByPoses(model, edge.node_0, edge.node_1);
}

} // namespace nexomap
