// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/LinkedPairs.h"

namespace nexomap {

/// Which measured pairs become links, once the poses are known. With range: those that see each other by both
/// range maps, and of the long ones (above 6 m) those that no nearer station on the way makes needless.
/// Without range: all. The links of panoramas whose poses hang together always hang together: where sight
/// lines do not suffice, unmatched pairs that see each other are added, and as a last resort pairs that a
/// wall hides.
void chooseLinks(Model& model, const Workplace& workplace);

/// Adds links (mode 2) between panoramas of one group that see each other and are not linked, the near ones
/// first; beyond 6 m only where no nearer station on the way makes them needless.
/// @param farthest_m  how far apart they may stand
void addLinksByPose(Model& model, const Workplace& workplace, double farthest_m);

/// Relative-neighbourhood rule (Toussaint 1980): beyond 6 m a station on the way, within 20 degrees from one
/// end's view, linked to both ends and nearer to both, makes their link needless.
bool isNeedless(const std::vector<Eigen::Vector3d>& stations, const LinkedPairs& linked, int a, int b);

constexpr double kNeighbours_m = 6.0;    ///< nearer stations that see each other are always linked
constexpr double kFarthestLink_m = 15.0; ///< no link by pose is longer

} // namespace nexomap
