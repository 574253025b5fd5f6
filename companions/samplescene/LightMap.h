// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Shape.h"

#include <vector>

/// Light that has been worked out before the pictures are taken: soft shadows, windows, light from wall to
/// wall. It is the same from every side, as light on matt surfaces is.
namespace samplescene {

struct World;
struct Hit;

/// Light that falls on a point.
struct Irradiance
{
    Vec3 soft;            ///< lamps, sky, other surfaces
    float sunShare = 0;   ///< 0 to 1 of the points around that see the sun
    bool sunEdge = false; ///< a shadow's edge is near: ask the sun itself
};

/// Radiosity (Goral et al. 1984) gathered at the nodes of a grid on every face: lamps and windows are
/// sampled, one hemisphere of rays a node tells which surfaces it sees, and the light goes round four times.
class LightMap
{
public:
    /// @param spacing  metres between nodes; more where the place is large
    void bake(const World& world, float spacing, int threads);
    Irradiance at(const World& world, const Hit& hit) const;

private:
    /// A face's grid. Faces of a box have columns x rows; round shapes have six directions x levels.
    struct Grid
    {
        std::uint32_t first = 0;
        std::uint16_t columns = 0, rows = 0;
    };
    struct Place
    {
        Vec3 point, normal, albedo;
        bool open = false; ///< not buried in another solid
    };
    void layOut(const World& world, float spacing);
    std::uint32_t nodeNear(const World& world, const Hit& hit) const;
    void smooth();
    void fillBuried();
    void lendToBuriedFaces();
    void gather(const World& world, std::size_t node, std::uint32_t* seen);

    float m_spacing = 0.1f;
    std::vector<Grid> m_grids; ///< kFaces for each shape
    std::vector<Place> m_places;
    std::vector<Vec3> m_direct;
    std::vector<Vec3> m_light;
    std::vector<float> m_sun; ///< negative: buried
};

} // namespace samplescene
