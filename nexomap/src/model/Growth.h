// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

/// Which of the earlier panoramas a new one, not yet among the nodes, is compared with in full: all of them
/// in a small tour; in a large one those that are most like it at first sight, and those taken just before.
/// Notes in the model what is compared. The newcomer's outline is returned for its node.
std::vector<int> partnersOf(Model& model, const Workplace& workplace, const Panorama& newcomer,
                            std::shared_ptr<const Features>* outline);

/// Pairs of a large tour that would have been compared had the panoramas come in another order: those among
/// the most alike of either. Noted as compared; a pair may stand there twice.
std::vector<NodePair> pairsMissedByOrder(Model& model, const Workplace& workplace);

/// Pairs of a large tour that the solved poses say share a view, and the most alike between parts that
/// nothing joins yet, as far as they were not compared. Noted as compared; a pair may stand there twice.
std::vector<NodePair> pairsByPoses(Model& model, const Workplace& workplace);

} // namespace nexomap
