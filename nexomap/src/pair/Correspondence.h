// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/DescriptorMatcher.h"
#include "nexomap/src/Panorama.h"

#include <vector>

namespace nexomap {

/// One tentative match, in the numbers that pose estimation works on.
struct Correspondence
{
    Eigen::Vector3d bearing_0, bearing_1; ///< unit vectors
    double range_0 = 0.0, range_1 = 0.0;  ///< metres; 0: none
    int distance2 = 0;                    ///< of the descriptors
    int index_0 = -1, index_1 = -1;       ///< of the features; -1: made from none

    bool ranged() const { return range_0 > 0.0 && range_1 > 0.0; }
    Eigen::Vector3d point_0() const { return bearing_0 * range_0; }
    Eigen::Vector3d point_1() const { return bearing_1 * range_1; }
};

/// Whether two features are turned alike against the vertical. Level surfaces turn under the walker: far
/// above and below the horizon every turn counts as alike.
bool turnedAlike(const Features& features_0, int index_0, const Features& features_1, int index_1);

/// The matches that two upright panoramas can have in common: those whose keypoints stand turned against each
/// other, or differ in physical size where both ranges are known, are dropped, and repeats of one place count
/// once (a keypoint with two orientations is one observation).
std::vector<Correspondence> plausibleMatches(const Features& features_0, const Features& features_1,
                                             const std::vector<DescriptorMatch>& matches);

} // namespace nexomap
