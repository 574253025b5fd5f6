// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/PanoramaBuilder.h"

#include <optional>

namespace nexomap {

/// The azimuth, in [0, pi/2), along which the level straight edges of a building with right angles run: the
/// strongest pair of horizontal vanishing directions, voted for by every edge pixel (Coughlan and Yuille
/// 1999).
/// @param gray  equirectangular, rows covering extent.min to extent.max, of an upright camera
/// @return nullopt where no direction stands out
std::optional<double> buildingDirection(const cv::Mat1b& gray, const PolarExtent& extent);

} // namespace nexomap
