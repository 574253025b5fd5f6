// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/RayTracer.h"

#include "companions/samplescene/Random.h"

namespace samplescene {
namespace {

constexpr float kFar = 500; ///< metres
constexpr float kStart = 2e-3f;

Vec3 mirrored(Vec3 d, Vec3 n)
{
    return d - n * (2 * dot(d, n));
}

/// Schlick (1994).
float fresnel(float atNormal, float cosine)
{
    const float m = 1 - cosine;
    return atNormal + (1 - atNormal) * m * m * m * m * m;
}

float footprintAt(float distance, float pixelAngle, float cosine)
{
    return distance * pixelAngle / std::sqrt(std::max(cosine, 0.1f));
}

} // namespace

Vec3 RayTracer::shade(const Hit& hit, Vec3 direction, float footprint) const
{
    const Material& m = m_world.materialAt(hit);
    Vec3 albedo = m_world.colorAt(hit, footprint);
    if (m.look == Look::Lamp) {
        // A shade is brightest where one looks straight at it.
        const float cosine = std::fabs(dot(hit.normal, direction));
        return albedo * (m.emission * (0.6f + 0.4f * cosine));
    }
    const Irradiance light = m_world.light.at(m_world, hit);
    Vec3 sum = light.soft;
    const float facing = dot(hit.normal, m_world.sky.toSun);
    if (facing > 0 && light.sunShare > 0) {
        float share = light.sunShare;
        if (light.sunEdge)
            share = m_world.bvh.blocked(hit.point + hit.normal * kStart, m_world.sky.toSun, 1e-4f, 300)
                        ? 0.0f
                        : 1.0f;
        sum += m_world.sky.sun * (facing * share);
    }
    return albedo * sum;
}

Vec3 RayTracer::reflected(Vec3 point, Vec3 direction, float footprint, float pixelAngle) const
{
    const Hit hit = m_world.trace(point, direction, kStart, kFar, false);
    if (hit.shape < 0) return m_world.sky.color(direction);
    return shade(hit, direction, footprint + hit.distance * pixelAngle);
}

RayResult RayTracer::follow(Vec3 origin, Vec3 direction, float pixelAngle, std::uint32_t lot) const
{
    RayResult result;
    Vec3 through{1, 1, 1};
    float way = 0;
    bool returned = false; // what comes back first decides, also when it is nothing
    const auto giveBack = [&](float distance, float cosine, float dark) {
        if (!returned) result.back = {distance, cosine, dark};
        returned = true;
    };
    for (std::uint32_t step = 0; step < 6; ++step) {
        const Hit hit = m_world.trace(origin, direction, step ? kStart : 1e-3f, kFar);
        if (m_companions && step == 0) {
            const Hit near = m_companions->trace(origin, direction, 1e-3f, hit.distance);
            if (near.shape >= 0) {
                const float cosine = std::fabs(dot(near.normal, direction));
                const Vec3 albedo =
                    m_companions->colorAt(near, footprintAt(near.distance, pixelAngle, cosine));
                result.color = albedo * (0.35f + 0.2f * near.normal.z + 0.15f * cosine);
                result.path = hash(0xc0ffeeU, static_cast<std::uint32_t>(near.shape * kFaces + near.face));
                giveBack(near.distance, cosine, 0);
                return result;
            }
        }
        result.path = hash(result.path, static_cast<std::uint32_t>(hit.shape * kFaces + hit.face), step);
        if (hit.shape < 0) {
            result.color += through * m_world.sky.color(direction);
            giveBack(0, 1, 1);
            return result;
        }
        way += hit.distance;
        const float cosine = std::fabs(dot(hit.normal, direction));
        const float footprint = footprintAt(way, pixelAngle, cosine);
        const Material& m = m_world.materialAt(hit);
        if (m.look ==
            Look::Mirror) { // the scanner's light comes back on the same way: a phantom behind the wall
            through = through * m.color;
            direction = mirrored(direction, hit.normal);
            origin = hit.point;
            continue;
        }
        if (m.look == Look::Glass) {
            const float r = std::min(0.6f, fresnel(m.gloss, cosine));
            if (r > 0.03f)
                result.color +=
                    through *
                    (reflected(hit.point, mirrored(direction, hit.normal), footprint, pixelAngle) * r);
            through = through * m.color * (1 - r);
            const float chance = unit(hash(lot, step));
            if (chance < 0.05f)
                giveBack(way, cosine, 0.3f);
            else if (chance < 0.13f)
                giveBack(0, 1, 1);
            origin = hit.point;
            continue;
        }
        Vec3 color = shade(hit, direction, footprint);
        float dark = 0;
        if (m.gloss > 0) {
            const float r = std::min(0.45f, fresnel(m.gloss, cosine));
            if (r > 0.04f)
                color =
                    color * (1 - r) +
                    reflected(hit.point, mirrored(direction, hit.normal), footprint * 4, pixelAngle * 4) * r;
            // Off a polished surface the light goes elsewhere unless it falls in straight.
            dark = clamp01(m.gloss * 4) * (cosine > 0.97f ? 0.2f : 0.9f);
        }
        result.color += through * color;
        giveBack(way, cosine, dark);
        return result;
    }
    giveBack(0, 1, 1);
    return result;
}

} // namespace samplescene
