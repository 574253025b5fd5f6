// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/PairPose.h"
#include "nexomap/src/Panorama.h"

#include <string>

namespace nexomap {

/// What a match picture says above the panoramas.
struct MatchCaption
{
    std::string name_0, name_1;
    double spacing_m = 0.0;
    bool scale_known = false;
    double reliability = 0.0;
    const char* origin = "matched"; ///< or "by hand", "by position"
};

/// Both panoramas in grey, one above the other, with lines between the features they share, coloured by
/// azimuth; a line over the seam leaves at one side and comes back at the other.
/// @return 1024 pixels wide, BGR
cv::Mat3b drawMatch(const Panorama& panorama_0, const Panorama& panorama_1, const PairPose& pose,
                    const MatchCaption& caption);

} // namespace nexomap
