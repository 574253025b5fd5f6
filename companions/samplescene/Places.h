// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Options.h"
#include "companions/samplescene/World.h"

#include <string>
#include <vector>

/// The places themselves: shapes of a whole flat, office floor or street.
namespace samplescene {

/// A part of the floor with a name, for choosing where the camera stands.
struct Zone
{
    std::string name;
    float x0 = 0, y0 = 0, x1 = 0, y1 = 0; ///< metres
};

/// Fills an empty world (without finish()).
/// @param second  as it stood when the second half of the panoramas was taken
/// @return the zones in which a camera may stand
std::vector<Zone> buildPlace(const Options& options, bool second, World& world);

/// Houses, trees and lawn around a building, which its windows show.
void buildSurroundings(World& world, std::uint32_t seed, float x0, float y0, float x1, float y1);

/// A street between two rows of houses.
std::vector<Zone> buildStreet(const Options& options, bool second, World& world);

} // namespace samplescene
