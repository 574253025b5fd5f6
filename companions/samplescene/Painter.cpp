// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Noise.h"
#include "companions/samplescene/Picture.h"
#include "companions/samplescene/Random.h"

#include <array>

namespace samplescene {
namespace {

Vec3 anyColor(Random& random, float low = 0.03f, float high = 0.85f)
{
    const Vec3 c{random.uniform(), random.uniform(), random.uniform()};
    return {mix(low, high, c.x * c.x), mix(low, high, c.y * c.y), mix(low, high, c.z * c.z)};
}

struct Area
{
    float x, y, w, h;
};

void shapes(Picture& p, Area a, int count, Random& random)
{
    for (int i = 0; i < count; ++i) {
        const Vec2 c{a.x + random.uniform() * a.w, a.y + random.uniform() * a.h};
        const float size = a.w * mix(0.03f, 0.3f, random.uniform() * random.uniform());
        const Vec2 half{size, size * random.uniform(0.3f, 1.2f)};
        const Vec3 color = anyColor(random);
        switch (random.below(3)) {
        case 0:
            p.rectangle(c, half, random.uniform(0, 3.1f), color);
            break;
        case 1:
            p.ellipse(c, half, color);
            break;
        default:
            p.line(c, {c.x + random.uniform(-1, 1) * a.w * 0.4f, c.y + random.uniform(-1, 1) * a.h * 0.4f},
                   std::max(1.5f, size * 0.15f), color);
        }
    }
}

void landscape(Picture& p, Area a, Random& random)
{
    const Vec3 sky = mix(Vec3{0.2f, 0.4f, 0.8f}, Vec3{0.9f, 0.5f, 0.3f}, random.uniform());
    const Vec3 land = mix(Vec3{0.05f, 0.25f, 0.05f}, Vec3{0.4f, 0.3f, 0.15f}, random.uniform());
    const std::uint32_t seed = random.bits();
    constexpr int kRidges = 4;
    for (int x = static_cast<int>(a.x); x < static_cast<int>(a.x + a.w); ++x) {
        const float u = (static_cast<float>(x) - a.x) / a.w;
        std::array<float, kRidges> height;
        for (int ridge = 0; ridge < kRidges; ++ridge) {
            const auto r = static_cast<float>(ridge);
            const float outline = fractalNoise({u * (2 + r), r}, 1, 5, 0.5f, 0.002f, seed + 7);
            height[static_cast<std::size_t>(ridge)] = 0.4f + 0.14f * r + 0.12f * outline;
        }
        for (int y = static_cast<int>(a.y); y < static_cast<int>(a.y + a.h); ++y) {
            const float v = (static_cast<float>(y) - a.y) / a.h;
            int front = kRidges - 1;
            while (front >= 0 && v <= height[static_cast<std::size_t>(front)])
                --front;
            if (front < 0) {
                const float cloud = valueNoise({u * 5, v * 14}, seed);
                p.set(x, y, mix(sky, Vec3{0.85f, 0.85f, 0.85f}, v * 0.8f + 0.3f * cloud));
            } else {
                const float grain = fractalNoise({u * 20, v * 40}, 1, 4, 0.6f, 0.01f, seed + 77);
                p.set(x, y, mix(sky, land, 0.3f + 0.22f * static_cast<float>(front)) * (1 + 0.5f * grain));
            }
        }
    }
    p.ellipse({a.x + random.uniform(0.1f, 0.9f) * a.w, a.y + random.uniform(0.05f, 0.3f) * a.h},
              {a.w * 0.05f, a.w * 0.05f}, {0.95f, 0.9f, 0.7f});
}

void lines(Picture& p, Area a, float size, Random& random, Vec3 ink)
{
    for (float y = a.y; y + size < a.y + a.h; y += size * 1.7f)
        p.writing({a.x, y}, a.w * random.uniform(0.5f, 1.0f), size, random.bits(), ink);
}

void poster(Picture& p, float w, float h, Random& random)
{
    shapes(p, {0.08f * w, 0.08f * h, 0.84f * w, 0.66f * h}, 26 + random.below(24), random);
    lines(p, {0.1f * w, 0.8f * h, 0.8f * w, 0.14f * h}, h * 0.05f, random, anyColor(random, 0.0f, 0.3f));
}

void collage(Picture& p, float w, float h, Random& random)
{
    const int columns = 2 + random.below(3);
    const int rows = 3 + random.below(3);
    const float cw = w / static_cast<float>(columns);
    const float ch = h / static_cast<float>(rows);
    for (int i = 0; i < columns * rows; ++i) {
        const Area a{(static_cast<float>(i % columns) + 0.06f) * cw,
                     (static_cast<float>(i / columns) + 0.06f) * ch, cw * 0.88f, ch * 0.88f};
        if (random.chance(0.5f)) {
            landscape(p, a, random);
        } else {
            p.rectangle({a.x + a.w / 2, a.y + a.h / 2}, {a.w / 2, a.h / 2}, 0, anyColor(random));
            shapes(p, {a.x + a.w * 0.25f, a.y + a.h * 0.25f, a.w * 0.5f, a.h * 0.5f}, 9, random);
        }
    }
}

void calendar(Picture& p, float w, float h, Random& random)
{
    landscape(p, {0, 0, w, h * 0.5f}, random);
    for (int i = 0; i < 35; ++i) {
        const float x = (static_cast<float>(i % 7) + 0.5f) * w / 7;
        const float y = h * (0.56f + 0.088f * static_cast<float>(i / 7));
        const Vec3 ink = i % 7 == 6 ? Vec3{0.6f, 0.05f, 0.05f} : Vec3{0.05f, 0.05f, 0.05f};
        p.writing({x - w * 0.04f, y}, w * 0.07f, h * 0.035f, random.bits(), ink);
    }
}

void map(Picture& p, float w, float h, Random& random)
{
    for (int i = 0; i < 14; ++i)
        p.ellipse({random.uniform() * w, random.uniform() * h},
                  {random.uniform(0.03f, 0.16f) * w, random.uniform(0.03f, 0.12f) * h},
                  mix(Vec3{0.35f, 0.6f, 0.3f}, Vec3{0.3f, 0.5f, 0.8f}, random.uniform()));
    for (int i = 0; i < 40; ++i) {
        const Vec2 from{random.uniform() * w, random.uniform() * h};
        const Vec2 to{from.x + random.uniform(-0.4f, 0.4f) * w, from.y + random.uniform(-0.4f, 0.4f) * h};
        p.line(from, to, random.uniform(1.0f, 4.0f),
               i % 4 ? Vec3{0.9f, 0.8f, 0.3f} : Vec3{0.7f, 0.15f, 0.1f});
    }
    for (int i = 0; i < 25; ++i)
        p.writing({random.uniform() * w, random.uniform() * h}, w * 0.1f, h * 0.018f, random.bits(),
                  {0, 0, 0});
}

void screen(Picture& p, float w, float h, Random& random)
{
    landscape(p, {0, 0, w, h}, random);
    for (int i = 0; i < 3; ++i) {
        const Area a{random.uniform(0, 0.5f) * w, random.uniform(0, 0.4f) * h, random.uniform(0.3f, 0.5f) * w,
                     random.uniform(0.4f, 0.55f) * h};
        const bool dark = random.chance(0.4f);
        p.rectangle({a.x + a.w / 2, a.y + a.h / 2}, {a.w / 2, a.h / 2}, 0,
                    dark ? Vec3{0.03f, 0.03f, 0.04f} : Vec3{0.9f, 0.9f, 0.9f});
        p.rectangle({a.x + a.w / 2, a.y + h * 0.02f}, {a.w / 2, h * 0.02f}, 0, anyColor(random));
        lines(p, {a.x + a.w * 0.05f, a.y + h * 0.07f, a.w * 0.85f, a.h - h * 0.1f}, h * 0.022f, random,
              dark ? Vec3{0.5f, 0.8f, 0.5f} : Vec3{0.1f, 0.1f, 0.12f});
    }
}

void rug(Picture& p, float w, float h, Random& random)
{
    for (float inset : {0.02f, 0.05f, 0.09f, 0.12f}) {
        const Vec3 color = anyColor(random, 0.03f, 0.5f);
        p.rectangle({w / 2, h / 2}, {w * (0.5f - inset), h / 2 - inset * w}, 0, color);
    }
    for (int i = 0; i < 26; ++i) { // mirrored twice, as woven patterns are
        const Vec2 c{random.uniform(0.14f, 0.5f) * w, random.uniform(0.14f, 0.5f) * h};
        const Vec2 half{random.uniform(0.01f, 0.06f) * w, random.uniform(0.01f, 0.06f) * w};
        const float angle = random.chance(0.5f) ? 0.785f : 0.0f;
        const Vec3 color = anyColor(random, 0.03f, 0.6f);
        for (const Vec2 m : {c, Vec2{w - c.x, c.y}, Vec2{c.x, h - c.y}, Vec2{w - c.x, h - c.y}})
            p.rectangle(m, half, angle, color);
    }
}

} // namespace

Picture paintPrint(Print kind, int width, int height, std::uint32_t seed)
{
    Random random(seed);
    const auto w = static_cast<float>(width);
    const auto h = static_cast<float>(height);
    const bool paper =
        kind == Print::Text || kind == Print::Collage || kind == Print::Calendar || kind == Print::Map;
    Picture p(width, height, paper ? Vec3{0.8f, 0.79f, 0.74f} : anyColor(random, 0.1f, 0.9f));
    switch (kind) {
    case Print::Poster:
        poster(p, w, h, random);
        break;
    case Print::Landscape:
        landscape(p, {0, 0, w, h}, random);
        break;
    case Print::Collage:
        collage(p, w, h, random);
        break;
    case Print::Text:
        p.writing({w * 0.1f, h * 0.06f}, w * 0.7f, h * 0.06f, random.bits(), anyColor(random, 0, 0.4f));
        lines(p, {w * 0.1f, h * 0.18f, w * 0.8f, h * 0.75f}, h * 0.028f, random, {0.05f, 0.05f, 0.05f});
        break;
    case Print::Calendar:
        calendar(p, w, h, random);
        break;
    case Print::Map:
        map(p, w, h, random);
        break;
    case Print::Screen:
        screen(p, w, h, random);
        break;
    case Print::Rug:
        rug(p, w, h, random);
        break;
    case Print::Graffiti:
        shapes(p, {0, 0, w, h}, 40, random);
        lines(p, {w * 0.05f, h * 0.3f, w * 0.9f, h * 0.5f}, h * 0.25f, random, anyColor(random));
        break;
    }
    p.finish();
    return p;
}

} // namespace samplescene
