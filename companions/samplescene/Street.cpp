// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Outdoors.h"
#include "companions/samplescene/Places.h"

namespace samplescene {

std::vector<Zone> buildStreet(const Options& options, bool second, World& world)
{
    Builder b(world, hash(options.seed, 0x57e7U), options.texture == Texture::Plain ? 0.3f : 1.0f);
    b.second = second;
    b.movedShare = static_cast<float>(options.movedFurniture);
    world.outdoors = true;
    world.sky.toSun = normalized({b.random.uniform(-0.6f, 0.6f), b.random.uniform(-0.5f, 0.5f), 0.8f});
    const float length = std::max(40.0f, static_cast<float>(options.count) * 4.5f);
    const float half = 4.0f; // carriageway
    const float pavement = 2.6f;
    const float front = half + pavement;

    Material m;
    m.look = Look::Asphalt;
    m.color = {0.13f, 0.13f, 0.135f};
    m.second = {0.06f, 0.06f, 0.06f};
    const int asphalt = b.material(m);
    m.look = Look::Tiles;
    m.color = {0.4f, 0.38f, 0.35f};
    m.second = {0.2f, 0.19f, 0.18f};
    m.size = 0.4f;
    m.seed = 0;
    const int slabs = b.material(m);
    m.look = Look::Grass;
    m.color = {0.12f, 0.2f, 0.05f};
    m.second = {0.05f, 0.09f, 0.02f};
    m.seed = 0;
    const int grass = b.material(m);
    const int curb = b.paint({0.42f, 0.42f, 0.4f}, 3);
    const int stripe = b.paint({0.7f, 0.7f, 0.68f}, 3);
    const Frame ground;
    b.part = Part::Ground;
    b.box(ground, {0, 0, -0.65f}, {length + 160, 200, 0.8f}, grass);
    b.box(ground, {0, 0, -0.32f}, {length + 60, 2 * half, 0.4f}, asphalt);
    for (const float s : {-1.0f, 1.0f}) {
        b.box(ground, {0, s * (half + pavement / 2), -0.2f}, {length + 60, pavement, 0.4f}, slabs);
        b.box(ground, {0, s * (half + 0.06f), -0.19f}, {length + 60, 0.14f, 0.4f}, curb);
    }
    for (float x = -length / 2 - 20; x < length / 2 + 20; x += 4)
        b.box(ground, {x, 0, -0.118f}, {1.8f, 0.12f, 0.006f}, stripe);

    b.part = Part::Outdoor;
    for (const float s : {-1.0f, 1.0f}) {
        float x = -length / 2 - 12;
        while (x < length / 2 + 12) {
            const float width = b.random.uniform(7.0f, 14.0f);
            const float back = b.random.uniform(0.0f, 1.0f);
            const int floors = 2 + b.random.below(3);
            // An alley now and then keeps the street from being a tube.
            if (!b.random.chance(0.15f)) {
                const Frame f{{x + width / 2, s * (front + back), 0}, s > 0 ? 0.0f : 3.14159265f};
                house(b, f, width - 0.1f, b.random.uniform(8.0f, 11.0f), floors);
            } else {
                tree(b, {{x + width / 2, s * (front + 3), 0}, 0}, b.random.uniform(6.0f, 9.0f));
            }
            x += width;
        }
        for (float p = -length / 2; p < length / 2; p += b.random.uniform(6.0f, 9.0f)) {
            const Frame f{{p, s * (half + 0.5f), 0}, s > 0 ? -1.5708f : 1.5708f};
            switch (b.random.below(4)) {
            case 0:
                tree(b, f, b.random.uniform(4.5f, 7.0f));
                break;
            case 1:
                lampPost(b, f);
                break;
            case 2:
                signPost(b, {f.origin, s > 0 ? 0.0f : 3.14159f});
                break;
            default:
                bench(b, {{p, s * (front - 0.7f), 0}, s > 0 ? 0.0f : 3.14159f});
            }
        }
        for (float p = -length / 2; p < length / 2; p += b.random.uniform(5.0f, 12.0f))
            car(b, {{p, s * (half - 1.1f), -0.12f}, b.random.chance(0.5f) ? 0.0f : 3.14159f});
    }
    const float step = length / 8;
    std::vector<Zone> zones;
    for (int i = 0; i < 8; ++i) {
        const float x = -length / 2 + static_cast<float>(i) * step;
        zones.push_back({"street " + std::to_string(i + 1), x, -front + 0.4f, x + step, front - 0.4f});
    }
    return zones;
}

void buildSurroundings(World& world, std::uint32_t seed, float x0, float y0, float x1, float y1)
{
    Builder b(world, seed, 1);
    Material m;
    m.look = Look::Grass;
    m.color = {0.14f, 0.22f, 0.06f};
    m.second = {0.06f, 0.1f, 0.03f};
    b.part = Part::Ground;
    const float cx = (x0 + x1) / 2;
    const float cy = (y0 + y1) / 2;
    b.box({}, {cx, cy, -0.8f}, {x1 - x0 + 160, y1 - y0 + 160, 0.8f}, b.material(m));
    for (const float s : {-1.0f, 1.0f}) {
        const float y = s > 0 ? y1 + 16 : y0 - 16;
        for (float x = x0 - 25; x < x1 + 25; x += 15) {
            const Frame f{{x, y + s * b.random.uniform(0.0f, 6.0f), -0.4f}, s > 0 ? 0.0f : 3.14159265f};
            house(b, f, b.random.uniform(9.0f, 13.0f), 9, 2 + b.random.below(2));
        }
        for (int i = 0; i < 4; ++i) {
            const float x = mix(x0 - 8, x1 + 8, b.random.uniform());
            tree(b,
                 {{x, s > 0 ? y1 + b.random.uniform(5.0f, 11.0f) : y0 - b.random.uniform(5.0f, 11.0f), -0.4f},
                  0},
                 b.random.uniform(4.0f, 7.0f));
        }
    }
}

} // namespace samplescene
