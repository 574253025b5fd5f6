// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Vec.h"

#include <array>
#include <cstdint>

/// What the building is made of: oriented boxes, upright cylinders and ellipsoids.
namespace samplescene {

/// How light and sight pass a shape.
enum class Passage : std::uint8_t
{
    Opaque,
    Glass,  ///< seen through; the range mostly passes
    Cutout, ///< holes in a solid: foliage
};

/// One cache line, all that the intersection needs.
struct Shape
{
    enum Kind : std::uint8_t
    {
        Box,
        Cylinder, ///< half.x = half.y = radius, half.z = half the height
        Ellipsoid
    };
    Vec3 center;
    Vec3 half; ///< half sizes along the own axes, metres
    std::array<Vec3, 3> axis = {Vec3{1, 0, 0}, Vec3{0, 1, 0}, Vec3{0, 0, 1}}; ///< own axes in the world
    Kind kind = Box;
    Passage passage = Passage::Opaque;
    bool aligned = true; ///< own axes are the world's
    std::uint8_t unused = 0;

    Vec3 toLocal(Vec3 world) const
    {
        const Vec3 d = world - center;
        return aligned ? d : Vec3{dot(d, axis[0]), dot(d, axis[1]), dot(d, axis[2])};
    }
    Vec3 turnToLocal(Vec3 d) const
    {
        return aligned ? d : Vec3{dot(d, axis[0]), dot(d, axis[1]), dot(d, axis[2])};
    }
    Vec3 turnToWorld(Vec3 d) const { return aligned ? d : axis[0] * d.x + axis[1] * d.y + axis[2] * d.z; }
    /// Half the extent of the bounding box along the world's axes.
    Vec3 extent() const;
};
static_assert(sizeof(Shape) == 64, "traversal reads one cache line a shape");

/// Faces of a box: -x, +x, -y, +y, -z, +z. A cylinder's side is face 0, its ends are 4 and 5; an ellipsoid
/// has only face 0.
constexpr int kFaces = 6;

/// Nearest entry into the shape beyond `nearest` and before `*distance`. Rays that start inside hit nothing.
/// @return true and the new `*distance`, `*face` when hit
bool intersect(const Shape& shape, Vec3 origin, Vec3 direction, float nearest, float* distance, int* face);

/// Whether a point of the world lies within the shape.
bool contains(const Shape& shape, Vec3 point);

/// Outer normal in the world at a point of the surface given in own coordinates.
Vec3 normalAt(const Shape& shape, int face, Vec3 local);

} // namespace samplescene
