// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

#include <Eigen/Core>

#include <vector>

namespace nexomap {

/// Edges in sets whose lengths are tied within, and are known up to one factor.
struct LengthSets
{
    std::vector<int> of;              ///< per edge: its set; 0: tied to the metre; -1: metric, or not kept
    int count = 0;                    ///< sets, the metre's included
    std::vector<char> held;           ///< per set: whether the others of its group go by it
    Eigen::VectorXd log_lengths = {}; ///< per edge, within its set
};

/// What stands in a building stands at few heights: floor, ceiling, tables, sills, lintels, lamps. A set's
/// factor is the one that lays the heights of its triangulated points onto those of the sets that are known
/// already: likelihood against their density, with a share of points anywhere; each set that fits clearly
/// better with one factor than with any other joins those that are known. Heights count from the cameras,
/// which stand equally high within a few centimetres.
/// @param component  of each node
/// @return per set the logarithm of its factor; NaN where heights do not tell, 0 for held sets and the
/// metre's
std::vector<double> factorsByHeights(const std::vector<GraphEdge>& edges, const std::vector<int>& component,
                                     const LengthSets& sets);

/// What the heights of all others of its set say about each edge, where they tell it clearly.
/// @param set  per edge, as above
/// @return per edge what to add to the logarithm of its length; NaN where heights do not tell
std::vector<double> correctionsByHeights(const std::vector<GraphEdge>& edges, const std::vector<int>& set,
                                         const Eigen::VectorXd& log_lengths);

} // namespace nexomap
