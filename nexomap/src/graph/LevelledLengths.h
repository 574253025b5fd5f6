// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphOptimizer.h"

namespace nexomap {

constexpr double kVagueLength = 0.03; ///< deviation of a length of which heights tell nothing, relative

/// Lengths to a few tenths of a percent, once the poses stand to a few percent: stations differ in height by
/// what their directions say, so that all triangulated points have a height in the world, and what stands in
/// a building stands at few. An edge's length is the one that lays its points onto the levels of all others
/// best, near where it was; the poses are solved again with these lengths, three times.
/// @param kept   edges without scale among them are looked at; groups of six such edges and more
/// @param poses  moved
/// @return per edge the relative deviation of its length: kVagueLength where heights do not tell it
std::vector<double> levelLengths(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                                 const std::vector<int>& component, const OptimizerOptions& options,
                                 std::vector<Pose>& poses);

} // namespace nexomap
