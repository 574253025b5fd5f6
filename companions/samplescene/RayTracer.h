// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/World.h"

/// Follows one ray through panes and mirrors and says what it shows and how far away a scanner finds it.
namespace samplescene {

/// How the range came about; what the range model needs to know.
struct FirstReturn
{
    float distance = 0; ///< metres along the ray, mirrors unfolded; 0: none
    float cosine = 1;   ///< of the angle between ray and normal
    float dark = 0;     ///< 0 to 1: how little comes back from the material
};

struct RayResult
{
    Vec3 color;             ///< linear light
    std::uint32_t path = 0; ///< equal for neighbours that see the same faces
    FirstReturn back;
};

class RayTracer
{
public:
    /// @param companions  what travels with the camera and throws no shadow; may be null
    RayTracer(const World& world, const World* companions)
        : m_world(world)
        , m_companions(companions)
    {}

    /// @param pixelAngle  radians that one pixel covers
    /// @param lot         random number that decides which pane gives a return of its own
    RayResult follow(Vec3 origin, Vec3 direction, float pixelAngle, std::uint32_t lot) const;

private:
    Vec3 shade(const Hit& hit, Vec3 direction, float footprint) const;
    Vec3 reflected(Vec3 point, Vec3 direction, float footprint, float pixelAngle) const;
    const World& m_world;
    const World* m_companions;
};

} // namespace samplescene
