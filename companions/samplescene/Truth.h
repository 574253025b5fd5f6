// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Scene.h"

#include <string>
#include <vector>

/// truth.json: what a linking of the scene ought to find.
namespace samplescene {

/// @param files  name of each station's panorama file, without folder
/// @return the text of the file
std::string truthOf(const Scene& scene, const std::vector<std::string>& files);

} // namespace samplescene
