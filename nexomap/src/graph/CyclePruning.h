// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

namespace nexomap {

/// Cuts edges that most of the short cycles through them contradict, until none is left. The product of the
/// relative poses round each triangle and each square is tested against its transported covariance (chi2, p =
/// 0.001): in six dimensions where all edges are metric, otherwise in rotation, and round triangles also in
/// the directions of their sides, which must close with lengths that the features shared at the corners
/// confirm. Among the edges that fail in the majority, the one that breaks the most failing cycles for the
/// least evidence (the log odds of its reliability) is cut first: when one wrong edge spoils the cycles of
/// many right ones, a count alone would cut the bridge that the wrong one competes with.
/// @param kept  per edge; edges cut become 0
void pruneCycles(int nodes, const std::vector<GraphEdge>& edges, std::vector<char>& kept);

/// Cuts edges without scale, or with that of one range map alone, that are not certain by themselves
/// (reliability below 0.7) and that no sound cycle confirms: a room's twin matches as the room does, and a
/// tour in two parts is better than one folded onto itself.
void dropUnconfirmed(int nodes, const std::vector<GraphEdge>& edges, std::vector<char>& kept);

} // namespace nexomap
