// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which pictures a visitor needs next, and which may go.

#pragma once

#include "companions/lumiscope/pictures/PanoramaLoader.h"
#include "companions/lumiscope/tour/WalkTour.h"

namespace lumiscope {

/// Bounds of what is kept ready around the visitor. A sharp picture takes 134 MB on the graphics card, a
/// coarse one 34 MB.
constexpr int kSharpNeighbours = 3;
constexpr int kCoarseNeighbours = 6;

/// Where the visitor stands and where a walk is waiting to go.
struct LoadState
{
    int station = 0;
    int destination = -1; ///< -1 for none
    bool sharp = true;    ///< whether the graphics card takes sharp pictures
};

/// Pictures in the order in which they are wanted, whether they are there or not: a coarse one of the place
/// to be seen first, its sharp one, then those of its nearest neighbours. Stations whose file is not there
/// yet are left out.
std::vector<PictureOrder> loadPlan(const WalkTour& tour, const LoadState& state);

} // namespace lumiscope
