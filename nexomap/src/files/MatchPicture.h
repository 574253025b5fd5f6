// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/PairPose.h"
#include "nexomap/src/Panorama.h"

#include <string>

namespace nexomap {

/// A pair given by hand that the pose contradicts.
struct LeftOutPair
{
    Eigen::Vector3d bearing_0, bearing_1; ///< unit vectors
    int number = 0;                       ///< in the order in which they were given, from 1
    double degrees = 0.0, metres = 0.0;   ///< off by; metres 0: unknown
};

/// What a match picture says above the panoramas.
struct MatchCaption
{
    std::string name_0, name_1;
    double spacing_m = 0.0;
    bool scale_known = false;
    double reliability = 0.0;
    const char* origin = "matched"; ///< or "by hand", "by position"
    std::vector<LeftOutPair> left_out;
};

/// Both panoramas in grey, one above the other, with lines between the features they share, coloured by
/// azimuth; a line over the seam leaves at one side and comes back at the other. Pairs that were left out
/// are thick and red, with what they are off by.
/// @return 1024 pixels wide, BGR
cv::Mat3b drawMatch(const Panorama& panorama_0, const Panorama& panorama_1, const PairPose& pose,
                    const MatchCaption& caption);

} // namespace nexomap
