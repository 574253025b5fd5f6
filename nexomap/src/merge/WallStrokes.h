// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/PlanRaster.h"

#include <opencv2/core.hpp>

#include <vector>

namespace nexomap {

/// A straight piece of wall along a row of the picture; along a column in a picture that has been transposed.
struct WallStroke
{
    int from = 0, to = 0; ///< columns, `to` excluded
    double row = 0.0;     ///< of its middle line
    int facing = 0;       ///< -1: seen from smaller rows, 1: from larger ones, 0: from both or neither
    bool flat = true;     ///< keeps to its row as masonry does and curtains do not
    int length() const { return to - from; }
};

struct WallStrokes
{
    std::vector<WallStroke> strokes;
    cv::Mat1b askew; ///< 255: wall that keeps to no row and no column
};

/// Straight pieces of at least 0.25 m. Short ones just before or behind a longer wall that faces the same way
/// are left out: curtains, frames and sills of windows.
/// @param wall, seen  255 where there is wall, where there is anything
WallStrokes findStrokes(const cv::Mat1b& wall, const cv::Mat1b& seen, const PlanRaster& raster);

/// Length in whole pixels, at least 1.
int pixelsOf(double metres, const PlanRaster& raster);

} // namespace nexomap
