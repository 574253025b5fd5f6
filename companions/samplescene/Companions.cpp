// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Companions.h"

#include "companions/samplescene/Builder.h"

namespace samplescene {
namespace {

constexpr float kPi = 3.14159265f;
constexpr float kPatchRadius = 0.3f; ///< radians from the lower pole

void stand(Builder& b, const Frame& f, float height)
{
    const int metal = b.metal({0.06f, 0.06f, 0.065f});
    b.cylinder(f, {0, 0, height - 0.6f}, 0.022f, 0.35f, metal);
    for (int i = 0; i < 3; ++i) {
        const Frame leg = f.at({0, 0, 0}, 2.0944f * static_cast<float>(i));
        const float length = height - 0.3f;
        b.box(leg, {0, length * 0.2f, length * 0.49f}, {0.03f, 0.03f, length * 1.06f}, metal, 0, 0.38f);
    }
}

void person(Builder& b, const Frame& f)
{
    const int trousers = b.fabric({0.05f, 0.06f, 0.1f});
    const int shirt = b.fabric({0.4f, 0.08f, 0.07f});
    const int skin = b.paint({0.5f, 0.33f, 0.25f});
    const int hair = b.paint({0.05f, 0.035f, 0.025f}, 4);
    for (const float s : {-0.1f, 0.1f}) {
        b.cylinder(f, {s, 0, 0.05f}, 0.075f, 0.8f, trousers);
        b.standing(f, {s, 0.04f, 0}, {0.1f, 0.27f, 0.08f}, hair);
        b.box(f, {2.7f * s, 0.05f, 1.15f}, {0.09f, 0.11f, 0.56f}, shirt, 0, 0.15f);
        b.ellipsoid(f, {2.7f * s, 0.1f, 0.84f}, {0.05f, 0.05f, 0.08f}, skin);
    }
    b.ellipsoid(f, {0, 0, 1.15f}, {0.22f, 0.14f, 0.36f}, shirt);
    b.cylinder(f, {0, 0, 1.45f}, 0.05f, 0.1f, skin);
    b.ellipsoid(f, {0, 0, 1.63f}, {0.085f, 0.1f, 0.12f}, skin);
    b.ellipsoid(f, {0, -0.02f, 1.67f}, {0.092f, 0.1f, 0.1f}, hair);
}

} // namespace

World companionsOf(const Scene& scene, const Station& station)
{
    World world;
    const Nadir nadir = scene.options.nadir;
    if (nadir != Nadir::Tripod && nadir != Nadir::Operator) return world;
    Builder b(world, hash(scene.options.seed, 0x0be7U), 1);
    const auto height = static_cast<float>(station.cameraHeight);
    const Frame f{{static_cast<float>(station.position[0]), static_cast<float>(station.position[1]),
                   static_cast<float>(station.position[2]) - height},
                  static_cast<float>(std::atan2(station.rotation[3], station.rotation[0]))};
    stand(b, f, height);
    if (nadir == Nadir::Operator) {
        // Always about the same place in the camera's own frame: behind it, within reach of the trigger.
        Random own(hash(station.id, 0x9e2U));
        const float azimuth = 2.7f + own.uniform(-0.15f, 0.15f);
        const float away = own.uniform(0.75f, 1.0f);
        person(b, f.at({away * std::cos(azimuth), away * std::sin(azimuth), 0}, azimuth + kPi / 2));
    }
    world.bvh.build(world.shapes);
    return world;
}

Vec3 withNadirPatch(Vec3 color, int x, int y, int width)
{
    const float step = 2 * kPi / static_cast<float>(width);
    const float fromPole = kPi - step * (static_cast<float>(y) + 0.5f);
    if (fromPole > kPatchRadius) return color;
    const float azimuth = kPi - step * (static_cast<float>(x) + 0.5f);
    const float r = fromPole / kPatchRadius;
    const bool rim = r > 0.92f;
    const bool star = r < 0.45f * (1.2f + 0.6f * std::cos(5 * azimuth));
    const bool ticks = r > 0.7f && r < 0.85f && std::cos(24 * azimuth) > 0.3f;
    const float ink = rim || star || ticks ? 0.05f : 0.45f;
    return mix(color, Vec3{ink, ink * 1.05f, ink * 1.2f}, smoothstep(1.0f, 0.97f, r));
}

} // namespace samplescene
