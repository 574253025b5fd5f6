// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

namespace nexomap {

/// The nodes of each component, in their order.
std::vector<std::vector<int>> membersOf(const std::vector<int>& component);

/// Brings each component without any metric edge to its conventional size.
void rescaleGroups(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                   const std::vector<int>& component, std::vector<Pose>& poses);

/// Turns and moves each component as a whole: its first node level and at heading 0; components, the largest
/// first, stand along x with 10 m of room between their stations, the first one's first node at the origin.
/// @param up  per node: where the components' vertical points, in the frame of the poses
void layOutGroups(const std::vector<int>& component, std::vector<Pose>& poses,
                  std::vector<Eigen::Vector3d>& up);

/// How far a group's stations reach along x, the origin included; metres.
struct GroupExtent
{
    double left = 0.0, right = 0.0;
};
GroupExtent extentOf(const std::vector<Pose>& poses);
/// Where along x each group's origin goes so that they stand side by side in this order, the first at 0.
std::vector<double> offsetsSideBySide(const std::vector<GroupExtent>& extents);

/// Component numbers, the largest first, ties by number.
std::vector<int> componentsBySize(const std::vector<int>& component);

} // namespace nexomap
