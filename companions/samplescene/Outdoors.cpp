// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Outdoors.h"

namespace samplescene {
namespace {

int pane(Builder& b)
{
    Material m;
    m.color = {0.03f, 0.04f, 0.05f};
    m.gloss = 0.25f;
    m.contrast = 0.3f;
    return b.material(m);
}

int leaves(Builder& b)
{
    Material m;
    m.look = Look::Foliage;
    m.color = {b.random.uniform(0.08f, 0.2f), b.random.uniform(0.22f, 0.35f), 0.05f};
    m.second = m.color * 0.35f;
    return b.material(m);
}

void houseWindow(Builder& b, const Frame& f, float width, float height, int glass, int rim, int sill)
{
    b.box(f, {0, -0.01f, 0}, {width, 0.06f, height}, glass);
    for (const float s : {-1.0f, 1.0f}) {
        b.box(f, {s * width / 2, -0.03f, 0}, {0.07f, 0.12f, height + 0.07f}, rim);
        b.box(f, {0, -0.03f, s * height / 2}, {width + 0.07f, 0.12f, 0.07f}, rim);
    }
    b.box(f, {0, -0.03f, 0}, {0.05f, 0.1f, height}, rim);
    b.box(f, {0, -0.03f, height * 0.2f}, {width, 0.1f, 0.05f}, rim);
    b.box(f, {0, -0.12f, -height / 2 - 0.06f}, {width + 0.2f, 0.24f, 0.06f}, sill);
}

} // namespace

void house(Builder& b, const Frame& f, float width, float depth, int floors)
{
    const BuildingPart part(b, Part::House);
    Random& r = b.random;
    const float storey = r.uniform(2.9f, 3.4f);
    const float height = storey * static_cast<float>(floors) + 0.4f;
    Material wall;
    if (r.chance(0.45f)) {
        wall.look = Look::Brick;
        wall.color = {r.uniform(0.3f, 0.5f), r.uniform(0.15f, 0.28f), r.uniform(0.1f, 0.2f)};
        wall.second = {0.5f, 0.48f, 0.44f};
        wall.size = 0.25f;
    } else {
        wall.color = {r.uniform(0.4f, 0.75f), r.uniform(0.4f, 0.7f), r.uniform(0.3f, 0.65f)};
        wall.contrast = 2.2f;
    }
    const int front = b.material(wall);
    const int rim = b.paint({0.72f, 0.71f, 0.68f}, 0.6f);
    const int sill = b.paint({0.45f, 0.44f, 0.42f}, 2);
    const int glass = pane(b);
    b.standing(f, {0, depth / 2, -0.3f}, {width, depth, height + 0.3f}, front);
    b.standing(f, {0, depth / 2, -0.3f}, {width + 0.08f, depth + 0.08f, 0.8f}, sill);
    b.standing(f, {0, depth / 2, height}, {width + 0.4f, depth + 0.5f, 0.22f}, rim);
    // Gable roof of two slabs.
    Material tile;
    tile.look = Look::Tiles;
    tile.color = {0.32f, 0.12f, 0.08f};
    tile.second = {0.1f, 0.05f, 0.04f};
    tile.size = 0.3f;
    const int roof = b.material(tile);
    for (const float s : {-1.0f, 1.0f})
        b.box(f, {0, depth / 2 + s * depth * 0.27f, height + 0.2f + depth * 0.16f},
              {width + 0.3f, depth * 0.68f, 0.12f}, roof, 0, -s * 0.55f);
    const int columns = std::max(2, static_cast<int>(width / r.uniform(2.2f, 3.0f)));
    const int door = r.below(columns);
    const float w = r.uniform(0.9f, 1.4f);
    const bool balcony = r.chance(0.4f);
    for (int level = 0; level < floors; ++level) {
        for (int c = 0; c < columns; ++c) {
            const float x = width * ((static_cast<float>(c) + 0.5f) / static_cast<float>(columns) - 0.5f);
            if (level == 0 && c == door) {
                b.box(f, {x, -0.02f, 1.15f}, {1.1f, 0.08f, 2.3f}, b.wood(b.anyColor(0.03f, 0.3f)));
                b.box(f, {x, -0.03f, 2.4f}, {1.3f, 0.14f, 0.2f}, rim);
                for (const float s : {-0.62f, 0.62f})
                    b.box(f, {x + s, -0.03f, 1.2f}, {0.14f, 0.14f, 2.4f}, rim);
                b.box(f, {x, -0.35f, 0.08f}, {1.5f, 0.7f, 0.16f}, sill);
                const std::size_t plate = b.box(f, {x + 0.9f, -0.01f, 1.7f}, {0.3f, 0.04f, 0.2f}, rim);
                b.face(plate, 2, b.print(Print::Text, 96, 64));
                continue;
            }
            const float z = storey * static_cast<float>(level) + 0.4f + storey * 0.5f;
            houseWindow(b, f.at({x, 0, z}), w, 1.45f, glass, rim, sill);
            if (balcony && level > 0 && (c + level) % 2 == 0) {
                b.box(f, {x, -0.55f, z - 0.95f}, {w + 0.9f, 1.1f, 0.14f}, sill);
                b.box(f, {x, -1.08f, z - 0.45f}, {w + 0.9f, 0.04f, 0.85f}, b.paint(b.anyColor(0.2f, 0.6f)));
            }
        }
    }
    if (r.chance(0.6f)) { // a shop sign, a painted wall
        const std::size_t s = b.box(f, {r.uniform(-0.2f, 0.2f) * width, -0.03f, storey + 0.05f},
                                    {width * 0.5f, 0.1f, 0.5f}, rim);
        b.face(s, 2, b.print(Print::Text, 600, 80));
    }
    for (int i = 0; i < 2; ++i) {
        const std::size_t s = b.box(f, {r.uniform(-0.45f, 0.45f) * width, -0.004f, r.uniform(0.9f, 1.6f)},
                                    {0.7f, 0.02f, 0.9f}, rim);
        b.face(s, 2, b.print(r.chance(0.5f) ? Print::Poster : Print::Graffiti, 280, 360));
    }
}

void tree(Builder& b, const Frame& f, float height)
{
    const BuildingPart part(b, Part::Plant);
    const int bark = b.paint({0.16f, 0.12f, 0.08f}, 8);
    b.cylinder(f, {0, 0, 0}, 0.05f * std::sqrt(height), height * 0.6f, bark);
    const int green = leaves(b);
    const int clumps = 16;
    for (int i = 0; i < clumps; ++i) {
        const float a = 2.4f * static_cast<float>(i);
        const float level = (static_cast<float>(i) + 0.5f) / clumps;
        const float out =
            height * 0.26f * std::sin(3.14159f * (0.15f + 0.75f * level)) * b.random.uniform(0.5f, 1.0f);
        const float size = height * b.random.uniform(0.09f, 0.16f);
        const std::size_t s =
            b.ellipsoid(f, {out * std::cos(a), out * std::sin(a), height * (0.45f + 0.5f * level)},
                        {size, size, size * 0.8f}, green);
        b.world().shapes[s].passage = Passage::Cutout;
    }
}

void car(Builder& b, const Frame& where)
{
    const Frame f = b.loose(where, 2.0f);
    Material lacquer;
    lacquer.color = b.anyColor(0.02f, 0.6f);
    lacquer.contrast = 0.4f;
    lacquer.gloss = 0.06f;
    const int body = b.material(lacquer);
    const int glass = pane(b);
    const int black = b.paint({0.02f, 0.02f, 0.02f});
    b.box(f, {0, 0, 0.55f}, {4.2f, 1.7f, 0.6f}, body);
    b.box(f, {-0.15f, 0, 1.1f}, {2.1f, 1.5f, 0.52f}, glass);
    b.box(f, {-0.15f, 0, 1.38f}, {1.9f, 1.46f, 0.06f}, body);
    for (const float x : {-1.16f, -0.15f, 0.86f})
        b.box(f, {x, 0, 1.12f}, {0.08f, 1.52f, 0.54f}, body);
    for (int i = 0; i < 4; ++i) { // wheels lie: a prism of two turned boxes reads as round
        const Vec3 at{i % 2 ? 1.3f : -1.3f, (i / 2 ? 0.5f : -0.5f) * 1.62f, 0.31f};
        b.box(f, at, {0.6f, 0.2f, 0.42f}, black);
        b.box(f, at, {0.42f, 0.2f, 0.6f}, black);
        b.box(f, at, {0.3f, 0.22f, 0.3f}, b.metal({0.4f, 0.4f, 0.42f}));
    }
    const int lamp = b.paint({0.7f, 0.7f, 0.65f});
    for (const float y : {-0.6f, 0.6f}) {
        b.box(f, {2.1f, y, 0.62f}, {0.04f, 0.34f, 0.16f}, lamp);
        b.box(f, {-2.1f, y, 0.66f}, {0.04f, 0.3f, 0.14f}, b.paint({0.4f, 0.02f, 0.02f}));
    }
    const std::size_t plate = b.box(f, {2.12f, 0, 0.45f}, {0.02f, 0.5f, 0.11f}, lamp);
    b.face(plate, 1, b.print(Print::Text, 120, 28));
}

void lampPost(Builder& b, const Frame& f)
{
    const int metal = b.metal({0.12f, 0.14f, 0.13f});
    b.cylinder(f, {0, 0, 0}, 0.1f, 0.7f, metal);
    b.cylinder(f, {0, 0, 0}, 0.05f, 5.0f, metal);
    b.box(f, {0.35f, 0, 4.95f}, {0.8f, 0.05f, 0.05f}, metal);
    b.box(f, {0.7f, 0, 4.88f}, {0.5f, 0.2f, 0.1f}, metal);
    if (b.random.chance(0.6f)) {
        const std::size_t s = b.box(f, {0, -0.06f, 1.7f}, {0.4f, 0.01f, 0.55f}, metal);
        b.face(s, 2, b.print(Print::Poster, 160, 220));
    }
}

void bench(Builder& b, const Frame& f)
{
    const int wood = b.wood({0.35f, 0.22f, 0.12f});
    const int metal = b.metal({0.1f, 0.1f, 0.1f});
    for (int i = 0; i < 4; ++i)
        b.box(f, {0, static_cast<float>(i) * 0.11f, 0.45f}, {1.7f, 0.09f, 0.04f}, wood);
    for (int i = 0; i < 3; ++i)
        b.box(f, {0, 0.4f, 0.6f + 0.13f * static_cast<float>(i)}, {1.7f, 0.035f, 0.1f}, wood);
    for (const float x : {-0.75f, 0.75f}) {
        b.box(f, {x, 0.16f, 0.22f}, {0.06f, 0.4f, 0.44f}, metal);
        b.box(f, {x, 0.42f, 0.45f}, {0.06f, 0.04f, 0.9f}, metal);
    }
}

void signPost(Builder& b, const Frame& f)
{
    b.cylinder(f, {0, 0, 0}, 0.03f, 2.6f, b.metal({0.4f, 0.4f, 0.4f}));
    const int back = b.metal({0.4f, 0.4f, 0.4f});
    const std::size_t s = b.box(f, {0, -0.04f, 2.3f}, {0.6f, 0.02f, 0.6f}, back);
    b.face(s, 2, b.print(Print::Poster, 160, 160));
}

} // namespace samplescene
