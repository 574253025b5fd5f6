// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Bvh.h"
#include "companions/samplescene/LightMap.h"
#include "companions/samplescene/Material.h"
#include "companions/samplescene/Part.h"
#include "companions/samplescene/Picture.h"

#include <array>
#include <string>
#include <vector>

/// A made-up place, ready for rays: shapes with their surfaces, lamps, windows, sky.
namespace samplescene {

/// What a shape wears; the same index as its Shape.
struct Surface
{
    std::array<std::uint32_t, kFaces> material{}; ///< index into World::materials, by face
    Vec3 textureOffset;                           ///< metres, added to own coordinates before the lookup
    Part part = Part::Furniture;
};

/// A point that shines evenly, its shadows softened by `radius`.
struct Lamp
{
    Vec3 position;
    Vec3 power;          ///< irradiance that it gives at 1 m
    float radius = 0.1f; ///< metres
};

/// A window: a rectangle that lets in the sky.
struct Portal
{
    Vec3 center, sideways, upward; ///< the latter two from the centre to the edges, metres
    Vec3 inward;                   ///< unit vector into the room
};

struct Sky
{
    Vec3 toSun{0.4f, -0.6f, 0.7f}; ///< unit vector
    Vec3 sun{2.2f, 2.0f, 1.7f};    ///< irradiance of a surface that faces the sun; zero: overcast
    Vec3 zenith{0.35f, 0.5f, 0.8f};
    Vec3 horizon{0.75f, 0.8f, 0.85f};
    std::uint32_t seed = 0;
    Vec3 color(Vec3 direction) const; ///< radiance toward a unit vector, clouds included
};

/// The air between four walls, floor and ceiling.
struct RoomBounds
{
    std::string name;
    float x0 = 0, y0 = 0, x1 = 0, y1 = 0; ///< wall faces, metres
    float floor = 0, ceiling = 0;
};

/// What a ray meets.
struct Hit
{
    float distance = 0;
    int shape = -1; ///< -1: the sky
    int face = 0;
    Vec3 point, local, normal; ///< world, own coordinates, outer normal in the world
};

struct World
{
    std::vector<Shape> shapes;
    std::vector<Surface> surfaces; ///< one for each shape
    std::vector<Material> materials;
    std::vector<Picture> pictures;
    std::vector<Lamp> lamps;
    std::vector<Portal> portals;
    std::vector<RoomBounds> rooms; ///< none outdoors
    Sky sky;
    bool outdoors = false; ///< the sky lights everything, not the windows
    Bvh bvh;
    LightMap light;

    /// To be called once, when everything stands: builds the hierarchy and the light.
    void finish(float lightSpacing_m, int threads);

    Hit trace(Vec3 origin, Vec3 direction, float nearest, float farthest, bool seesGlass = true) const;
    const Material& materialAt(const Hit& hit) const;
    /// Reflected share of light at a hit, by the pixel's footprint there in metres.
    Vec3 colorAt(const Hit& hit, float footprint) const;
    /// Colour of a material seen from far away.
    Vec3 meanColor(const Material& material) const;
};

} // namespace samplescene
