// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Scene.h"

#include <string>

/// What a map of the scene ought to show: its true surfaces and its floor plan. Both of the first state.
namespace samplescene {

/// surfaces.ply: binary, little-endian; float x, y, z in metres in the world; triangles, each with a uchar
/// `part` whose numbers are those of `Part`.
std::string surfacesOf(const Scene& scene);

/// floorplan.json: `storeys` [{`floor`, `ceiling` (null outdoors), `cut` = height of the cut, `rooms`
/// [{`name`, `low` [2], `high` [2]}] from wall face to wall face, `walls`, `openings`, `furniture` = convex
/// outlines
/// [[x, y], ...]}], `stations` [{`id`, `position` [3]}]; metres in the world.
std::string floorPlanOf(const Scene& scene);

} // namespace samplescene
