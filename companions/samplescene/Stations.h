// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Places.h"
#include "companions/samplescene/Scene.h"

/// Chooses where the camera stands.
namespace samplescene {

/// Stations on free floor, each in sight of an earlier one as long as the doors allow it; rooms without a
/// station come first, then the emptier ones.
std::vector<Station> chooseStations(const Options& options, const std::vector<Zone>& zones,
                                    const World& first, const World& later);

} // namespace samplescene
