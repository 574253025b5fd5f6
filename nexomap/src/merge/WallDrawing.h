// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/PlanRaster.h"
#include "nexomap/src/merge/WallEvidence.h"

#include <opencv2/core.hpp>

namespace nexomap {

/// Draws walls as a draughtsman would: what runs along a row or a column becomes one straight stroke of 4 cm,
/// which goes on behind furniture and curtains and below windows up to the next wall; what runs askew stays
/// as it is; between two faces of a wall it is filled; what cannot be reached from the stations goes, and so
/// do specks.
/// @return black (0) on white (255)
cv::Mat1b drawWalls(const WallEvidence& evidence, const PlanRaster& raster,
                    const std::vector<PlanStation>& stations);

} // namespace nexomap
