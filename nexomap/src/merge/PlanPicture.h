// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudBlocks.h"
#include "nexomap/src/merge/PlanRaster.h"

#include <opencv2/core.hpp>

namespace nexomap {

/// Walls black (0) on white (255), with a scale bar below.
cv::Mat1b wallPlan(const CloudBlocks& cloud, const PlanRaster& raster,
                   const std::vector<PlanStation>& stations);

/// Colour of the highest point of each pixel, white where there is none, with a scale bar below. Holes of a
/// pixel are filled. BGR.
cv::Mat3b topView(const CloudBlocks& cloud, const PlanRaster& raster);

} // namespace nexomap
