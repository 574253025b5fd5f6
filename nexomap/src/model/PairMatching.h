// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

#include <functional>

namespace nexomap {

/// Tours up to this many panoramas compare all pairs in full and keep all range maps at hand.
constexpr int kAllPairs = 100;

using PairFunction = std::function<std::optional<PairPose>(const Panorama&, const Panorama&)>;

/// Compares pairs (first index smaller) on all processors, a bounded number of panoramas at a time awake.
/// @return one edge a pair that has a pose, in the order of the sorted pairs
std::vector<Edge> comparePairs(const Model& model, const Workplace& workplace, std::vector<NodePair> pairs,
                               const PairFunction& compare);

/// The edge that a measured pose makes.
Edge measuredEdge(int node_0, int node_1, PairPose pose);

/// Large tours only: packs the range maps of all panoramas but those used last.
void restPanoramas(const Model& model);

} // namespace nexomap
