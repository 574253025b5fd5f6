// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Furnisher.h"
#include "companions/samplescene/Furniture.h"

/// Which furniture belongs into which room.
namespace samplescene {
namespace {

void prints(Furnisher& f, int count)
{
    const Print kinds[] = {Print::Poster,   Print::Landscape, Print::Collage,  Print::Text,
                           Print::Calendar, Print::Map,       Print::Landscape};
    for (int i = 0; i < count; ++i) {
        const float width = f.b.random.uniform(0.3f, 0.95f);
        const float height = width * f.b.random.uniform(0.7f, 1.4f);
        if (const auto place = f.onWall(width + 0.08f, height + 0.08f, f.b.random.uniform(1.45f, 1.7f)))
            framedPrint(f.b, *place, kinds[f.b.random.below(7)], width, height);
    }
}

void plants(Furnisher& f, int count)
{
    for (int i = 0; i < count; ++i)
        if (const auto place = f.alongWall(0.4f, 0.4f, 0.05f, false))
            plant(f.b, place->at({0, 0.22f, 0}), f.b.random.uniform(0.6f, 1.3f));
}

void lampStand(Furnisher& f)
{
    if (const auto place = f.alongWall(0.4f, 0.4f, 0, false)) floorLamp(f.b, place->at({0, 0.22f, 0}));
}

void bookcases(Furnisher& f, int count)
{
    for (int i = 0; i < count; ++i) {
        const float width = f.b.random.uniform(0.7f, 1.2f);
        if (const auto place = f.alongWall(width, 0.32f, 0.5f, true))
            bookcase(f.b, *place, width, f.b.random.uniform(1.7f, 2.1f));
    }
}

void boxes(Furnisher& f, int count)
{
    for (int i = 0; i < count; ++i)
        if (const auto place = f.alongWall(0.5f, 0.45f, 0.1f, false))
            cardboardBoxes(f.b, place->at({0, 0.25f, 0}));
}

void living(Furnisher& f)
{
    Builder& b = f.b;
    if (const auto p = f.alongWall(2.1f, 0.95f, 0.9f, false)) {
        sofa(b, *p, 2.0f);
        coffeeTable(b, p->at({b.random.uniform(-0.2f, 0.2f), 1.45f, 0}));
        b.standing(*p, {0, 1.5f, 0}, {2.2f, 1.5f, 0.012f}, b.print(Print::Rug, 512, 350));
    }
    if (const auto p = f.alongWall(1.7f, 0.45f, 0.6f, false)) televisionBench(b, *p, 1.6f);
    bookcases(f, 2);
    if (const auto p = f.alongWall(0.9f, 0.9f, 0.2f, false)) armchair(b, *p);
    if (const auto p = f.alongWall(1.3f, 0.45f, 0.5f, false)) sideboard(b, *p, 1.2f, 0.85f);
    lampStand(f);
    plants(f, 2);
}

void bedroom(Furnisher& f, bool child)
{
    Builder& b = f.b;
    const float width = child ? 0.95f : 1.6f;
    if (const auto p = f.alongWall(width + 0.1f, 2.1f, 0.3f, false)) {
        bed(b, *p, width);
        for (const float s : {-1.0f, 1.0f})
            if (b.random.chance(0.7f)) sideboard(b, p->at({s * (width / 2 + 0.32f), 0, 0}), 0.45f, 0.5f);
    }
    const float closet = b.random.uniform(1.0f, 1.8f);
    if (const auto p = f.alongWall(closet, 0.6f, 0.6f, true))
        wardrobe(b, *p, closet, b.random.uniform(1.9f, 2.15f));
    if (child) {
        if (const auto p = f.alongWall(1.2f, 0.75f, 0.8f, false)) desk(b, *p, 1.1f, 1);
        bookcases(f, 1);
        boxes(f, 2);
    } else if (const auto p = f.alongWall(1.0f, 0.45f, 0.5f, false)) {
        sideboard(b, *p, 0.9f, 0.8f);
    }
    if (const auto p = f.onFloor(1.6f, 1.1f, 0.1f))
        b.standing(*p, {0, 0, 0}, {1.6f, 1.1f, 0.01f}, b.print(Print::Rug, 400, 280));
    lampStand(f);
    plants(f, 1);
}

void kitchen(Furnisher& f)
{
    Builder& b = f.b;
    const float width = std::min(3.0f, f.space.width * 0.7f);
    if (const auto p = f.alongWall(0.62f, 0.66f, 0.5f, true)) refrigerator(b, *p);
    if (const auto p = f.alongWall(width, 0.64f, 0.6f, true))
        kitchenRow(b, *p, width);
    else if (const auto q = f.alongWall(1.8f, 0.64f, 0.5f, false))
        sideboard(b, *q, 1.8f, 0.9f);
    if (const auto p = f.onFloor(1.2f, 0.8f, 0.75f)) diningTable(b, *p, 1.2f, 0.75f);
    boxes(f, 1);
    plants(f, 1);
}

void dining(Furnisher& f)
{
    Builder& b = f.b;
    if (const auto p = f.onFloor(1.8f, 0.95f, 0.8f)) {
        b.standing(*p, {0, 0, 0}, {2.6f, 1.8f, 0.01f}, b.print(Print::Rug, 512, 360));
        diningTable(b, *p, 1.8f, 0.9f);
    }
    for (int i = 0; i < 2; ++i)
        if (const auto p = f.alongWall(1.4f, 0.45f, 0.5f, false))
            sideboard(b, *p, 1.3f, b.random.uniform(0.8f, 1.4f));
    plants(f, 2);
}

void bath(Furnisher& f)
{
    Builder& b = f.b;
    if (const auto p = f.alongWall(1.74f, 0.77f, 0.4f, false)) bathtub(b, *p);
    if (const auto p = f.alongWall(0.7f, 0.5f, 0.5f, true)) washbasin(b, *p);
    if (const auto p = f.alongWall(0.6f, 0.68f, 0.4f, false)) toilet(b, *p);
    if (const auto p = f.alongWall(0.5f, 0.42f, 0.3f, true)) sideboard(b, *p, 0.45f, 1.5f);
    if (const auto p = f.onFloor(0.9f, 0.6f, 0.1f))
        b.standing(*p, {0, 0, 0}, {0.9f, 0.6f, 0.015f}, b.print(Print::Rug, 256, 170));
}

void study(Furnisher& f, int desks)
{
    Builder& b = f.b;
    for (int i = 0; i < desks; ++i)
        if (const auto p = f.alongWall(1.6f, 0.78f, 0.8f, false)) desk(b, *p, 1.5f, 1 + b.random.below(2));
    bookcases(f, desks > 1 ? 1 : 2);
    if (const auto p = f.alongWall(1.0f, 0.45f, 0.5f, false))
        sideboard(b, *p, 0.9f, b.random.uniform(0.7f, 1.2f));
    if (const auto p = f.onWall(0.95f, 0.3f, 1.75f)) wallShelf(b, *p, 0.9f);
    boxes(f, 1);
    plants(f, 1);
}

void meeting(Furnisher& f)
{
    Builder& b = f.b;
    if (const auto p = f.onFloor(2.4f, 1.1f, 0.8f)) diningTable(b, *p, 2.4f, 1.1f);
    if (const auto p = f.onWall(1.8f, 1.1f, 1.5f)) framedPrint(b, *p, Print::Text, 1.7f, 1.0f);
    if (const auto p = f.alongWall(1.6f, 0.45f, 0.5f, false)) televisionBench(b, *p, 1.5f);
    plants(f, 2);
}

void hall(Furnisher& f)
{
    Builder& b = f.b;
    const bool wide = std::min(f.space.width, f.space.depth) > 1.45f;
    if (const auto p = f.alongWall(1.0f, 0.25f, 0.6f, true)) coatRack(b, p->at({0, -0.02f, 0}), 0.95f);
    if (wide) {
        if (const auto p = f.alongWall(0.9f, 0.34f, 0.75f, false)) bookcase(b, *p, 0.8f, 0.8f);
        plants(f, 1);
    }
    boxes(f, 1);
}

void lighting(Furnisher& f, bool office)
{
    Builder& b = f.b;
    const RoomSpace& s = f.space;
    const int model = office                                                         ? 2
                      : s.room->use == RoomUse::Hall || s.room->use == RoomUse::Bath ? 1
                                                                                     : b.random.below(2);
    // From a dim bedroom to a bright kitchen: the rooms differ by two stops.
    const float level = b.random.uniform(0.6f, 1.6f);
    const int along = std::max(1, static_cast<int>(s.width / (office ? 2.6f : 4.0f) + 0.3f));
    const int across = std::max(1, static_cast<int>(s.depth / (office ? 2.8f : 5.0f) + 0.3f));
    for (int i = 0; i < along * across; ++i) {
        const float x = s.width * (static_cast<float>(i % along) + 0.5f) / static_cast<float>(along);
        const float y = s.depth * (static_cast<float>(i / along) + 0.5f) / static_cast<float>(across);
        ceilingLamp(b, s.frame.at({x, y, 0}), s.height, model, level);
    }
}

} // namespace

void furnish(Builder& b, const RoomSpace& space, bool plain, bool mirror)
{
    Furnisher f(b, space);
    const RoomUse use = space.room->use;
    const bool office = use == RoomUse::OfficeRoom || use == RoomUse::Meeting;
    if (mirror) {
        const float width = b.random.uniform(0.8f, 1.4f);
        if (const auto p = f.onWall(width, 1.8f, 1.2f)) wallMirror(b, *p, width, 1.7f);
    }
    switch (use) {
    case RoomUse::Hall:
        hall(f);
        break;
    case RoomUse::Living:
        living(f);
        break;
    case RoomUse::Kitchen:
        kitchen(f);
        break;
    case RoomUse::Bedroom:
        bedroom(f, false);
        break;
    case RoomUse::Child:
        bedroom(f, true);
        break;
    case RoomUse::Bath:
        bath(f);
        break;
    case RoomUse::Study:
        study(f, 1);
        break;
    case RoomUse::OfficeRoom:
        study(f, 2);
        break;
    case RoomUse::Dining:
        dining(f);
        break;
    case RoomUse::Meeting:
        meeting(f);
        break;
    }
    const float wallLength = 2 * (space.width + space.depth);
    if (use != RoomUse::Bath) {
        prints(f, plain ? b.random.below(2) : static_cast<int>(wallLength * 0.45f));
        if (!plain && b.random.chance(0.5f))
            if (const auto p = f.onWall(0.32f, 0.32f, 2.0f)) clock(b, *p);
    }
    for (const Furnisher::WindowPlace& w : f.windows()) {
        if (use == RoomUse::Bath || w.width < 0.8f) continue;
        radiator(b, w.frame, std::min(1.2f, w.width * 0.8f));
        if (!office && !plain) curtains(b, w.frame, w.width, 2.3f);
    }
    lighting(f, office);
}

} // namespace samplescene
