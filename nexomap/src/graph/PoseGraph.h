// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

namespace nexomap {

/// Where every node stands, and which measurements that rests on.
struct GraphSolution
{
    std::vector<Pose> poses;         ///< world_from_pano, laid out group by group
    std::vector<int> component;      ///< per node, numbered by first node
    std::vector<char> kept;          ///< per edge: part of the solution
    std::vector<Eigen::Vector3d> up; ///< per node: the vertical in the world frame, as the prior sees it
};

/// Solves the pose graph: spanning tree, pruning by cycles, graduated non-convexity, least squares with six
/// degrees of freedom and a tilt prior; edges without scale by shared features, then by adjusting all
/// bearings together. Each component's first node becomes level, at heading 0; components stand side by side
/// along x. The result depends on nothing but the arguments.
/// @param held  per edge: must not be cut where it alone holds two parts together
GraphSolution solvePoseGraph(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& held);

} // namespace nexomap
