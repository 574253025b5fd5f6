// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/PlanRaster.h"
#include "nexomap/src/merge/WallEvidence.h"

#include <opencv2/core.hpp>

namespace nexomap {

/// Draws walls as a draughtsman would. What runs along a row or a column becomes a straight face, which goes on
/// behind furniture and curtains and across windows up to the next wall. Between two faces the wall is filled;
/// behind a face of which nobody saw the other side it has the thickness that walls of this building have. A
/// window is a line where its frame is, a door is open. What runs askew stays as it is; what cannot be reached
/// from the stations goes, and so do specks.
/// @return black (0) on white (255)
cv::Mat1b drawWalls(const WallEvidence& evidence, const PlanRaster& raster,
                    const std::vector<PlanStation>& stations);

} // namespace nexomap
