// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

/// Which rooms a building has, how walls part them, and where doors and windows are.
namespace samplescene {

class Random;

enum class RoomUse
{
    Hall,
    Living,
    Kitchen,
    Bedroom,
    Bath,
    Study,
    Child,
    Dining,
    OfficeRoom,
    Meeting
};

struct Room
{
    RoomUse use = RoomUse::Hall;
    std::string name;
    float x0 = 0, y0 = 0, x1 = 0, y1 = 0; ///< middle lines of its walls, metres
    int corridorSide = 0;                 ///< side of the corridor: 0 south, 2 north; -1: is the corridor
    int twin = -1;                        ///< rooms with the same number >= 0 are the same to the last book
};

struct Opening
{
    enum Type
    {
        Door,    ///< with frame and leaf
        Passage, ///< a gap in the wall up to the lintel
        Window,
        Entrance, ///< the front door, shut
        Pane      ///< glass from the floor to the lintel
    };
    Type type = Door;
    float middle = 0; ///< along the wall from its start, metres
    float width = 0.9f;
    float bottom = 0, top = 2.05f;
    bool shut = false;
    bool hingeLeft = true;
    int into = -1; ///< the room into which the leaf opens
};

/// A straight piece between the same two rooms.
struct Wall
{
    bool alongX = true; ///< runs along x at y = line, otherwise along y at x = line
    float line = 0;     ///< metres
    float from = 0, to = 0;
    int low = -1;                          ///< room on the side of smaller coordinates; -1: outside
    int high = -1;                         ///< room on the other side
    bool endsFrom = false, endsTo = false; ///< an outer corner of the building
    std::vector<Opening> openings;         ///< in order along the wall
    bool outer() const { return low < 0 || high < 0; }
    float thickness() const { return outer() ? 0.34f : 0.14f; }
};

struct FloorPlan
{
    std::vector<Room> rooms;
    std::vector<Wall> walls;
    float height = 2.6f; ///< floor to ceiling
    /// The room's side that lies toward the given direction: wall thickness to take off there.
    float inset(int room, int side) const; ///< side 0 south, 1 east, 2 north, 3 west
};

/// Walls between all rooms that touch, and toward the outside.
void raiseWalls(FloorPlan& plan);

struct Options;
/// A flat (or several corridors of one): rooms on both sides of corridors.
FloorPlan planFlat(const Options& options, Random& random);
/// An office floor: corridors with equal rooms and equal doors.
FloorPlan planOffice(const Options& options, Random& random);

} // namespace samplescene
