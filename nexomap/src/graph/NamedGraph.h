// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/PoseGraph.h"

#include <memory>
#include <string>

namespace nexomap {

/// A pose graph in the order of its panoramas' names, every edge from the smaller name to the larger. Which
/// of two doubtful measurements goes, and where a chain begins, then does not depend on the order in which
/// the panoramas came.
class NamedGraph
{
public:
    /// @param names  of the nodes, in the caller's order, all different
    /// @param edges  between the caller's nodes, one for each two; their poses must outlive the graph
    NamedGraph(const std::vector<std::string>& names, const std::vector<GraphEdge>& edges);

    const std::vector<GraphEdge>& edges() const { return m_edges; }     ///< by names
    int node(int place) const { return m_nodes[std::size_t(place)]; }   ///< the caller's, of one by names
    int edge(int place) const { return m_numbers[std::size_t(place)]; } ///< the caller's, of one of edges()

    /// The solution in the caller's order: each component is turned by its first node there and laid out so.
    /// @param held  per edge of the caller: must not be cut where it alone holds two parts together
    GraphSolution solve(const std::vector<char>& held) const;

private:
    std::vector<int> m_nodes, m_numbers;
    std::vector<GraphEdge> m_edges;
    std::vector<std::shared_ptr<const PairPose>> m_turned; ///< poses that were measured the other way round
};

} // namespace nexomap
