// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

/// Which measured pairs become links, once the poses are known. With range: those that see each other by both
/// range maps, and of the long ones (above 6 m) those that no nearer station on the way makes needless.
/// Without range: all. The links of panoramas whose poses hang together always hang together: where sight
/// lines do not suffice, unmatched pairs that see each other are added, and as a last resort pairs that a
/// wall hides.
void chooseLinks(Model& model, const Workplace& workplace);

/// Adds links (mode 2) between panoramas of one group that see each other and are not linked.
void addLinksByPose(Model& model, const Workplace& workplace);

} // namespace nexomap
