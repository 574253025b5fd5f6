// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

namespace nexomap {

/// Cuts edges that most of the short cycles through them contradict: the product of the relative poses round
/// each triangle and each square is tested against its transported covariance (chi2, p = 0.001), and the edge
/// with the largest share of failing cycles is cut until none fails in the majority. Cycles of metric edges
/// are tested in six dimensions, others in rotation.
/// @param kept  per edge; edges cut become 0
void pruneCycles(int nodes, const std::vector<GraphEdge>& edges, std::vector<char>& kept);

} // namespace nexomap
