// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Furniture.h"

namespace samplescene {
namespace {

Vec3 woodTone(Random& r)
{
    const Vec3 tones[] = {{0.45f, 0.28f, 0.14f},
                          {0.2f, 0.1f, 0.05f},
                          {0.6f, 0.45f, 0.28f},
                          {0.65f, 0.63f, 0.58f},
                          {0.32f, 0.2f, 0.12f}};
    return tones[r.below(5)] * r.uniform(0.85f, 1.1f);
}

int handleMetal(Builder& b)
{
    return b.metal({0.4f, 0.4f, 0.42f});
}

/// Doors or drawers as slabs before a body, each with a handle.
void fronts(Builder& b, const Frame& f, float width, float z0, float z1, float y, int columns, int rows,
            int material, int metal)
{
    const float w = width / static_cast<float>(columns);
    const float h = (z1 - z0) / static_cast<float>(rows);
    for (int i = 0; i < columns * rows; ++i) {
        const float x = -width / 2 + (static_cast<float>(i % columns) + 0.5f) * w;
        const float z = z0 + (static_cast<float>(i / columns) + 0.5f) * h;
        b.box(f, {x, y + 0.009f, z}, {w - 0.006f, 0.018f, h - 0.006f}, material);
        const bool tall = h > w;
        const float hx = tall ? x + (i % 2 ? -1.0f : 1.0f) * (w / 2 - 0.05f) : x;
        b.box(f, {hx, y + 0.03f, tall ? z : z + h * 0.25f},
              tall ? Vec3{0.014f, 0.024f, 0.14f} : Vec3{0.12f, 0.024f, 0.014f}, metal);
    }
}

void legs(Builder& b, const Frame& f, float width, float depth, float height, float size, int material)
{
    for (int i = 0; i < 4; ++i)
        b.standing(f, {(i % 2 ? 0.5f : -0.5f) * (width - size), (i / 2 ? 0.5f : -0.5f) * (depth - size), 0},
                   {size, size, height}, material);
}

void woodenChair(Builder& b, const Frame& f, int wood, int seat)
{
    legs(b, f, 0.42f, 0.42f, 0.44f, 0.035f, wood);
    b.box(f, {0, 0, 0.455f}, {0.44f, 0.44f, 0.035f}, seat);
    for (const float x : {-0.19f, 0.19f})
        b.box(f, {x, -0.2f, 0.68f}, {0.035f, 0.03f, 0.46f}, wood);
    b.box(f, {0, -0.2f, 0.84f}, {0.36f, 0.022f, 0.1f}, wood);
    b.box(f, {0, -0.2f, 0.68f}, {0.36f, 0.018f, 0.06f}, wood);
}

void smallThings(Builder& b, const Frame& f, float width, float depth, float z, int count)
{
    for (int i = 0; i < count; ++i) {
        const float x = b.random.uniform(-0.46f, 0.46f) * width;
        const float y = b.random.uniform(-0.35f, 0.35f) * depth;
        const int m = b.paint(b.anyColor(0.05f, 0.7f), 2);
        const float s = b.random.uniform(0.03f, 0.07f);
        switch (b.random.below(4)) {
        case 0:
            b.cylinder(f, {x, y, z}, s * 0.6f, s * 3, m);
            break;
        case 1:
            b.standing(f, {x, y, z}, {s * 3, s * 2.2f, s * 0.5f}, m, b.random.uniform(-0.6f, 0.6f));
            break;
        case 2:
            b.ellipsoid(f, {x, y, z + s}, {s, s, s}, m);
            break;
        default:
            b.standing(f, {x, y, z}, {s * 1.4f, s, s * 2.2f}, m, b.random.uniform(-0.6f, 0.6f));
        }
    }
}

} // namespace

void books(Builder& b, const Frame& f, float width, float height, float depth)
{
    float x = -width / 2;
    while (x < width / 2 - 0.06f) {
        if (b.random.chance(0.06f)) { // a gap, a leaning ornament
            x += b.random.uniform(0.05f, 0.18f);
            continue;
        }
        const float thick = b.random.uniform(0.018f, 0.05f);
        const float h = height * b.random.uniform(0.62f, 0.95f);
        const float d = depth * b.random.uniform(0.6f, 0.9f);
        const Vec3 color = b.anyColor(0.03f, 0.6f);
        const std::size_t s =
            b.box(f, {x + thick / 2, d / 2, h / 2}, {thick - 0.002f, d, h}, b.paint(color, 1.5f));
        if (b.random.chance(0.5f)) b.face(s, 3, b.spine());
        x += thick;
    }
}

void bed(Builder& b, const Frame& f, float width)
{
    const int wood = b.wood(woodTone(b.random));
    b.standing(f, {0, 0.03f, 0}, {width + 0.06f, 0.06f, 0.95f}, wood);
    b.standing(f, {0, 1.04f, 0.12f}, {width, 2.02f, 0.2f}, wood);
    legs(b, f.at({0, 1.04f, 0}), width, 2.0f, 0.12f, 0.07f, wood);
    const int sheet = b.fabric({0.7f, 0.7f, 0.68f});
    b.standing(f, {0, 1.04f, 0.32f}, {width - 0.04f, 1.96f, 0.18f}, sheet);
    const int cover =
        b.random.chance(0.4f) ? b.print(Print::Rug, 384, 384) : b.fabric(b.anyColor(0.05f, 0.6f));
    const Frame slipped = b.loose(f, 0.1f);
    b.standing(slipped, {0, 1.3f, 0.48f}, {width + 0.02f, 1.4f, 0.07f}, cover);
    const int pillow = b.fabric(b.anyColor(0.3f, 0.8f));
    for (int i = 0; i < (width > 1.2f ? 2 : 1); ++i) {
        const float x = width > 1.2f ? (i ? 0.25f : -0.25f) * width : 0;
        b.ellipsoid(f, {x, 0.35f, 0.56f}, {0.3f, 0.2f, 0.09f}, pillow);
    }
}

void wardrobe(Builder& b, const Frame& f, float width, float height)
{
    const int wood = b.wood(woodTone(b.random));
    b.standing(f, {0, 0.29f, 0}, {width, 0.58f, height}, wood);
    const int columns = std::max(2, static_cast<int>(width / 0.5f));
    fronts(b, f, width, 0.08f, height - 0.02f, 0.58f, columns, 1,
           b.random.chance(0.5f) ? wood : b.wood(woodTone(b.random)), handleMetal(b));
    if (b.random.chance(0.6f)) cardboardBoxes(b, f.at({width * 0.2f, 0.3f, height}));
}

void bookcase(Builder& b, const Frame& f, float width, float height)
{
    const int wood = b.wood(woodTone(b.random));
    b.standing(f, {-width / 2 + 0.01f, 0.15f, 0}, {0.02f, 0.3f, height}, wood);
    b.standing(f, {width / 2 - 0.01f, 0.15f, 0}, {0.02f, 0.3f, height}, wood);
    b.standing(f, {0, 0.008f, 0}, {width, 0.012f, height}, wood);
    const int boards = static_cast<int>(height / 0.36f);
    const float step = (height - 0.1f) / static_cast<float>(boards);
    for (int i = 0; i <= boards; ++i) {
        const float z = 0.06f + static_cast<float>(i) * step;
        b.box(f, {0, 0.15f, z}, {width - 0.04f, 0.3f, 0.02f}, wood);
        if (i == boards) break;
        const Frame row = f.at({0, 0.015f, z + 0.01f});
        if (b.random.chance(0.8f))
            books(b, row, width - 0.06f, step - 0.04f, 0.27f);
        else
            smallThings(b, row.at({0, 0.13f, 0}), width - 0.1f, 0.2f, 0, 6);
    }
    smallThings(b, f.at({0, 0.15f, 0}), width, 0.25f, height - 0.03f, 3);
}

void officeChair(Builder& b, const Frame& f)
{
    const int cloth = b.fabric(b.anyColor(0.03f, 0.3f));
    const int black = b.paint({0.04f, 0.04f, 0.045f});
    for (int i = 0; i < 5; ++i) {
        const float a = 1.2566f * static_cast<float>(i);
        b.box(f, {0.14f * std::cos(a), 0.14f * std::sin(a), 0.08f}, {0.28f, 0.05f, 0.04f}, black, a);
    }
    b.cylinder(f, {0, 0, 0.08f}, 0.03f, 0.36f, black);
    b.box(f, {0, 0, 0.47f}, {0.48f, 0.46f, 0.08f}, cloth);
    b.box(f, {0, -0.23f, 0.78f}, {0.44f, 0.06f, 0.5f}, cloth, 0, -0.1f);
    for (const float x : {-0.26f, 0.26f}) {
        b.box(f, {x, 0, 0.56f}, {0.03f, 0.03f, 0.2f}, black);
        b.box(f, {x, 0, 0.67f}, {0.05f, 0.26f, 0.03f}, black);
    }
}

void desk(Builder& b, const Frame& f, float width, int monitors)
{
    const int wood = b.wood(woodTone(b.random));
    const int metal = handleMetal(b);
    b.box(f, {0, 0.375f, 0.725f}, {width, 0.75f, 0.03f}, wood);
    legs(b, f.at({0, 0.375f, 0}), width - 0.04f, 0.7f, 0.71f, 0.05f, metal);
    b.standing(f, {width / 2 - 0.27f, 0.36f, 0.06f}, {0.42f, 0.6f, 0.56f}, wood);
    fronts(b, f.at({width / 2 - 0.27f, 0, 0}), 0.42f, 0.08f, 0.61f, 0.66f, 1, 3, wood, metal);
    const int black = b.paint({0.03f, 0.03f, 0.035f});
    for (int i = 0; i < monitors; ++i) {
        const float x = monitors == 1 ? 0 : (i ? 0.3f : -0.3f);
        const Frame m = f.at({x, 0.22f, 0.74f}, monitors == 1 ? 0.0f : (i ? 0.15f : -0.15f));
        b.standing(m, {0, 0, 0}, {0.22f, 0.16f, 0.012f}, black);
        b.standing(m, {0, 0, 0}, {0.04f, 0.03f, 0.2f}, black);
        const std::size_t s = b.box(m, {0, 0.02f, 0.32f}, {0.56f, 0.03f, 0.34f}, black);
        b.face(s, 3, b.print(Print::Screen, 400, 240));
    }
    b.box(f, {0, 0.52f, 0.748f}, {0.44f, 0.14f, 0.016f}, black);
    smallThings(b, f.at({0, 0.375f, 0}), width, 0.6f, 0.74f, 7);
    const std::size_t sheet = b.box(f, {-width * 0.33f, 0.45f, 0.743f}, {0.21f, 0.297f, 0.004f}, wood,
                                    b.random.uniform(-0.5f, 0.5f));
    b.face(sheet, 5, b.print(Print::Text, 160, 224));
    officeChair(b, b.loose(f.at({0, 0.95f, 0}, 3.14159f + b.random.uniform(-0.6f, 0.6f)), 0.7f));
}

void sofa(Builder& b, const Frame& f, float width)
{
    const int cloth = b.fabric(b.anyColor(0.05f, 0.45f));
    b.standing(f, {0, 0.45f, 0.06f}, {width, 0.88f, 0.3f}, cloth);
    b.box(f, {0, 0.14f, 0.6f}, {width, 0.24f, 0.5f}, cloth, 0, 0.12f);
    for (const float s : {-1.0f, 1.0f})
        b.standing(f, {s * (width / 2 - 0.09f), 0.45f, 0.06f}, {0.2f, 0.9f, 0.55f}, cloth);
    const int seats = width > 1.5f ? 3 : 2;
    const float w = (width - 0.4f) / static_cast<float>(seats);
    for (int i = 0; i < seats; ++i)
        b.box(f, {-width / 2 + 0.2f + (static_cast<float>(i) + 0.5f) * w, 0.55f, 0.42f},
              {w - 0.015f, 0.66f, 0.13f}, cloth);
    for (int i = 0; i < seats; ++i) {
        const int cushion =
            b.random.chance(0.5f) ? b.print(Print::Poster, 160, 160) : b.fabric(b.anyColor(0.1f, 0.7f));
        b.box(f, {b.random.uniform(-0.4f, 0.4f) * width, 0.36f, 0.66f}, {0.4f, 0.13f, 0.4f}, cushion,
              b.random.uniform(-0.4f, 0.4f), 0.3f);
    }
}

void armchair(Builder& b, const Frame& f)
{
    const int cloth = b.fabric(b.anyColor(0.05f, 0.5f));
    const Frame m = b.loose(f.at({0, 0.42f, 0}, b.random.uniform(-0.3f, 0.3f)), 0.5f);
    b.standing(m, {0, 0, 0.08f}, {0.8f, 0.8f, 0.28f}, cloth);
    b.box(m, {0, -0.33f, 0.62f}, {0.76f, 0.18f, 0.56f}, cloth, 0, 0.15f);
    for (const float s : {-1.0f, 1.0f})
        b.standing(m, {s * 0.35f, 0, 0.3f}, {0.13f, 0.76f, 0.3f}, cloth);
    b.box(m, {0, 0.06f, 0.42f}, {0.54f, 0.62f, 0.12f}, cloth);
}

void coffeeTable(Builder& b, const Frame& f)
{
    const int wood = b.wood(woodTone(b.random));
    const Frame m = b.loose(f, 0.5f);
    b.box(m, {0, 0, 0.42f}, {1.05f, 0.6f, 0.035f}, wood);
    legs(b, m, 1.0f, 0.55f, 0.4f, 0.05f, wood);
    b.box(m, {0, 0, 0.18f}, {0.92f, 0.5f, 0.02f}, wood);
    smallThings(b, m, 0.9f, 0.5f, 0.4375f, 4);
    const std::size_t s = b.box(m, {0.2f, 0.05f, 0.444f}, {0.21f, 0.28f, 0.012f}, wood, 0.3f);
    b.face(s, 5, b.print(Print::Collage, 160, 220));
}

void televisionBench(Builder& b, const Frame& f, float width)
{
    const int wood = b.wood(woodTone(b.random));
    const int black = b.paint({0.03f, 0.03f, 0.03f}, 0.3f);
    b.standing(f, {0, 0.2f, 0.05f}, {width, 0.4f, 0.42f}, wood);
    fronts(b, f, width, 0.07f, 0.45f, 0.4f, 3, 1, wood, handleMetal(b));
    Material screen;
    screen.color = {0.015f, 0.016f, 0.02f};
    screen.gloss = 0.06f;
    screen.contrast = 0.1f;
    const std::size_t tv = b.box(f, {0, 0.18f, 0.95f}, {1.15f, 0.05f, 0.66f}, black);
    b.face(tv, 3, b.material(screen));
    b.standing(f, {0, 0.18f, 0.47f}, {0.4f, 0.22f, 0.02f}, black);
    b.standing(f, {0, 0.17f, 0.47f}, {0.08f, 0.04f, 0.2f}, black);
    smallThings(b, f.at({0, 0.3f, 0}), width, 0.12f, 0.47f, 5);
}

void diningTable(Builder& b, const Frame& f, float length, float breadth)
{
    const int wood = b.wood(woodTone(b.random));
    const int chairWood = b.random.chance(0.6f) ? wood : b.wood(woodTone(b.random));
    const int seat = b.random.chance(0.5f) ? chairWood : b.fabric(b.anyColor(0.1f, 0.5f));
    b.box(f, {0, 0, 0.735f}, {length, breadth, 0.035f}, wood);
    legs(b, f, length - 0.1f, breadth - 0.1f, 0.72f, 0.07f, wood);
    const int along = length > 1.3f ? 2 : 1;
    for (int i = 0; i < along; ++i) {
        const float x = along == 1 ? 0 : (i ? 0.25f : -0.25f) * length;
        for (const float s : {-1.0f, 1.0f}) {
            const float out = b.random.uniform(0.0f, 0.25f);
            const Frame c = f.at({x + b.random.uniform(-0.05f, 0.05f), s * (breadth / 2 + out), 0},
                                 s > 0 ? 3.14159f : 0.0f);
            woodenChair(b, b.loose(c.at({0, 0, 0}, b.random.uniform(-0.25f, 0.25f)), 0.6f), chairWood, seat);
        }
    }
    smallThings(b, f, length * 0.8f, breadth * 0.7f, 0.7525f, 6);
}

void sideboard(Builder& b, const Frame& f, float width, float height)
{
    const int wood = b.wood(woodTone(b.random));
    b.standing(f, {0, 0.2f, 0.06f}, {width, 0.4f, height - 0.06f}, wood);
    fronts(b, f, width, 0.08f, height - 0.03f, 0.4f, std::max(2, static_cast<int>(width / 0.45f)),
           b.random.chance(0.5f) ? 1 : 2, b.random.chance(0.6f) ? wood : b.paint(b.anyColor(0.2f, 0.7f)),
           handleMetal(b));
    smallThings(b, f.at({0, 0.2f, 0}), width, 0.3f, height, 6);
    if (height < 1.1f && b.random.chance(0.6f)) plant(b, f.at({width * 0.3f, 0.2f, height}), 0.45f);
}

void plant(Builder& b, const Frame& f, float height)
{
    const Frame m = b.loose(f, 0.4f);
    const int pot = b.paint(b.anyColor(0.15f, 0.6f), 2);
    const float r = height * 0.13f + 0.03f;
    b.cylinder(m, {0, 0, 0}, r, height * 0.28f, pot);
    Material leaf;
    leaf.look = Look::Foliage;
    leaf.color = {0.1f, 0.25f, 0.06f};
    leaf.second = {0.03f, 0.1f, 0.03f};
    const int green = b.material(leaf);
    const int leaves = 9 + b.random.below(8);
    for (int i = 0; i < leaves; ++i) {
        const float a = 2.4f * static_cast<float>(i) + b.random.uniform(-0.3f, 0.3f);
        const float out = b.random.uniform(0.03f, 0.22f) * height;
        const float z = height * b.random.uniform(0.35f, 0.95f);
        b.box(m, {out * std::cos(a), out * std::sin(a), z}, {height * 0.25f, height * 0.09f, 0.006f}, green,
              a, b.random.uniform(-0.7f, 0.7f));
    }
    b.cylinder(m, {0, 0, height * 0.28f}, 0.012f, height * 0.55f, b.wood({0.2f, 0.13f, 0.07f}));
}

void floorLamp(Builder& b, const Frame& f)
{
    const Frame m = b.loose(f, 0.4f);
    const int metal = handleMetal(b);
    b.cylinder(m, {0, 0, 0}, 0.14f, 0.025f, metal);
    b.cylinder(m, {0, 0, 0}, 0.012f, 1.5f, metal);
    Material shade;
    shade.look = Look::Lamp;
    shade.color = {0.9f, 0.78f, 0.55f};
    shade.emission = 0.7f;
    b.cylinder(m, {0, 0, 1.35f}, 0.19f, 0.28f, b.material(shade));
    b.lamp(m.toWorld({0, 0, 1.72f}), Vec3{0.9f, 0.7f, 0.45f} * b.random.uniform(0.3f, 0.8f), 0.12f);
}

void cardboardBoxes(Builder& b, const Frame& f)
{
    const Frame m = b.loose(f, 0.6f);
    const int board = b.paint({0.4f, 0.28f, 0.16f}, 2.5f);
    float z = 0;
    for (int i = 0; i < 1 + b.random.below(2); ++i) {
        const float h = b.random.uniform(0.2f, 0.35f);
        const std::size_t s =
            b.standing(m, {0, 0, z}, {b.random.uniform(0.3f, 0.5f), b.random.uniform(0.3f, 0.4f), h}, board,
                       b.random.uniform(-0.3f, 0.3f));
        b.face(s, 3, b.print(Print::Text, 160, 100));
        z += h;
    }
}

} // namespace samplescene
