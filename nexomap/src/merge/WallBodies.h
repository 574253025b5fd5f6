// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/WallEvidence.h"
#include "nexomap/src/merge/WallStrokes.h"

namespace nexomap {

/// A piece of a wall or a window in one, as it is drawn.
struct WallBody
{
    cv::Rect bar; ///< pixels
    bool window = false;
};

/// What the walls of a building have in common, from those of which enough is seen.
struct WallHabits
{
    double thickness_m = 0.12;   ///< between the faces of walls seen from both sides, their median
    double window_depth_m = 0.0; ///< of the frames behind the faces, their median; 0: no window is seen
    /// Of the walls about the building, of which nobody sees the other side: as thick as the others, and not
    /// thinner than to hold their windows.
    double outer_m() const;
};

/// Faces along rows, with what is seen about them. For faces along columns everything is transposed.
struct WallFaces
{
    std::vector<WallStroke> strokes;
    cv::Mat1b solid, floor, seen; ///< as in the evidence
};

/// Pieces of one line that touch become one, straight.
std::vector<WallStroke> joinedStrokes(const std::vector<WallStroke>& strokes, const PlanRaster& raster);

/// Leaves out the sides of doors and windows and what is seen through these: short strokes that go on behind
/// a face, across it or along it.
std::vector<WallStroke> withoutReveals(const std::vector<WallStroke>& strokes,
                                       const std::vector<WallStroke>& across, const PlanRaster& raster);

WallHabits wallHabits(const WallFaces& rows, const WallFaces& columns, const PlanRaster& raster);

/// Between two faces that look away from each other the wall is filled; behind a face whose other side nobody
/// saw it has the common thickness. Where nothing stands at breast height but things are seen behind the
/// face, there is a window: a line where its frame is.
std::vector<WallBody> wallBodies(const WallFaces& faces, const WallHabits& habits, const PlanRaster& raster);

} // namespace nexomap
