// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/World.h"

#include <array>
#include <cstdint>
#include <vector>

/// The true surfaces of a place as triangles.
namespace samplescene {

struct Triangle
{
    std::array<std::uint32_t, 3> corner{}; ///< indices, counter-clockwise as seen from outside
    Part part = Part::Furniture;
};

struct Triangles
{
    std::vector<Vec3> points; ///< world, metres
    std::vector<Triangle> triangles;
};

/// Every surface that air touches: triangles that lie wholly within solids are left out. Round shapes come
/// within 1 mm of the true surface, the leaves of trees, whose skin is full of holes, within 5 mm.
Triangles tessellate(const World& world);

} // namespace samplescene
