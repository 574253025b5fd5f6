// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

namespace nexomap {

/// Bundle adjustment on the sphere: features that several pairs share become points, and the poses of the
/// nodes that edges without scale touch are refined with them so that all bearings (and ranges, where there
/// are any) fit (Triggs et al. 2000; chordal residuals, Cauchy loss). One thread. Poses stay as they were
/// when the adjustment fails.
void adjustBearings(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                    const std::vector<int>& component, double tilt_sigma_rad,
                    const std::vector<double>& length_deviations, std::vector<Pose>& poses);

} // namespace nexomap
