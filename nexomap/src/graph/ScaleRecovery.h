// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

#include <optional>

namespace nexomap {

/// Lengths of the edges whose translation is a mere direction, relative to each other and, where ranges
/// allow, in metres. Features that two edges share at a panorama have one depth there, which ties the edges'
/// lengths; features with a range tie them to the metre; what neither ties is tied by closed loops.
/// @param tied  written when given: edges whose lengths are tied to each other, not by loops alone, have the
///              same number; -1 for metric edges and those that are not kept
/// @return per edge the factor of its unit translation; 1 for metric edges
std::vector<double> recoverScales(int nodes, const std::vector<GraphEdge>& edges,
                                  const std::vector<char>& kept, std::vector<int>* tied = nullptr);

/// Factor that brings a group without metres to stations 1.5 m above the floor; nullopt where triangulated
/// features show none.
/// @param members  the group's nodes
std::optional<double> scaleByFloor(const std::vector<Pose>& poses, const std::vector<int>& members,
                                   const std::vector<GraphEdge>& edges, const std::vector<char>& kept);

/// Factor that brings a group without metres to its conventional size: by the floor, otherwise a median
/// distance of 2 m between linked stations.
/// @param members  the group's nodes
double conventionalScale(const std::vector<Pose>& poses, const std::vector<int>& members,
                         const std::vector<GraphEdge>& edges, const std::vector<char>& kept);

/// Logarithm of one edge's length over another's by the features that both see at a node they share; nullopt
/// when they share too few, or these disagree.
/// @param spread  written: deviation of the features' opinions
std::optional<double> logLengthRatio(const GraphEdge& a, const GraphEdge& b, int node, double* spread);

/// Where two rays meet best, as distances from the two stations (midpoint method); both 0 when they do not.
/// @param R, t  point_0 = R * point_1 + t
Eigen::Vector2d rayDepths(const Eigen::Vector3d& bearing_0, const Eigen::Vector3d& bearing_1,
                          const Eigen::Matrix3d& R, const Eigen::Vector3d& t);

} // namespace nexomap
