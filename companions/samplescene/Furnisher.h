// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Builder.h"
#include "companions/samplescene/Shell.h"

#include <optional>
#include <vector>

/// Keeps track of what floor and wall of a room are taken, and finds places.
namespace samplescene {

class Furnisher
{
public:
    Furnisher(Builder& builder, const RoomSpace& space);

    Builder& b;
    const RoomSpace& space;

    /// A free place with its back to a wall: x along the wall from the piece's middle, y into the room, z =
    /// 0.
    /// @param front  metres kept free before it
    /// @param tall   does not stand before a window
    std::optional<Frame> alongWall(float width, float depth, float front, bool tall);
    /// A free place in the open floor; the frame's origin is the piece's middle.
    std::optional<Frame> onFloor(float width, float depth, float margin);
    /// A free place on a wall for a flat thing, its middle at z: x along the wall, y into the room.
    std::optional<Frame> onWall(float width, float height, float z);

    /// Frames with backs at distance `gap` before the given side's window, for curtains and radiators.
    struct WindowPlace
    {
        Frame frame; ///< origin: floor below the window's middle, y into the room
        float width;
    };
    std::vector<WindowPlace> windows() const;

private:
    struct Area
    {
        float x0, y0, x1, y1; ///< room coordinates
    };
    Area onSide(int side, float from, float to, float depth) const;
    bool taken(const Area& area) const;
    std::vector<Area> m_floor;
    struct Patch
    {
        int side;
        float from, to, low, high;
    };
    std::vector<Patch> m_wall;
};

/// Fills a room according to its use.
/// @param plain    hardly anything on the walls
/// @param mirror   a large mirror hangs on a wall
void furnish(Builder& builder, const RoomSpace& space, bool plain, bool mirror);

} // namespace samplescene
