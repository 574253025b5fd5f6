// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Vec.h"

#include <cstdint>

/// How surfaces look: colour as a function of the place on the surface, band-limited by the pixel's
/// footprint.
namespace samplescene {

class Picture;

enum class Look : std::uint8_t
{
    Paint, ///< plaster, lacquer: fine relief, faint stains
    Planks,
    Tiles,
    Carpet,
    Grain, ///< wood of furniture and doors
    Fabric,
    Printed, ///< a picture stretched over the face
    Brick,
    Asphalt,
    Grass,
    Foliage,
    Metal,
    Lamp,   ///< shines by itself
    Mirror, ///< reflects, gives no range of its own
    Glass
};

struct Material
{
    Look look = Look::Paint;
    Vec3 color{0.5f, 0.5f, 0.5f};  ///< linear light, 0 to 1
    Vec3 second{0.4f, 0.4f, 0.4f}; ///< joints, stripes, the darker grain
    float size = 0.3f;             ///< metres: tile edge, plank width, brick length
    float contrast = 1;            ///< of the texture; 0: an even colour
    float gloss = 0;               ///< share reflected at vertical incidence, 0 to 1
    std::uint32_t seed = 0;
    int picture = -1;   ///< index into the world's pictures
    float emission = 0; ///< light given off in units of a sunlit white wall
};

/// Where on a face a ray has hit.
struct SurfacePoint
{
    Vec2 metres;          ///< own texture coordinates
    Vec2 share;           ///< 0 to 1 over the face, from the top left as seen from outside
    float faceHeight = 1; ///< metres, for the footprint within a picture
    float footprint = 0;  ///< metres that one pixel covers
};

/// Reflected colour, linear light.
/// @param picture  the one that `material` names, or null
Vec3 textureColor(const Material& material, const Picture* picture, const SurfacePoint& at);

} // namespace samplescene
