// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/FloorPlan.h"
#include "companions/samplescene/Options.h"
#include "companions/samplescene/Random.h"

#include <algorithm>

namespace samplescene {
namespace {

struct Row
{
    std::vector<RoomUse> uses;
    std::vector<float> widths;
    std::vector<int> twins;
};

float usualWidth(RoomUse use, Random& random)
{
    switch (use) {
    case RoomUse::Living:
        return random.uniform(4.8f, 5.8f);
    case RoomUse::Dining:
        return random.uniform(3.6f, 4.2f);
    case RoomUse::Kitchen:
        return random.uniform(3.0f, 3.6f);
    case RoomUse::Bath:
        return random.uniform(2.3f, 2.7f);
    case RoomUse::Bedroom:
        return random.uniform(3.6f, 4.2f);
    default:
        return random.uniform(3.1f, 3.7f);
    }
}

const char* nameOf(RoomUse use)
{
    switch (use) {
    case RoomUse::Hall:
        return "hall";
    case RoomUse::Living:
        return "living room";
    case RoomUse::Kitchen:
        return "kitchen";
    case RoomUse::Bedroom:
        return "bedroom";
    case RoomUse::Bath:
        return "bathroom";
    case RoomUse::Study:
        return "study";
    case RoomUse::Child:
        return "child's room";
    case RoomUse::Dining:
        return "dining room";
    case RoomUse::OfficeRoom:
        return "office";
    case RoomUse::Meeting:
        return "meeting room";
    }
    return "room";
}

/// Corridors one above the other, rooms on both sides of each, all joined by a cross corridor at the left.
struct Layout
{
    float corridor = 1.5f; ///< width, metres
    float above = 4.3f, below = 3.9f;
    int rooms = 5;
    std::vector<RoomUse> cycle;
    int identical = 0;
    RoomUse identicalUse = RoomUse::Study;
    float identicalWidth = 3.4f;
    float equalWidth = 0; ///< 0: each use its own
};

void place(FloorPlan& plan, const Row& row, float length, float y0, float y1, int corridorSide)
{
    float sum = 0;
    float fixed = 0;
    for (std::size_t i = 0; i < row.widths.size(); ++i)
        (row.twins[i] >= 0 ? fixed : sum) += row.widths[i];
    const float stretch = sum > 0 ? (length - fixed) / sum : 1;
    float x = 0;
    for (std::size_t i = 0; i < row.uses.size(); ++i) {
        Room room;
        room.use = row.uses[i];
        room.name = nameOf(room.use);
        room.twin = row.twins[i];
        room.x0 = x;
        x += row.widths[i] * (room.twin >= 0 ? 1 : stretch);
        if (i + 1 == row.uses.size() && room.twin < 0) x = length;
        room.x1 = x;
        room.y0 = y0;
        room.y1 = y1;
        room.corridorSide = corridorSide;
        plan.rooms.push_back(room);
    }
}

FloorPlan layOut(const Layout& layout, Random& random)
{
    FloorPlan plan;
    const int wings = std::max(1, (layout.rooms + 7) / 12);
    const int perWing = (layout.rooms + wings - 1) / wings;
    std::vector<Row> rows(static_cast<std::size_t>(2 * wings));
    int made = 0;
    int twins = layout.identical;
    for (int wing = 0; wing < wings; ++wing) {
        for (int i = 0; i < perWing && made < layout.rooms; ++i, ++made) {
            Row& row = rows[static_cast<std::size_t>(2 * wing + i % 2)];
            // Identical rooms stand in the same row, where they have the same depth, apart from its ends.
            const bool twin = twins > 0 && i % 2 == 0 && made + 1 < layout.rooms;
            const RoomUse use = twin ? layout.identicalUse
                                     : layout.cycle[static_cast<std::size_t>(made) % layout.cycle.size()];
            row.uses.push_back(use);
            row.twins.push_back(twin ? 0 : -1);
            const float usual = layout.equalWidth > 0 ? layout.equalWidth : usualWidth(use, random);
            row.widths.push_back(twin ? layout.identicalWidth : usual);
            if (twin) --twins;
        }
    }
    // A row of nothing but fixed widths is filled up by one room that can be stretched.
    float length = 0;
    for (Row& row : rows) {
        if (std::all_of(row.twins.begin(), row.twins.end(), [](int t) { return t >= 0; })) {
            row.uses.push_back(RoomUse::Bath);
            row.twins.push_back(-1);
            row.widths.push_back(2.4f);
        }
        float sum = 0;
        for (const float w : row.widths)
            sum += w;
        length = std::max(length, sum);
    }
    const float pitch = layout.above + layout.below + layout.corridor;
    for (int wing = 0; wing < wings; ++wing) {
        const float y = static_cast<float>(wing) * pitch;
        Room hall;
        hall.name = nameOf(RoomUse::Hall);
        hall.x0 = 0;
        hall.x1 = length;
        hall.y0 = y;
        hall.y1 = y + layout.corridor;
        hall.corridorSide = -1;
        plan.rooms.push_back(hall);
        const Row& above = rows[static_cast<std::size_t>(2 * wing)];
        const Row& below = rows[static_cast<std::size_t>(2 * wing + 1)];
        place(plan, above, length, y + layout.corridor, y + layout.corridor + layout.above, 0);
        place(plan, below, length, y - layout.below, y, 2);
    }
    if (wings > 1) {
        Room cross;
        cross.name = "cross corridor";
        cross.x0 = -layout.corridor - 0.3f;
        cross.x1 = 0;
        cross.y0 = -layout.below;
        cross.y1 = static_cast<float>(wings - 1) * pitch + layout.corridor + layout.above;
        cross.corridorSide = -1;
        plan.rooms.push_back(cross);
    }
    raiseWalls(plan);
    return plan;
}

void openWalls(FloorPlan& plan, const Options& options, Random& random)
{
    std::vector<bool> hasDoor(plan.rooms.size());
    bool entrance = false;
    for (Wall& w : plan.walls) {
        const float length = w.to - w.from;
        const auto add = [&](Opening o) { w.openings.push_back(o); };
        const auto roomOf = [&](int i) -> const Room& { return plan.rooms[static_cast<std::size_t>(i)]; };
        if (w.outer()) {
            const int inside = w.low < 0 ? w.high : w.low;
            const Room& room = roomOf(inside);
            if (room.use == RoomUse::Hall) {
                if (!entrance && length < 4 && !w.alongX) {
                    entrance = true;
                    add({Opening::Entrance, length / 2, 0.95f, 0, 2.1f, true, true, inside});
                }
                continue;
            }
            if (!w.alongX) continue; // the gable walls are closed
            const bool bath = room.use == RoomUse::Bath;
            const int windows = bath ? 1 : std::max(1, static_cast<int>(length / 2.6f));
            for (int i = 0; i < windows; ++i) {
                Opening o;
                o.type = Opening::Window;
                o.middle = length * (static_cast<float>(i) + 0.5f) / static_cast<float>(windows);
                o.width = bath ? 0.7f : std::min(1.6f, length / static_cast<float>(windows) - 0.7f);
                o.bottom = bath ? 1.3f : 0.9f;
                o.top = 2.25f;
                add(o);
            }
            continue;
        }
        const bool lowHall = roomOf(w.low).use == RoomUse::Hall;
        const bool highHall = roomOf(w.high).use == RoomUse::Hall;
        if (lowHall && highHall) {
            add({Opening::Passage, length / 2, length - 0.4f, 0, 2.3f, false, true, -1});
        } else if (lowHall || highHall) {
            const int room = lowHall ? w.high : w.low;
            if (hasDoor[static_cast<std::size_t>(room)] || !w.alongX) continue;
            hasDoor[static_cast<std::size_t>(room)] = true;
            Opening o;
            o.into = room;
            o.width = 0.9f;
            const bool twin = roomOf(room).twin >= 0;
            const float side = twin || options.kind == Kind::Office ? 0.3f : random.uniform();
            o.hingeLeft = side < 0.5f;
            // A twin on the other side of the corridor is turned by 180 degrees, and so is its door.
            const bool fromLeft = (side < 0.5f) == (roomOf(room).corridorSide == 0);
            o.middle = fromLeft ? 0.75f : length - 0.75f;
            if (!twin && side > 0.3f && side < 0.7f) o.middle = length / 2;
            o.shut = random.chance(static_cast<float>(options.closedDoors));
            const bool pane = random.chance(static_cast<float>(options.glass)) && length > 2.6f;
            if (pane) {
                Opening glass;
                glass.type = Opening::Pane;
                glass.width = length - 2.0f;
                o.middle = fromLeft ? 0.75f : length - 0.75f;
                glass.middle = fromLeft ? 1.55f + glass.width / 2 : length - 1.55f - glass.width / 2;
                glass.top = 2.3f;
                add(glass);
            }
            add(o);
        } else {
            const RoomUse a = roomOf(w.low).use;
            const RoomUse b = roomOf(w.high).use;
            const bool open = (a == RoomUse::Living && (b == RoomUse::Kitchen || b == RoomUse::Dining)) ||
                              (b == RoomUse::Living && (a == RoomUse::Kitchen || a == RoomUse::Dining));
            const bool twin = roomOf(w.low).twin >= 0 || roomOf(w.high).twin >= 0;
            if (open && !twin && length > 2.6f)
                add({Opening::Passage, length * random.uniform(0.4f, 0.6f), 1.6f, 0, 2.15f, false, true, -1});
        }
        std::sort(w.openings.begin(), w.openings.end(),
                  [](const Opening& l, const Opening& r) { return l.middle < r.middle; });
    }
}

int roomsWanted(const Options& options)
{
    return options.rooms > 0 ? options.rooms : std::max(3, (options.count * 3 + 4) / 5);
}

} // namespace

FloorPlan planFlat(const Options& options, Random& random)
{
    Layout layout;
    layout.corridor = random.uniform(1.5f, 1.8f);
    layout.above = random.uniform(4.2f, 4.8f);
    layout.below = random.uniform(3.6f, 4.2f);
    layout.rooms = roomsWanted(options);
    // Dealt in turn to the two sides: living room and kitchen come to lie beside each other.
    layout.cycle = {RoomUse::Living, RoomUse::Bedroom, RoomUse::Kitchen, RoomUse::Bath,
                    RoomUse::Study,  RoomUse::Child,   RoomUse::Dining,  RoomUse::Bedroom};
    layout.identical = options.identicalRooms;
    layout.identicalUse = RoomUse::Study;
    FloorPlan plan = layOut(layout, random);
    plan.height = random.uniform(2.5f, 2.8f);
    openWalls(plan, options, random);
    return plan;
}

FloorPlan planOffice(const Options& options, Random& random)
{
    Layout layout;
    layout.corridor = random.uniform(1.8f, 2.2f);
    layout.above = layout.below = random.uniform(4.6f, 5.2f);
    layout.rooms = roomsWanted(options);
    layout.cycle = {RoomUse::OfficeRoom, RoomUse::OfficeRoom, RoomUse::OfficeRoom,
                    RoomUse::OfficeRoom, RoomUse::Meeting,    RoomUse::OfficeRoom};
    layout.identical = options.identicalRooms;
    layout.identicalUse = RoomUse::OfficeRoom;
    layout.equalWidth = layout.identicalWidth = random.uniform(3.6f, 4.2f);
    FloorPlan plan = layOut(layout, random);
    plan.height = 2.75f;
    openWalls(plan, options, random);
    return plan;
}

} // namespace samplescene
