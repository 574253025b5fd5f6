// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

/// Opens a match by hand; one announced before for the same two starts again without pairs.
void announceMatch(Model& model, const std::string& name_0, const std::string& name_1);

void addPick(Model& model, const std::string& name_0, const std::string& name_1, const PickedPair& pick);

/// Solves the announced match and makes it a link.
void analyseMatch(Model& model, const Workplace& workplace, const std::string& name_0,
                  const std::string& name_1);

/// Takes a match away: its link and its measurement.
/// @return the key of files that go with it; empty for one that was only announced
std::string deleteMatch(Model& model, const std::string& name_0, const std::string& name_1);

} // namespace nexomap
