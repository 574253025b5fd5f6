// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Random.h"
#include "companions/samplescene/Scene.h"

namespace samplescene {
namespace {

Vec3 eyeOf(const Station& s)
{
    return {static_cast<float>(s.position[0]), static_cast<float>(s.position[1]),
            static_cast<float>(s.position[2])};
}

Vec3 footOf(const Station& s)
{
    const Vec3 eye = eyeOf(s);
    return {eye.x, eye.y, eye.z - static_cast<float>(s.cameraHeight) + 0.03f};
}

/// Share of the surfaces around station `a` that station `b` sees as well, from directions spread evenly over
/// the sphere (Fibonacci spiral). Places that moved furniture or a change of state hides count as unseen.
double shareSeen(const Scene& scene, int a, int b)
{
    constexpr int kDirections = 3000;
    constexpr int kFirstLook = 400;
    const Vec3 from = eyeOf(scene.stations[static_cast<std::size_t>(a)]);
    const Vec3 to = eyeOf(scene.stations[static_cast<std::size_t>(b)]);
    const World& world = scene.worldOf(a);
    const World& other = scene.worldOf(b);
    int seen = 0;
    int all = 0;
    for (int k = 0; k < kDirections; ++k) {
        // The first look is spread over the sphere as well: every seventh direction of the spiral.
        const int i = 7 * k % kDirections;
        const float z = 1 - (2 * static_cast<float>(i) + 1) / kDirections;
        const float r = std::sqrt(1 - z * z);
        const float angle = 2.39996323f * static_cast<float>(i);
        const Vec3 direction{r * std::cos(angle), r * std::sin(angle), z};
        const Hit hit = world.trace(from, direction, 1e-3f, 60, false);
        if (hit.shape < 0 || world.materialAt(hit).look == Look::Mirror) continue;
        ++all;
        const Vec3 way = to - hit.point;
        if (dot(way, hit.normal) > 0 && !other.bvh.blocked(hit.point + hit.normal * 2e-3f, way, 1e-4f, 1))
            ++seen;
        if (k == kFirstLook && seen == 0) break;
    }
    return all > 0 ? static_cast<double>(seen) / all : 0.0;
}

} // namespace

Sight lineOfSight(const Scene& scene, int station0, int station1)
{
    const Station& s0 = scene.stations[static_cast<std::size_t>(station0)];
    const Station& s1 = scene.stations[static_cast<std::size_t>(station1)];
    const World& w0 = scene.worldOf(station0);
    const World& w1 = scene.worldOf(station1);
    const Vec3 way = eyeOf(s1) - eyeOf(s0);
    const auto free = [](const World& w, Vec3 from, Vec3 to, bool glassStops) {
        return !w.bvh.blocked(from, to - from, 1e-4f, 1, glassStops);
    };
    Sight sight;
    sight.distance = static_cast<double>(length(way));
    const auto eye = [&](bool glassStops) {
        return free(w0, eyeOf(s0), eyeOf(s1), glassStops) && free(w1, eyeOf(s1), eyeOf(s0), glassStops);
    };
    sight.eyeFree = eye(true);
    sight.throughGlass = !sight.eyeFree && eye(false);
    sight.footFree = free(w0, eyeOf(s0), footOf(s1), true) && free(w1, eyeOf(s1), footOf(s0), true);
    return sight;
}

Sight sightBetween(const Scene& scene, int station0, int station1)
{
    Sight sight = lineOfSight(scene, station0, station1);
    sight.shareOf0 = shareSeen(scene, station0, station1);
    sight.shareOf1 = shareSeen(scene, station1, station0);
    return sight;
}

} // namespace samplescene
