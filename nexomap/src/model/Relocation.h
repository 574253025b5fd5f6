// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"
#include "nexomap/src/model/Model.h"

namespace nexomap {

/// Poses from all measurements that deserve belief; measurements that the graph contradicts are dropped,
/// doubtful ones that it confirms stay. For the end of adding, when no link is chosen yet.
void solveAfterAdding(Model& model);

/// Poses of all nodes anew from the present links and the measurements hidden behind them, then the links'
/// numbers. Nodes that no link joins belong to groups of their own.
void relocate(Model& model);

/// A pose's length ties by node indices; those whose panoramas are gone are left out.
std::vector<GraphEdge::Tie> tiesOf(const Model& model, const PairPose& pose);

/// The link's numbers by the poses of its ends.
LinkValues valuesByPoses(const Model& model, int node_0, int node_1);

} // namespace nexomap
