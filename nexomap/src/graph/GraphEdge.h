// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Geometry.h"
#include "nexomap/src/PairPose.h"

#include <vector>

namespace nexomap {

/// A measured relative pose between two nodes of the pose graph.
struct GraphEdge
{
    int i = 0, j = 0;               ///< node indices; pose maps j's frame into i's
    const PairPose* pose = nullptr; ///< not owned
    bool connector = false;         ///< used only where nothing else holds two parts together
    /// The pose's length ties, by node indices.
    struct Tie
    {
        int i = 0, j = 0;
        double log_ratio = 0.0, sigma = 1.0;
    };
    std::vector<Tie> ties = {};
};

/// The edge's relative pose without its noise.
Pose measuredPose(const GraphEdge& edge);

/// Information that the graph believes: the pair's own, its deviations multiplied by 1.5 because neighbouring
/// features err together, plus what no pair can know better (0.02 degrees, 2 mm, or 0.3 % of a unit
/// direction).
Matrix6d graphInformation(const PairPose& pose);

/// A direction with a length: it keeps its information, the length gets a relative deviation. Without inliers
/// and ties.
PairPose scaledPose(const PairPose& pose, double length, double deviation);

/// Error [rotation, translation] of the edge in frame j at two poses, by which the information is meant.
Vector6d edgeError(const GraphEdge& edge, const Pose& pose_i, const Pose& pose_j);

/// edgeError' * graphInformation * edgeError.
double edgeChi2(const GraphEdge& edge, const Matrix6d& information, const Pose& pose_i, const Pose& pose_j);

/// Node index to component number, components numbered by their first node.
std::vector<int> connectedComponents(int nodes, const std::vector<GraphEdge>& edges,
                                     const std::vector<char>& kept);

/// Indices of the edges of a maximum spanning forest by reliability (Kruskal), connectors last.
std::vector<int> spanningForest(int nodes, const std::vector<GraphEdge>& edges,
                                const std::vector<char>& kept);

/// Poses chained along a spanning forest; each component's first node stands at the origin.
std::vector<Pose> chainPoses(int nodes, const std::vector<GraphEdge>& edges, const std::vector<int>& forest,
                             const std::vector<double>& scales);

} // namespace nexomap
