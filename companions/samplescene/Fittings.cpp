// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Furniture.h"

/// Kitchen, bathroom, things on walls and ceilings.
namespace samplescene {
namespace {

int white(Builder& b)
{
    Material m;
    m.color = {0.78f, 0.78f, 0.76f};
    m.contrast = 0.2f;
    m.gloss = 0.03f;
    return b.material(m);
}

int shiningLamp(Builder& b, Vec3 color, float emission)
{
    Material m;
    m.look = Look::Lamp;
    m.color = color;
    m.emission = emission;
    return b.material(m);
}

int mirrorMaterial(Builder& b)
{
    Material m;
    m.look = Look::Mirror;
    m.color = {0.88f, 0.9f, 0.89f};
    return b.material(m);
}

/// Hangs from 1.68 down; the back of its collar at the frame's origin.
void coat(Builder& b, const Frame& f)
{
    const float length = b.random.uniform(0.6f, 1.05f);
    const float swing = b.random.uniform(-0.25f, 0.25f);
    const int cloth = b.fabric(b.anyColor(0.03f, 0.35f));
    const int lining = b.fabric(b.anyColor(0.03f, 0.3f));
    const Frame c = f.at({0, 0.06f, 0}, swing);
    b.box(c, {0, 0, 1.62f}, {0.22f, 0.1f, 0.1f}, lining);
    b.box(c, {0, 0.01f, 1.6f - length / 2}, {0.34f, 0.1f, length}, cloth, 0, 0.03f);
    b.box(c, {0, 0.065f, 1.6f - length / 2}, {0.03f, 0.03f, length * 0.96f}, lining, 0, 0.03f);
    for (const float s : {-1.0f, 1.0f}) {
        b.box(c, {s * 0.12f, 0.0f, 1.58f}, {0.2f, 0.12f, 0.09f}, cloth);
        b.cylinder(c, {s * 0.215f, 0.0f, 0.98f}, 0.055f, 0.6f, cloth);
        b.box(c, {s * 0.09f, 0.065f, 1.6f - length * 0.66f}, {0.11f, 0.02f, 0.12f}, cloth, 0, 0.03f);
    }
}

} // namespace

void kitchenRow(Builder& b, const Frame& f, float width)
{
    const int front =
        b.random.chance(0.5f) ? b.wood({0.5f, 0.35f, 0.2f}) : b.paint(b.anyColor(0.25f, 0.75f), 0.5f);
    const int top = b.paint({0.12f, 0.12f, 0.12f}, 4);
    const int metal = b.metal({0.5f, 0.5f, 0.52f});
    const int units = std::max(2, static_cast<int>(width / 0.6f));
    const float w = width / static_cast<float>(units);
    b.standing(f, {0, 0.28f, 0.1f}, {width, 0.56f, 0.76f}, front);
    b.standing(f, {0, 0.25f, 0}, {width, 0.5f, 0.1f}, top);
    b.standing(f, {0, 0.31f, 0.86f}, {width, 0.62f, 0.04f}, top);
    for (int i = 0; i < units; ++i) {
        const float x = -width / 2 + (static_cast<float>(i) + 0.5f) * w;
        b.box(f, {x, 0.57f, 0.48f}, {w - 0.008f, 0.02f, 0.74f}, front);
        b.box(f, {x, 0.59f, 0.8f}, {w * 0.5f, 0.02f, 0.015f}, metal);
        if (i == 0) { // stove
            b.box(f, {x, 0.31f, 0.903f}, {w * 0.9f, 0.5f, 0.008f}, b.paint({0.02f, 0.02f, 0.02f}, 0.3f));
            for (int k = 0; k < 4; ++k)
                b.cylinder(f, {x + (k % 2 ? 0.12f : -0.12f), 0.31f + (k / 2 ? 0.11f : -0.11f), 0.907f},
                           0.085f, 0.003f, b.paint({0.1f, 0.1f, 0.1f}));
            b.box(f, {x, 0.22f, 1.75f}, {w, 0.42f, 0.12f}, metal);
            b.cylinder(f, {x, 0.15f, 1.8f}, 0.1f, 0.6f, metal);
            continue;
        }
        if (i == units / 2) { // sink and tap
            b.box(f, {x, 0.31f, 0.902f}, {w * 0.8f, 0.42f, 0.006f}, metal);
            b.cylinder(f, {x, 0.1f, 0.9f}, 0.015f, 0.28f, metal);
            b.box(f, {x, 0.19f, 1.17f}, {0.025f, 0.2f, 0.02f}, metal);
        }
        if (b.random.chance(0.75f)) {
            b.box(f, {x, 0.17f, 1.8f}, {w - 0.004f, 0.34f, 0.7f}, front);
            b.box(f, {x, 0.35f, 1.8f}, {w - 0.012f, 0.02f, 0.69f}, front);
            b.box(f, {x + w * 0.35f, 0.365f, 1.55f}, {0.015f, 0.02f, 0.12f}, metal);
        }
    }
    for (int i = 0; i < 6; ++i) {
        const float x = b.random.uniform(-0.45f, 0.45f) * width;
        b.cylinder(f, {x, b.random.uniform(0.1f, 0.25f), 0.9f}, b.random.uniform(0.03f, 0.07f),
                   b.random.uniform(0.1f, 0.28f), b.paint(b.anyColor(0.05f, 0.7f), 2));
    }
}

void refrigerator(Builder& b, const Frame& f)
{
    const int body = b.random.chance(0.5f) ? white(b) : b.metal({0.45f, 0.46f, 0.48f});
    const int metal = b.metal({0.4f, 0.4f, 0.4f});
    b.standing(f, {0, 0.3f, 0.04f}, {0.6f, 0.58f, 1.76f}, body);
    b.box(f, {0, 0.605f, 0.4f}, {0.59f, 0.03f, 0.68f}, body);
    b.box(f, {0, 0.605f, 1.27f}, {0.59f, 0.03f, 1.03f}, body);
    b.box(f, {-0.24f, 0.64f, 1.0f}, {0.02f, 0.03f, 0.3f}, metal);
    b.box(f, {-0.24f, 0.64f, 0.6f}, {0.02f, 0.03f, 0.2f}, metal);
    for (int i = 0; i < 5; ++i) {
        const std::size_t s = b.box(f, {b.random.uniform(-0.2f, 0.2f), 0.622f, b.random.uniform(1.1f, 1.7f)},
                                    {0.1f, 0.004f, 0.12f}, body, 0, 0);
        b.face(s, 3, b.print(i % 2 ? Print::Text : Print::Poster, 64, 80));
    }
}

void bathtub(Builder& b, const Frame& f)
{
    const int w = white(b);
    b.standing(f, {0, 0.375f, 0}, {1.7f, 0.75f, 0.12f}, w);
    b.standing(f, {0, 0.03f, 0.12f}, {1.7f, 0.06f, 0.46f}, w);
    b.standing(f, {0, 0.72f, 0.12f}, {1.7f, 0.06f, 0.46f}, w);
    b.standing(f, {-0.81f, 0.375f, 0.12f}, {0.08f, 0.75f, 0.46f}, w);
    b.standing(f, {0.81f, 0.375f, 0.12f}, {0.08f, 0.75f, 0.46f}, w);
    const int metal = b.metal({0.55f, 0.55f, 0.57f});
    b.box(f, {0.6f, 0.07f, 0.75f}, {0.2f, 0.14f, 0.05f}, metal);
    b.box(f, {0.6f, 0.04f, 1.3f}, {0.02f, 0.02f, 1.1f}, metal);
    b.cylinder(f, {0.6f, 0.12f, 1.85f}, 0.06f, 0.02f, metal);
}

void toilet(Builder& b, const Frame& f)
{
    const int w = white(b);
    b.standing(f, {0, 0.1f, 0.4f}, {0.38f, 0.18f, 0.38f}, w);
    b.cylinder(f, {0, 0.42f, 0}, 0.13f, 0.38f, w);
    b.ellipsoid(f, {0, 0.42f, 0.38f}, {0.19f, 0.24f, 0.06f}, w);
    b.cylinder(f, {0.35f, 0.1f, 0.6f}, 0.055f, 0.1f, b.paint({0.75f, 0.75f, 0.72f}, 2));
}

void washbasin(Builder& b, const Frame& f)
{
    const int w = white(b);
    b.standing(f, {0, 0.22f, 0.25f}, {0.6f, 0.42f, 0.5f}, b.wood({0.45f, 0.3f, 0.17f}));
    b.standing(f, {0, 0.24f, 0.75f}, {0.62f, 0.48f, 0.1f}, w);
    b.cylinder(f, {0, 0.1f, 0.85f}, 0.015f, 0.15f, b.metal({0.55f, 0.55f, 0.55f}));
    const std::size_t cabinet = b.box(f, {0, 0.06f, 1.55f}, {0.55f, 0.12f, 0.65f}, w);
    b.face(cabinet, 3, mirrorMaterial(b));
    b.standing(f, {0, 0.1f, 1.9f}, {0.4f, 0.05f, 0.05f}, shiningLamp(b, {0.95f, 0.95f, 0.9f}, 1.2f));
    for (int i = 0; i < 4; ++i)
        b.cylinder(f, {b.random.uniform(-0.27f, 0.27f), 0.06f, 0.85f}, 0.025f, b.random.uniform(0.08f, 0.2f),
                   b.paint(b.anyColor(0.1f, 0.8f), 2));
}

void coatRack(Builder& b, const Frame& f, float width)
{
    b.box(f, {0, 0.012f, 1.7f}, {width, 0.024f, 0.12f}, b.wood({0.4f, 0.26f, 0.14f}));
    const int hooks = static_cast<int>(width / 0.18f);
    const int metal = b.metal({0.4f, 0.4f, 0.4f});
    for (int i = 0; i < hooks; ++i) {
        const float x = -width / 2 + (static_cast<float>(i) + 0.5f) * width / static_cast<float>(hooks);
        b.box(f, {x, 0.045f, 1.7f}, {0.015f, 0.05f, 0.02f}, metal);
        if (i % 2 || !b.random.chance(0.8f)) continue;
        coat(b, b.loose(f.at({x, 0.03f, 0}), 0.15f));
    }
}

void framedPrint(Builder& b, const Frame& f, Print kind, float width, float height)
{
    const bool framed = b.random.chance(0.65f);
    const float border = framed ? 0.035f : 0;
    const int rim =
        framed ? (b.random.chance(0.5f) ? b.wood({0.25f, 0.15f, 0.08f})
                                        : b.paint(Vec3{1, 1, 1} * (b.random.chance(0.5f) ? 0.04f : 0.7f)))
               : b.paint({0.7f, 0.7f, 0.7f});
    if (framed) b.box(f, {0, 0.01f, 0}, {width + 2 * border, 0.02f, height + 2 * border}, rim);
    const std::size_t s =
        b.box(f, {0, framed ? 0.012f : 0.002f, 0}, {width, framed ? 0.021f : 0.004f, height}, rim);
    const float pixels = 560 / std::max(width, height);
    b.face(s, 3, b.print(kind, static_cast<int>(width * pixels), static_cast<int>(height * pixels)));
}

void wallMirror(Builder& b, const Frame& f, float width, float height)
{
    const int rim = b.wood({0.25f, 0.16f, 0.08f});
    b.box(f, {0, 0.012f, 0}, {width + 0.08f, 0.024f, height + 0.08f}, rim);
    const std::size_t s = b.box(f, {0, 0.014f, 0}, {width, 0.026f, height}, rim);
    b.face(s, 3, mirrorMaterial(b));
}

void clock(Builder& b, const Frame& f)
{
    const int dark = b.paint({0.03f, 0.03f, 0.03f});
    b.box(f, {0, 0.015f, 0}, {0.3f, 0.03f, 0.3f}, dark);
    b.box(f, {0, 0.017f, 0}, {0.26f, 0.032f, 0.26f}, white(b));
    b.box(f, {0.03f, 0.034f, 0.02f}, {0.09f, 0.004f, 0.012f}, dark);
    b.box(f, {0, 0.034f, 0.05f}, {0.008f, 0.004f, 0.1f}, dark);
}

void wallShelf(Builder& b, const Frame& f, float width)
{
    b.box(f, {0, 0.11f, 0}, {width, 0.22f, 0.025f}, b.wood(b.anyColor(0.2f, 0.6f)));
    books(b, f.at({0, 0.01f, 0.0125f}), width * 0.9f, 0.24f, 0.18f);
}

void curtains(Builder& b, const Frame& f, float windowWidth, float top)
{
    const int cloth = b.fabric(b.anyColor(0.2f, 0.75f));
    const float each = windowWidth * 0.22f + 0.08f;
    b.box(f, {0, 0.1f, top + 0.06f}, {windowWidth + 0.6f, 0.025f, 0.025f}, b.metal({0.3f, 0.3f, 0.3f}));
    for (const float side : {-1.0f, 1.0f}) {
        const int folds = static_cast<int>(each / 0.05f);
        for (int i = 0; i < folds; ++i) {
            const float x = side * (windowWidth / 2 + 0.22f - static_cast<float>(i) * 0.05f);
            b.cylinder(f, {x, 0.1f + (i % 2 ? 0.015f : -0.015f), 0.04f}, 0.03f, top, cloth);
        }
    }
}

void radiator(Builder& b, const Frame& f, float width)
{
    const int w = white(b);
    const int ribs = static_cast<int>(width / 0.08f);
    for (int i = 0; i < ribs; ++i)
        b.box(f, {(static_cast<float>(i) + 0.5f) * 0.08f - width / 2, 0.07f, 0.42f}, {0.065f, 0.08f, 0.55f},
              w);
    b.box(f, {0, 0.06f, 0.2f}, {width, 0.03f, 0.04f}, w);
}

void ceilingLamp(Builder& b, const Frame& f, float ceiling, int model, float power)
{
    const BuildingPart part(b, Part::Lamp);
    const Vec3 warm{1.0f, 0.86f, 0.66f};
    const int glow = shiningLamp(b, {0.98f, 0.93f, 0.82f}, 1.3f);
    switch (model) {
    case 0: // globe on a cord
        b.cylinder(f, {0, 0, ceiling - 0.5f}, 0.006f, 0.5f, b.paint({0.05f, 0.05f, 0.05f}));
        b.ellipsoid(f, {0, 0, ceiling - 0.62f}, {0.16f, 0.16f, 0.14f}, glow);
        b.lamp(f.toWorld({0, 0, ceiling - 0.85f}), warm * (power * 0.7f), 0.18f);
        b.lamp(f.toWorld({0, 0, ceiling - 0.42f}), warm * (power * 0.3f), 0.2f);
        break;
    case 1: // flat dish
        b.cylinder(f, {0, 0, ceiling - 0.09f}, 0.2f, 0.09f, glow);
        b.lamp(f.toWorld({0, 0, ceiling - 0.16f}), warm * power, 0.2f);
        break;
    default: // panel
        b.box(f, {0, 0, ceiling - 0.01f}, {1.2f, 0.3f, 0.02f}, glow);
        b.lamp(f.toWorld({-0.35f, 0, ceiling - 0.05f}), Vec3{0.95f, 0.97f, 1.0f} * (power * 0.5f), 0.25f);
        b.lamp(f.toWorld({0.35f, 0, ceiling - 0.05f}), Vec3{0.95f, 0.97f, 1.0f} * (power * 0.5f), 0.25f);
    }
}

} // namespace samplescene
