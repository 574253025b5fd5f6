// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

namespace nexomap {

/// Whether each component has edges with scale and edges without, by component number.
std::vector<char> mixedComponents(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                                  const std::vector<int>& component);

/// Solves edges with scale and edges without together, in the components that have both: relative poses with
/// scale by their information (it sums up all that their features and ranges say, surfaces included), edges
/// without by their features, as points that all panoramas see which matched them (Triggs et al. 2000).
/// Points that only edges with scale know are left out: those edges' information holds them. Cauchy loss; one
/// thread. Poses stay as they were when the refinement fails.
/// @param information  per edge, as the graph believes it
void refineJointly(const std::vector<GraphEdge>& edges, const std::vector<Matrix6d>& information,
                   const std::vector<char>& kept, const std::vector<int>& component, double tilt_sigma_rad,
                   std::vector<Pose>& poses);

} // namespace nexomap
