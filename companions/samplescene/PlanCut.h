// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/World.h"

#include <vector>

/// What a horizontal plane cuts out of the shapes of a place.
namespace samplescene {

/// The convex outline of a cut, counter-clockwise, metres; round ones within 1 mm.
using Outline = std::vector<Vec2>;

/// @return empty where the plane misses the shape
Outline cutAt(const Shape& shape, float height);

struct PlanCut
{
    std::vector<Outline> walls;     ///< masonry; of a street, the houses
    std::vector<Outline> openings;  ///< doors, windows, panes
    std::vector<Outline> furniture; ///< everything else
};

PlanCut cutAt(const World& world, float height);

} // namespace samplescene
