// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/PoseGraph.h"

#include "nexomap/src/graph/BearingAdjustment.h"
#include "nexomap/src/graph/Crowding.h"
#include "nexomap/src/graph/CyclePruning.h"
#include "nexomap/src/graph/GraphOptimizer.h"
#include "nexomap/src/graph/GroupLayout.h"
#include "nexomap/src/graph/JointRefinement.h"
#include "nexomap/src/graph/LevelledLengths.h"
#include "nexomap/src/graph/ScaleRecovery.h"

#include <algorithm>

namespace nexomap {
namespace {

/// An edge whose relative pose the graph is to believe, with the length that was found for it.
struct ScaledEdges
{
    std::vector<PairPose> poses; ///< copies without their inliers
    std::vector<GraphEdge> edges;
};

/// Gives directions the lengths found: the direction keeps its information, the length gets 5 %.
ScaledEdges scaledEdges(const std::vector<GraphEdge>& edges, const std::vector<double>& scales)
{
    ScaledEdges scaled;
    scaled.poses.reserve(edges.size());
    scaled.edges = edges;
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const PairPose& from = *edges[e].pose;
        if (from.metric || from.rotation_only) continue;
        scaled.poses.push_back(scaledPose(from, scales[e], 0.05));
        scaled.edges[e].pose = &scaled.poses.back();
    }
    return scaled;
}

/// Takes back cut edges where they alone hold two parts of the graph together, the most reliable first.
void reconnect(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& held,
               std::vector<char>& kept)
{
    std::vector<int> cut;
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (!kept[e] && held[e]) cut.push_back(int(e));
    std::stable_sort(cut.begin(), cut.end(),
                     [&](int a, int b) { return edges[a].pose->reliability > edges[b].pose->reliability; });
    for (const int e : cut) {
        const std::vector<int> component = connectedComponents(nodes, edges, kept);
        if (component[edges[e].i] != component[edges[e].j]) kept[e] = 1;
    }
}

/// Edges for the solution: all but connectors, and of those the ones a spanning forest needs.
std::vector<char> withoutIdleConnectors(int nodes, const std::vector<GraphEdge>& edges)
{
    std::vector<char> kept(edges.size(), 1);
    for (std::size_t e = 0; e < edges.size(); ++e)
        kept[e] = !edges[e].connector;
    for (const int e : spanningForest(nodes, edges, std::vector<char>(edges.size(), 1)))
        kept[e] = 1;
    return kept;
}

bool hasScaleless(const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (kept[e] && !edges[e].pose->metric) return true;
    return false;
}

/// Stations that stand where another one does stay by themselves, but for what an author has linked.
bool dropCrowded(const std::vector<GraphEdge>& measured, const std::vector<int>& tied,
                 const std::vector<int>& component, const std::vector<Pose>& poses,
                 const std::vector<char>& held, std::vector<char>& kept)
{
    const std::vector<char> crowded = crowdedStations(measured, kept, tied, component, poses);
    bool changed = false;
    for (std::size_t e = 0; e < measured.size(); ++e) {
        if (!kept[e] || held[e] || measured[e].pose->metric) continue;
        if (!crowded[measured[e].i] && !crowded[measured[e].j]) continue;
        kept[e] = 0;
        changed = true;
    }
    return changed;
}

} // namespace

GraphSolution solvePoseGraph(int nodes, const std::vector<GraphEdge>& measured, const std::vector<char>& held)
{
    GraphSolution solution;
    solution.kept = withoutIdleConnectors(nodes, measured);
    pruneCycles(nodes, measured, solution.kept);
    dropUnconfirmed(nodes, measured, solution.kept);
    reconnect(nodes, measured, held, solution.kept);

    std::vector<int> tied;
    const std::vector<double> scales = recoverScales(nodes, measured, solution.kept, &tied);
    const ScaledEdges scaled = scaledEdges(measured, scales);
    const std::vector<GraphEdge>& edges = scaled.edges;
    std::vector<Matrix6d> information;
    for (const GraphEdge& edge : edges)
        information.push_back(graphInformation(*edge.pose));

    const std::vector<double> ones(edges.size(), 1.0);
    const auto chain = [&] {
        return chainPoses(nodes, edges, spanningForest(nodes, edges, solution.kept), ones);
    };
    OptimizerOptions options;
    solution.poses = chain();
    solution.component = connectedComponents(nodes, edges, solution.kept);
    const std::vector<double> weights =
        optimizeRobustly(edges, information, solution.kept, solution.component, options, solution.poses);
    bool changed = false;
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!solution.kept[e] || weights[e] >= 0.25) continue;
        solution.kept[e] = 0;
        changed = true;
    }
    if (changed) solution.component = connectedComponents(nodes, edges, solution.kept);
    changed |= dropCrowded(measured, tied, solution.component, solution.poses, held, solution.kept);
    if (changed) {
        reconnect(nodes, edges, held, solution.kept);
        solution.component = connectedComponents(nodes, edges, solution.kept);
        solution.poses = chain();
    }
    const std::vector<double> used(solution.kept.begin(), solution.kept.end());
    optimizePoses(edges, information, used, solution.component, options, solution.poses);
    if (nodes >= 4) {
        options.tilt_sigma_rad = tiltSigma(solution.poses);
        optimizePoses(edges, information, used, solution.component, options, solution.poses);
    }
    if (hasScaleless(measured, solution.kept)) {
        const std::vector<char> mixed = mixedComponents(measured, solution.kept, solution.component);
        std::vector<char> bare = solution.kept;
        for (std::size_t e = 0; e < measured.size(); ++e)
            bare[e] = solution.kept[e] && !mixed[solution.component[measured[e].i]];
        const std::vector<double> deviations =
            levelLengths(measured, bare, solution.component, options, solution.poses);
        adjustBearings(measured, bare, solution.component, options.tilt_sigma_rad, deviations,
                       solution.poses);
        refineJointly(measured, information, solution.kept, solution.component, options.tilt_sigma_rad,
                      solution.poses);
        rescaleGroups(measured, solution.kept, solution.component, solution.poses);
    }
    solution.up.assign(std::size_t(nodes), Eigen::Vector3d::UnitZ());
    layOutGroups(solution.component, solution.poses, solution.up);
    return solution;
}

} // namespace nexomap
