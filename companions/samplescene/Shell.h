// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Builder.h"
#include "companions/samplescene/FloorPlan.h"

/// The building's body: walls with thickness, floors, ceilings, doors, windows, skirting boards.
namespace samplescene {

/// The inside of a room in its own frame: the corridor's door is in the wall y = 0, x to the right of who
/// enters, the opposite wall is y = depth. Sides: 0 the door's, 1 right, 2 opposite, 3 left.
struct RoomSpace
{
    const Room* room = nullptr;
    int number = 0; ///< index in the plan
    Frame frame;
    float width = 0, depth = 0, height = 0; ///< metres between the wall faces
    struct Gap
    {
        float from,
            to; ///< along the side, to the right as seen facing the wall's middle from outside the room
        bool window;
    };
    std::vector<Gap> gaps[4];

    float sideLength(int side) const { return side % 2 ? depth : width; }
    /// x along the side, y into the room; starts at the side's left end as seen from the wall.
    Frame sideFrame(int side) const;
};

RoomSpace spaceOf(const FloorPlan& plan, int room);

/// What the room's faces are covered with.
struct RoomFinish
{
    int wall = 0, floor = 0, ceiling = 0, skirting = 0;
};

/// Chooses finishes by the room's use.
RoomFinish finishOf(Builder& builder, const Room& room);

/// Puts up the whole body. `finishes` has one entry for each room of the plan.
void buildShell(Builder& builder, const FloorPlan& plan, const std::vector<RoomFinish>& finishes,
                bool office);

} // namespace samplescene
