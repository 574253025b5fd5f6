// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Material.h"

#include "companions/samplescene/Noise.h"
#include "companions/samplescene/Picture.h"
#include "companions/samplescene/Random.h"

namespace samplescene {
namespace {

std::uint32_t cellHash(float x, float y, std::uint32_t seed)
{
    return hash(static_cast<std::uint32_t>(static_cast<std::int32_t>(x)),
                static_cast<std::uint32_t>(static_cast<std::int32_t>(y)), seed);
}

/// Share of a joint of the given width in the pixel at distance `d` from its middle; joints much thinner than
/// the pixel fade instead of flickering.
float joint(float d, float width, float footprint)
{
    const float soft = std::max(footprint, width * 0.3f);
    return clamp01((width / 2 + soft / 2 - d) / soft) *
           std::min(1.0f, width / std::max(footprint, 1e-6f) + 0.05f);
}

float nearestEdge(float v, float size)
{
    const float f = v / size - std::floor(v / size);
    return std::min(f, 1 - f) * size;
}

Vec3 paint(const Material& m, Vec2 p, float foot)
{
    const float stains = fractalNoise(p, 1.7f, 4, 0.6f, foot, m.seed);
    const float relief = fractalNoise(p, 0.09f, 7, 0.88f, foot, m.seed + 911);
    const float speck = fractalNoise(p, 0.35f, 2, 0.7f, foot, m.seed + 77);
    const float scuff = speck > 0.8f ? (speck - 0.8f) * 0.2f : 0.0f;
    return m.color * (1 + m.contrast * (0.04f * stains + 0.045f * relief - scuff));
}

Vec3 planks(const Material& m, Vec2 p, float foot)
{
    const float row = std::floor(p.y / m.size);
    const float plankLength = m.size * 9;
    const float shift = unit(cellHash(row, 3, m.seed)) * plankLength;
    const float column = std::floor((p.x + shift) / plankLength);
    const std::uint32_t own = cellHash(column, row, m.seed + 5);
    const Vec2 g{p.x * 0.12f, p.y};
    const float grain = fractalNoise(g, 0.05f, 6, 0.8f, foot * 0.6f, own);
    const float knots = fractalNoise({p.x, p.y * 2}, 0.5f, 3, 0.6f, foot, own + 9);
    const float tone = unit(hash(own)) - 0.5f;
    Vec3 c = mix(m.color, m.second, clamp01(0.35f + m.contrast * (0.45f * grain + 0.9f * tone)));
    c *= 1 + m.contrast * 0.1f * knots;
    const float gap = std::max(joint(nearestEdge(p.y, m.size), 0.003f, foot),
                               joint(nearestEdge(p.x + shift, plankLength), 0.003f, foot));
    return c * (1 - 0.65f * gap);
}

Vec3 tiles(const Material& m, Vec2 p, float foot)
{
    const std::uint32_t own = cellHash(std::floor(p.x / m.size), std::floor(p.y / m.size), m.seed);
    const float marble = fractalNoise({p.x + unit(own) * 9, p.y}, 0.25f, 8, 0.75f, foot, m.seed + 1);
    const float tone = (unit(hash(own)) - 0.5f) * 0.12f;
    const Vec3 c = m.color * (1 + m.contrast * (0.1f * marble + tone));
    const float gap = std::max(joint(nearestEdge(p.x, m.size), 0.004f, foot),
                               joint(nearestEdge(p.y, m.size), 0.004f, foot));
    return mix(c, m.second, gap);
}

Vec3 carpet(const Material& m, Vec2 p, float foot)
{
    const float pile = fractalNoise(p, 0.04f, 6, 0.9f, foot, m.seed);
    const float worn = fractalNoise(p, 0.9f, 4, 0.55f, foot, m.seed + 3);
    return mix(m.color, m.second, clamp01(0.4f + m.contrast * (0.28f * pile + 0.07f * worn)));
}

Vec3 grain(const Material& m, Vec2 p, float foot)
{
    const float along = fractalNoise({p.x * 1.0f, p.y * 0.1f}, 0.045f, 6, 0.75f, foot * 0.6f, m.seed);
    const float rings =
        std::sin(60 * (p.x + 0.05f * fractalNoise({p.x, p.y * 0.3f}, 0.6f, 3, 0.5f, foot, m.seed + 4)));
    const float visible = clamp01(0.1f / (foot * 4) - 0.5f);
    return mix(m.color, m.second, clamp01(0.35f + m.contrast * (0.35f * along + 0.15f * rings * visible)));
}

Vec3 fabric(const Material& m, Vec2 p, float foot)
{
    const float weave = fractalNoise(p, 0.012f, 3, 0.8f, foot, m.seed);
    const float folds = fractalNoise({p.x, p.y * 0.4f}, 0.3f, 4, 0.6f, foot, m.seed + 2);
    Vec3 c = m.color * (1 + m.contrast * (0.2f * weave + 0.18f * folds));
    if (m.size > 0) { // stripes or checks
        const float x = p.x / m.size - std::floor(p.x / m.size);
        const float soft = std::min(0.5f, foot / m.size);
        const float stripe = smoothstep(0.5f - soft, 0.5f + soft, std::fabs(2 * x - 1));
        c = mix(c, m.second * (1 + m.contrast * 0.2f * weave),
                stripe * clamp01(m.size / (2 * foot) - 0.5f) * 0.8f);
    }
    return c;
}

Vec3 brick(const Material& m, Vec2 p, float foot)
{
    const float height = m.size * 0.32f;
    const float row = std::floor(p.y / height);
    const float x = p.x + (static_cast<int>(row) % 2 ? m.size / 2 : 0.0f);
    const std::uint32_t own = cellHash(std::floor(x / m.size), row, m.seed);
    const float rough = fractalNoise(p, 0.08f, 6, 0.8f, foot, m.seed + 1);
    const float dirt = fractalNoise(p, 3.0f, 5, 0.6f, foot, m.seed + 8);
    const float even = clamp01(2 - foot / (m.size * 0.3f));
    const float tone = (unit(own) - 0.5f) * 0.5f * even;
    const Vec3 c = m.color * (1 + m.contrast * (0.16f * rough + tone + 0.15f * dirt));
    const float gap =
        std::max(joint(nearestEdge(p.y, height), 0.012f, foot), joint(nearestEdge(x, m.size), 0.012f, foot));
    return mix(c, m.second * (1 + 0.1f * rough), gap);
}

Vec3 ground(const Material& m, Vec2 p, float foot)
{
    const bool grass = m.look == Look::Grass;
    const float fine = fractalNoise(p, grass ? 0.08f : 0.03f, 4, 0.85f, foot, m.seed);
    const float patches = fractalNoise(p, 2.5f, 6, 0.65f, foot, m.seed + 2);
    return mix(m.color, m.second,
               clamp01(0.4f + m.contrast * ((grass ? 0.4f : 0.25f) * fine + 0.3f * patches)));
}

Vec3 foliage(const Material& m, Vec2 p, float foot)
{
    const float leaves = fractalNoise(p, 0.22f, 5, 0.8f, foot, m.seed);
    return mix(m.color, m.second, clamp01(0.45f + 0.6f * m.contrast * leaves));
}

} // namespace

Vec3 textureColor(const Material& m, const Picture* picture, const SurfacePoint& at)
{
    const float foot = std::max(at.footprint, 1e-4f);
    switch (m.look) {
    case Look::Paint:
        return paint(m, at.metres, foot);
    case Look::Planks:
        return planks(m, at.metres, foot);
    case Look::Tiles:
        return tiles(m, at.metres, foot);
    case Look::Carpet:
        return carpet(m, at.metres, foot);
    case Look::Grain:
        return grain(m, at.metres, foot);
    case Look::Fabric:
        return fabric(m, at.metres, foot);
    case Look::Brick:
        return brick(m, at.metres, foot);
    case Look::Asphalt:
    case Look::Grass:
        return ground(m, at.metres, foot);
    case Look::Foliage:
        return foliage(m, at.metres, foot);
    case Look::Printed:
        return picture ? picture->at(at.share, foot / at.faceHeight) : m.color;
    case Look::Metal:
        return m.color *
               (1 + m.contrast * 0.05f *
                        fractalNoise({at.metres.x * 0.2f, at.metres.y}, 0.03f, 4, 0.8f, foot, m.seed));
    case Look::Lamp:
    case Look::Mirror:
    case Look::Glass:
        return m.color;
    }
    return m.color;
}

} // namespace samplescene
