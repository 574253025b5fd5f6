// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/DescriptorMatcher.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// How far apart two features of one panorama may stand, radians, and still be of the same place: another
/// orientation of it, or how another face shows it.
constexpr double kSamePlace = 0.0035; // 0.2 degrees

inline bool samePlace(const Eigen::Vector3f& bearing_0, const Eigen::Vector3f& bearing_1)
{
    return (bearing_0 - bearing_1).squaredNorm() < float(kSamePlace * kSamePlace);
}

/// Mutual nearest neighbours that pass the ratio test (Lowe 2004) against the nearest of another place. Does
/// not depend on the number of threads.
/// @param ratio  nearest over second-nearest distance, at most 1
std::vector<DescriptorMatch> matchPlaces(const Features& features_0, const Features& features_1,
                                         double ratio);

} // namespace nexomap
