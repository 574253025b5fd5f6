// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

namespace nexomap {

struct OptimizerOptions
{
    double tilt_sigma_rad = 0.5 * kDegree; ///< how far panoramas lean from the world's vertical
    double height_sigma_m = 0.2;           ///< equal heights of neighbours, for edges without scale
    int iterations = 25;                   ///< of Levenberg-Marquardt, at most
};

/// Weighted least squares over all poses: edge errors whitened by their information and multiplied by a
/// weight, a tilt prior per node. Levenberg-Marquardt on sparse normal equations with right perturbations;
/// one thread, so that the result never depends on the machine's load. Heading and position of each
/// component's first node are held.
/// @param weights  per edge; 0 leaves the edge out
void optimizePoses(const std::vector<GraphEdge>& edges, const std::vector<Matrix6d>& information,
                   const std::vector<double>& weights, const std::vector<int>& component,
                   const OptimizerOptions& options, std::vector<Pose>& poses);

/// Graduated non-convexity with the Geman-McClure kernel (Yang et al. 2020): solves the convex problem first
/// and lets contradicting edges fade. Poses hold the start and the result.
/// @return final weight of every edge, 0 to 1; below 0.25 the edge is an outlier
std::vector<double> optimizeRobustly(const std::vector<GraphEdge>& edges,
                                     const std::vector<Matrix6d>& information, const std::vector<char>& kept,
                                     const std::vector<int>& component, const OptimizerOptions& options,
                                     std::vector<Pose>& poses);

/// Deviation of the panoramas' lean, by the median (1.48 MAD), between 0.05 and 3 degrees.
double tiltSigma(const std::vector<Pose>& poses);

} // namespace nexomap
