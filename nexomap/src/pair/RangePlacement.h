// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Panorama.h"

namespace nexomap {

/// How far the range picture is turned about the vertical against the picture, where the two clearly belong
/// together in another place than on top of each other: where depths jump, pictures have edges. Correlates
/// both over all turns, row by row. 0 where they fit, and where too little is seen to tell.
/// @param preview  1024 x 512, BGR
/// @return radians, 1 degree to pi; positive: the range picture stands to the right of the picture
double rangeTurnedBy(const cv::Mat3b& preview, const RangeMap& range);

} // namespace nexomap
