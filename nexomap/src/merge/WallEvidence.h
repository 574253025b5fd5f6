// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/HeightColumns.h"

#include <opencv2/core.hpp>

namespace nexomap {

/// What stands where, by the heights that are filled. Of the size of the raster; 255: yes, 0: no.
struct WallEvidence
{
    cv::Mat1b wall;  ///< a surface that goes up to where the walls end
    cv::Mat1b solid; ///< and is no sill: it is filled at breast height, too
    cv::Mat1b floor; ///< the floor is seen
    cv::Mat1b seen;  ///< anything is seen
};

/// A wall is filled up to the top of the walls about it, which tells it from furniture and people, and below
/// that at breast height or, under windows, at the height of the knees. Where both are hidden by furniture,
/// so is the floor; where the floor is seen below a lintel, there is a door.
WallEvidence wallEvidence(const HeightColumns& columns, const PlanRaster& raster);

} // namespace nexomap
