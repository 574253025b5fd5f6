// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// What a surface belongs to, for those who compare a map with the place itself. The numbers stand in files:
/// never renumber them.
namespace samplescene {

enum class Part : std::uint8_t
{
    Furniture = 0, ///< all that stands or hangs in rooms, skirting boards and pictures on walls included
    Floor = 1,
    Ceiling = 2,
    Wall = 3,   ///< from the floor to the ceiling, and below windows
    Lintel = 4, ///< wall above a door, a passage or a window
    Door = 5,   ///< frame and leaf
    Window = 6, ///< frame, sill, posts of a pane
    Lamp = 7,
    Glass = 8,
    Mirror = 9,
    Ground = 10,
    House = 11,
    Plant = 12,  ///< trees
    Outdoor = 13 ///< cars, posts, benches
};

/// Whether it is part of the building or stands in it.
constexpr bool indoors(Part part)
{
    return part < Part::Ground;
}

} // namespace samplescene
