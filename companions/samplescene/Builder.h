// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Random.h"
#include "companions/samplescene/World.h"

#include <vector>

/// Puts furniture-sized things together out of shapes.
namespace samplescene {

/// A place to build in: own x, y turned about the upright by `yaw`, z up.
struct Frame
{
    Vec3 origin;
    float yaw = 0; ///< radians, from the world's x toward its y

    Vec3 toWorld(Vec3 p) const;
    Frame at(Vec3 p, float turn = 0) const { return {toWorld(p), yaw + turn}; }
};

class Builder
{
public:
    /// @param contrast  factor on the contrast of every texture, 0 to 1
    Builder(World& world, std::uint32_t seed, float contrast);

    Random random;               ///< decides what stands where
    Part part = Part::Furniture; ///< of what is built from here on
    bool second = false;         ///< build the later state: loose furniture has been moved
    float movedShare = 0;        ///< share of the loose furniture that moves between the states

    void reseed(std::uint32_t seed); ///< from here on as a builder with this seed and the same contrast
    void setContrast(float contrast) { m_contrast = contrast; }
    float contrast() const { return m_contrast; }
    World& world() { return m_world; }

    int material(Material m); ///< gives it a seed if it has none
    int paint(Vec3 color, float contrast = 1);
    int wood(Vec3 color);
    int fabric(Vec3 color);
    int metal(Vec3 color);
    int print(Print kind, int width, int height);
    int spine(); ///< back of a book, out of a common stock: the same editions stand in many shelves
    Vec3 anyColor(float low, float high); ///< linear light, channels within the limits

    /// A box about `center` in the frame; `turn` about the upright, `tilt` about its own x axis, radians.
    /// @return its index, to set single faces
    std::size_t box(const Frame& frame, Vec3 center, Vec3 size, int material, float turn = 0, float tilt = 0);
    /// A box by its lower middle.
    std::size_t standing(const Frame& frame, Vec3 foot, Vec3 size, int material, float turn = 0);
    std::size_t cylinder(const Frame& frame, Vec3 foot, float radius, float height, int material);
    std::size_t ellipsoid(const Frame& frame, Vec3 center, Vec3 half, int material);
    void face(std::size_t shape, int face, int material);
    /// Texture coordinates of the shape count from this point, so that neighbours join without a seam.
    void joinTexture(std::size_t shape, Vec3 origin, float yaw);
    void lamp(Vec3 position, Vec3 power, float radius);

    /// Where a loose piece really stands: shifted and turned in the later state, if it is one that moved.
    Frame loose(const Frame& frame, float reach);

private:
    std::size_t add(Shape shape, int material);
    World& m_world;
    float m_contrast;
    std::uint32_t m_seed;
    std::uint32_t m_looseCount = 0;
    std::vector<int> m_spines;
};

/// Until its end, all that is built belongs to one part.
class BuildingPart
{
public:
    BuildingPart(Builder& builder, Part part)
        : m_builder(builder)
        , m_before(builder.part)
    {
        builder.part = part;
    }
    ~BuildingPart() { m_builder.part = m_before; }
    BuildingPart(const BuildingPart&) = delete;
    BuildingPart& operator=(const BuildingPart&) = delete;

private:
    Builder& m_builder;
    Part m_before;
};

} // namespace samplescene
