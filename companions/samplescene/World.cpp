// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/World.h"

#include "companions/samplescene/Noise.h"

namespace samplescene {

Vec3 Sky::color(Vec3 d) const
{
    const float up = clamp01(d.z);
    Vec3 c = mix(horizon, zenith, std::sqrt(up));
    if (d.z > 0.02f) {
        const Vec2 p{d.x / (d.z + 0.15f), d.y / (d.z + 0.15f)};
        const float cloud = smoothstep(0.1f, 0.8f, fractalNoise(p, 1.2f, 5, 0.55f, 0.004f, seed));
        c = mix(c, Vec3{0.95f, 0.95f, 0.95f}, cloud * 0.8f);
    } else if (d.z < 0) {
        c = mix(horizon * 0.6f, Vec3{0.2f, 0.2f, 0.18f}, clamp01(-d.z * 4));
    }
    return c;
}

void World::finish(float lightSpacing_m, int threads)
{
    bvh.build(shapes);
    light.bake(*this, lightSpacing_m, threads);
}

Hit World::trace(Vec3 origin, Vec3 direction, float nearest, float farthest, bool seesGlass) const
{
    const ShapeHit found = bvh.nearestHit(origin, direction, nearest, farthest, seesGlass);
    Hit hit;
    hit.distance = found.distance;
    hit.shape = found.shape;
    hit.face = found.face;
    hit.point = origin + direction * found.distance;
    if (found.shape >= 0) {
        const Shape& shape = shapes[static_cast<std::size_t>(found.shape)];
        hit.local = shape.toLocal(hit.point);
        hit.normal = normalAt(shape, found.face, hit.local);
        if (shape.passage == Passage::Cutout && dot(hit.normal, direction) > 0) hit.normal = -hit.normal;
    }
    return hit;
}

const Material& World::materialAt(const Hit& hit) const
{
    return materials[surfaces[static_cast<std::size_t>(hit.shape)]
                         .material[static_cast<std::size_t>(hit.face)]];
}

Vec3 World::colorAt(const Hit& hit, float footprint) const
{
    const Material& material = materialAt(hit);
    const Shape& shape = shapes[static_cast<std::size_t>(hit.shape)];
    const Surface& surface = surfaces[static_cast<std::size_t>(hit.shape)];
    SurfacePoint at;
    at.footprint = footprint;
    Vec3 p = hit.local + surface.textureOffset;
    if (shape.kind == Shape::Ellipsoid) {
        at.metres = {p.x + 0.7f * p.y, p.z + 0.3f * p.y};
    } else if (shape.kind == Shape::Cylinder && hit.face == 0) {
        const float around = std::atan2(hit.local.y, hit.local.x);
        at.metres = {around * shape.half.x + surface.textureOffset.x, p.z};
        at.share = {around * 0.159155f + 0.5f, 0.5f - hit.local.z / (2 * shape.half.z)};
        at.faceHeight = 2 * shape.half.z;
    } else {
        const int axis = hit.face / 2;
        const int u = axis == 0 ? 1 : 0;
        const int v = axis == 2 ? 1 : 2;
        at.metres = {p[u], p[v]};
        const bool mirrored = hit.face == 0 || hit.face == 3; // seen from outside, u runs to the left there
        const float share = hit.local[u] / (2 * shape.half[u]);
        at.share = {0.5f + (mirrored ? -share : share), 0.5f - hit.local[v] / (2 * shape.half[v])};
        at.faceHeight = 2 * shape.half[v];
    }
    const Picture* picture =
        material.picture >= 0 ? &pictures[static_cast<std::size_t>(material.picture)] : nullptr;
    return textureColor(material, picture, at);
}

Vec3 World::meanColor(const Material& m) const
{
    switch (m.look) {
    case Look::Printed:
        return m.picture >= 0 ? pictures[static_cast<std::size_t>(m.picture)].mean() : m.color;
    case Look::Planks:
    case Look::Grain:
    case Look::Carpet:
    case Look::Asphalt:
    case Look::Grass:
    case Look::Foliage:
        return mix(m.color, m.second, 0.4f);
    case Look::Mirror:
        return {0.5f, 0.5f, 0.5f};
    default:
        return m.color;
    }
}

} // namespace samplescene
