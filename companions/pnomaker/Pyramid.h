// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/PnoFormat.h"

#include <array>
#include <cstdint>

/// Sizes and tile grids of every level of a panorama file.
namespace pnomaker {

struct LevelSize
{
    int width = 0; ///< pixels
    int height = 0;
    int columns = 0; ///< tiles; the grid may reach past the pixels at the left and at the bottom
    int rows = 0;
    int firstTile = 0; ///< index of the level's first tile in the directory
};

struct Pyramid
{
    int topLevel = 0;
    int tileCount = 0;
    std::array<LevelSize, 16> levels{}; ///< 0 (smallest) to topLevel
};

/// The pyramid of a full sphere (longitude -pi to pi, polar angle 0 to pi).
/// @param topLevel  10 to 12
Pyramid fullSpherePyramid(int topLevel);

/// The smallest top level that is at least as wide as a picture of this width, at most 12.
int topLevelForWidth(int width);

} // namespace pnomaker
