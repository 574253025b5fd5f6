// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

namespace nexomap {

/// Stations that pictures alone place where another one stands already: much closer than stations of the tour
/// stand otherwise, and seeing the same. Nobody takes the same view twice on purpose, while rooms that are
/// furnished alike are taken from alike places, and their pictures agree better than those of true
/// neighbours. Which of the two stands in the wrong room nothing tells. Where the floor does not tell how far
/// a metre is, or where more than half of a group stand so, the tour was taken densely: nobody is crowded.
/// @param edges      measured, without lengths of their own where they have no scale
/// @param tied       of each edge what its length is tied to, as recoverScales() writes it: others say
/// nothing
/// @param component  of each node its group
/// @param poses      of the nodes, each group in a scale of its own
/// @return one flag a node
std::vector<char> crowdedStations(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                                  const std::vector<int>& tied, const std::vector<int>& component,
                                  const std::vector<Pose>& poses);

} // namespace nexomap
