// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Shell.h"

#include <algorithm>

namespace samplescene {
namespace {

constexpr float kHalfPi = 1.57079633f;

/// Building along one wall, in its coordinates: a along it, d across it toward the room on the high side.
class WallBuilder
{
public:
    WallBuilder(Builder& builder, const Wall& wall)
        : m_builder(builder)
        , m_wall(wall)
    {}

    Vec3 point(float a, float d, float z) const
    {
        return m_wall.alongX ? Vec3{m_wall.from + a, m_wall.line + d, z}
                             : Vec3{m_wall.line + d, m_wall.from + a, z};
    }
    std::size_t box(float a0, float a1, float d0, float d1, float z0, float z1, int material)
    {
        const Vec3 center = point((a0 + a1) / 2, (d0 + d1) / 2, (z0 + z1) / 2);
        const Vec3 size = m_wall.alongX ? Vec3{a1 - a0, d1 - d0, z1 - z0} : Vec3{d1 - d0, a1 - a0, z1 - z0};
        return m_builder.box({}, center, size, material);
    }

private:
    Builder& m_builder;
    const Wall& m_wall;
};

struct Trim
{
    int frame, leaf, handle, glass, sill;
};

/// Both halves of a piece of wall, each in its own room's colour.
void masonry(Builder& b, const FloorPlan& plan, const Wall& w, const std::vector<RoomFinish>& finishes,
             int facade, float a0, float a1, float z0, float z1)
{
    if (a1 - a0 < 1e-3f || z1 - z0 < 1e-3f) return;
    const BuildingPart part(b, z0 > 0 ? Part::Lintel : Part::Wall);
    WallBuilder at(b, w);
    const float t = w.thickness() / 2;
    for (const bool high : {false, true}) {
        const int room = high ? w.high : w.low;
        const int material = room < 0 ? facade : finishes[static_cast<std::size_t>(room)].wall;
        const std::size_t s = at.box(a0, a1, high ? 0 : -t, high ? t : 0, z0, z1, material);
        b.joinTexture(s, room < 0 ? Vec3{} : spaceOf(plan, room).frame.origin, 0);
        if (room >= 0 && z0 == 0 && plan.rooms[static_cast<std::size_t>(room)].use != RoomUse::Bath) {
            const BuildingPart skirting(b, Part::Furniture);
            const float d = high ? t : -t - 0.015f;
            at.box(a0, a1, d, d + 0.015f, 0, 0.08f, finishes[static_cast<std::size_t>(room)].skirting);
        }
    }
}

void doorFrame(WallBuilder& at, const Wall& w, const Opening& o, int material)
{
    const float t = w.thickness() / 2 + 0.015f;
    const float a0 = o.middle - o.width / 2;
    const float a1 = o.middle + o.width / 2;
    at.box(a0 - 0.06f, a0 + 0.015f, -t, t, 0, o.top + 0.06f, material);
    at.box(a1 - 0.015f, a1 + 0.06f, -t, t, 0, o.top + 0.06f, material);
    at.box(a0 - 0.06f, a1 + 0.06f, -t, t, o.top - 0.015f, o.top + 0.06f, material);
}

void doorLeaf(Builder& b, const Wall& w, const Opening& o, const Trim& trim)
{
    WallBuilder at(b, w);
    const float side = o.into == w.high ? 1.0f : -1.0f;
    const float width = o.width - 0.04f;
    const float hinge = o.hingeLeft == (o.into == w.high) ? o.middle - width / 2 : o.middle + width / 2;
    const float along = hinge < o.middle ? 1.0f : -1.0f;
    const float angle = o.shut ? 0.0f : b.random.uniform(1.45f, 1.85f);
    const Vec3 pin = at.point(hinge, side * (w.thickness() / 2 - 0.02f), 0);
    // Direction of the leaf from the hinge, in the world.
    const float a = along * std::cos(angle);
    const float d = side * std::sin(angle);
    const float yaw = w.alongX ? std::atan2(d, a) : std::atan2(a, d);
    const Frame frame{pin, yaw};
    b.box(frame, {width / 2, 0, (o.top - 0.02f) / 2 + 0.005f}, {width, 0.04f, o.top - 0.03f}, trim.leaf);
    for (const float face : {-1.0f, 1.0f}) { // raised panels, handle
        b.box(frame, {width / 2, face * 0.022f, 0.55f}, {width - 0.28f, 0.012f, 0.65f}, trim.leaf);
        b.box(frame, {width / 2, face * 0.022f, 1.5f}, {width - 0.28f, 0.012f, 0.75f}, trim.leaf);
        b.box(frame, {width - 0.07f, face * 0.05f, 1.03f}, {0.025f, 0.06f, 0.025f}, trim.handle);
        b.box(frame, {width - 0.12f, face * 0.075f, 1.03f}, {0.13f, 0.02f, 0.022f}, trim.handle);
        b.box(frame, {width - 0.07f, face * 0.023f, 1.0f}, {0.035f, 0.008f, 0.2f}, trim.handle);
    }
}

void windowFrame(Builder& b, const Wall& w, const Opening& o, const Trim& trim)
{
    WallBuilder at(b, w);
    const float t = w.thickness() / 2;
    const float a0 = o.middle - o.width / 2;
    const float a1 = o.middle + o.width / 2;
    const auto bar = [&](float b0, float b1, float z0, float z1) {
        at.box(b0, b1, -0.035f, 0.035f, z0, z1, trim.frame);
    };
    bar(a0, a0 + 0.06f, o.bottom, o.top);
    bar(a1 - 0.06f, a1, o.bottom, o.top);
    bar(a0, a1, o.bottom, o.bottom + 0.06f);
    bar(a0, a1, o.top - 0.06f, o.top);
    if (o.width > 1) bar(o.middle - 0.035f, o.middle + 0.035f, o.bottom, o.top);
    const std::size_t pane = at.box(a0, a1, -0.004f, 0.004f, o.bottom, o.top, trim.glass);
    b.world().shapes[pane].passage = Passage::Glass;
    const float inward = w.low < 0 ? 1.0f : -1.0f;
    at.box(a0 - 0.06f, a1 + 0.06f, inward > 0 ? 0.035f : -t - 0.1f, inward > 0 ? t + 0.1f : -0.035f,
           o.bottom - 0.03f, o.bottom, trim.sill);
    Portal portal;
    portal.center = at.point(o.middle, inward * 0.05f, (o.bottom + o.top) / 2);
    portal.sideways = at.point(o.middle + o.width / 2, 0, 0) - at.point(o.middle, 0, 0);
    portal.upward = {0, 0, (o.top - o.bottom) / 2};
    portal.inward = at.point(0, inward, 0) - at.point(0, 0, 0);
    b.world().portals.push_back(portal);
}

void paneWall(Builder& b, const Wall& w, const Opening& o, const Trim& trim)
{
    WallBuilder at(b, w);
    const float a0 = o.middle - o.width / 2;
    const float a1 = o.middle + o.width / 2;
    const int posts = std::max(1, static_cast<int>(o.width / 1.2f));
    for (int i = 0; i <= posts; ++i) {
        const float a = mix(a0 + 0.025f, a1 - 0.025f, static_cast<float>(i) / static_cast<float>(posts));
        at.box(a - 0.025f, a + 0.025f, -0.03f, 0.03f, 0, o.top, trim.handle);
    }
    at.box(a0, a1, -0.03f, 0.03f, 0, 0.06f, trim.handle);
    at.box(a0, a1, -0.03f, 0.03f, o.top - 0.05f, o.top, trim.handle);
    const std::size_t pane = at.box(a0, a1, -0.005f, 0.005f, 0, o.top, trim.glass);
    b.world().shapes[pane].passage = Passage::Glass;
}

} // namespace

Frame RoomSpace::sideFrame(int side) const
{
    switch (side) {
    case 0:
        return frame;
    case 1:
        return frame.at({width, 0, 0}, kHalfPi);
    case 2:
        return frame.at({width, depth, 0}, 2 * kHalfPi);
    default:
        return frame.at({0, depth, 0}, -kHalfPi);
    }
}

RoomSpace spaceOf(const FloorPlan& plan, int number)
{
    const Room& r = plan.rooms[static_cast<std::size_t>(number)];
    RoomSpace space;
    space.room = &r;
    space.number = number;
    space.height = plan.height;
    const float x0 = r.x0 + plan.inset(number, 3);
    const float x1 = r.x1 - plan.inset(number, 1);
    const float y0 = r.y0 + plan.inset(number, 0);
    const float y1 = r.y1 - plan.inset(number, 2);
    space.width = x1 - x0;
    space.depth = y1 - y0;
    const bool turned = r.corridorSide == 2;
    space.frame = turned ? Frame{{x1, y1, 0}, 2 * kHalfPi} : Frame{{x0, y0, 0}, 0};
    for (const Wall& w : plan.walls) {
        if (w.low != number && w.high != number) continue;
        const int compass = w.alongX ? (w.high == number ? 0 : 2) : (w.low == number ? 1 : 3);
        const int side = turned ? (compass + 2) % 4 : compass;
        for (const Opening& o : w.openings) {
            const float a = w.from + o.middle - (w.alongX ? x0 : y0);
            const float length = w.alongX ? space.width : space.depth;
            // South and east sides run with the coordinates, the others against them.
            const float along = compass < 2 ? a : length - a;
            space.gaps[side].push_back({along - o.width / 2, along + o.width / 2, o.type == Opening::Window});
        }
    }
    return space;
}

RoomFinish finishOf(Builder& b, const Room& room)
{
    Random& r = b.random;
    RoomFinish f;
    const Vec3 tint{r.uniform(0.55f, 0.8f), r.uniform(0.55f, 0.8f), r.uniform(0.5f, 0.75f)};
    f.wall = b.paint(room.use == RoomUse::Hall ? Vec3{0.72f, 0.7f, 0.66f} : tint);
    f.ceiling = b.paint({0.8f, 0.8f, 0.78f}, 0.6f);
    f.skirting = b.paint({0.75f, 0.74f, 0.7f}, 0.3f);
    Material floor;
    switch (room.use) {
    case RoomUse::Bath:
    case RoomUse::Kitchen: {
        floor.look = Look::Tiles;
        const float grey = r.uniform(0.25f, 0.6f);
        floor.color = {grey, grey * r.uniform(0.9f, 1.0f), grey * r.uniform(0.8f, 1.0f)};
        floor.second = {0.3f, 0.29f, 0.27f};
        floor.size = r.chance(0.5f) ? 0.33f : 0.45f;
        floor.gloss = 0.03f;
        if (room.use == RoomUse::Bath) {
            Material wall;
            wall.look = Look::Tiles;
            wall.color = {r.uniform(0.6f, 0.8f), r.uniform(0.65f, 0.8f), r.uniform(0.65f, 0.8f)};
            wall.second = {0.5f, 0.5f, 0.5f};
            wall.size = 0.2f;
            wall.contrast = 0.6f;
            wall.gloss = 0.03f;
            f.wall = b.material(wall);
        }
        break;
    }
    case RoomUse::Bedroom:
    case RoomUse::Child:
    case RoomUse::OfficeRoom:
    case RoomUse::Meeting:
        floor.look = Look::Carpet;
        floor.color = {r.uniform(0.1f, 0.4f), r.uniform(0.1f, 0.35f), r.uniform(0.1f, 0.35f)};
        floor.second = floor.color * 0.5f;
        break;
    default:
        floor.look = Look::Planks;
        floor.color = {r.uniform(0.3f, 0.5f), r.uniform(0.2f, 0.3f), r.uniform(0.1f, 0.16f)};
        floor.second = floor.color * 0.55f;
        floor.size = r.uniform(0.09f, 0.16f);
        floor.gloss = 0.025f;
    }
    f.floor = b.material(floor);
    return f;
}

void buildShell(Builder& b, const FloorPlan& plan, const std::vector<RoomFinish>& finishes, bool office)
{
    Trim trim;
    trim.frame = b.paint({0.75f, 0.74f, 0.7f}, 0.3f);
    trim.leaf = office || b.random.chance(0.5f) ? b.wood({0.42f, 0.27f, 0.14f})
                                                : b.paint({0.72f, 0.71f, 0.67f}, 0.4f);
    trim.handle = b.metal({0.45f, 0.45f, 0.45f});
    Material glass;
    glass.look = Look::Glass;
    glass.color = {0.92f, 0.95f, 0.94f};
    glass.gloss = 0.06f;
    trim.glass = b.material(glass);
    trim.sill = b.paint({0.7f, 0.69f, 0.66f}, 0.8f);
    Material brick;
    brick.look = Look::Brick;
    brick.color = {0.42f, 0.2f, 0.13f};
    brick.second = {0.5f, 0.48f, 0.44f};
    brick.size = 0.24f;
    const int facade = b.material(brick);

    for (std::size_t i = 0; i < plan.rooms.size(); ++i) {
        const Room& r = plan.rooms[i];
        const RoomSpace space = spaceOf(plan, static_cast<int>(i));
        const auto slab = [&](float z0, float z1, int material) {
            const std::size_t s = b.box({}, {(r.x0 + r.x1) / 2, (r.y0 + r.y1) / 2, (z0 + z1) / 2},
                                        {r.x1 - r.x0, r.y1 - r.y0, z1 - z0}, material);
            b.joinTexture(s, space.frame.origin, 0);
        };
        const BuildingPart part(b, Part::Floor);
        slab(-0.25f, 0, finishes[i].floor);
        b.part = Part::Ceiling;
        slab(plan.height, plan.height + 0.25f, finishes[i].ceiling);
    }
    for (const Wall& w : plan.walls) {
        WallBuilder at(b, w);
        const float length = w.to - w.from;
        const float reach = w.thickness() / 2;
        float a = w.endsFrom && w.outer() ? -reach : 0.0f;
        for (const Opening& o : w.openings) {
            const float a0 = o.middle - o.width / 2;
            const float a1 = o.middle + o.width / 2;
            masonry(b, plan, w, finishes, facade, a, a0, 0, plan.height);
            masonry(b, plan, w, finishes, facade, a0, a1, 0, o.bottom);
            masonry(b, plan, w, finishes, facade, a0, a1, o.top, plan.height);
            if (o.type == Opening::Door || o.type == Opening::Entrance) {
                const BuildingPart part(b, Part::Door);
                doorFrame(at, w, o, trim.frame);
                doorLeaf(b, w, o, trim);
            } else if (o.type == Opening::Window) {
                const BuildingPart part(b, Part::Window);
                windowFrame(b, w, o, trim);
            } else if (o.type == Opening::Pane) {
                const BuildingPart part(b, Part::Window);
                paneWall(b, w, o, trim);
            }
            a = a1;
        }
        masonry(b, plan, w, finishes, facade, a, length + (w.endsTo && w.outer() ? reach : 0), 0,
                plan.height);
    }
}

} // namespace samplescene
