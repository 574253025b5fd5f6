// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/MovedWalls.h"
#include "nexomap/src/pair/OneSidedSight.h"
#include "nexomap/src/pair/RangeAgreement.h"
#include "nexomap/src/pair/SilentPlaces.h"

#include <optional>

namespace nexomap {

/// What speaks for and against a relative pose.
struct Evidence
{
    int inliers = 0; ///< matches that agree with the pose, each place counted once
    int cells = 0;   ///< cells of about 30 degrees that they occupy in the poorer panorama
    int outside = 0; ///< inliers farther than 25 degrees from where most of them stand, poorer panorama
    double inlier_share = 0.0;    ///< of the tentative matches
    double second_share = 0.0;    ///< support of the best other pose, over this one's
    double lean = 0.0;            ///< radians between the two verticals
    double rms = 0.0;             ///< whitened residual (metric), or radians over 0.1 degrees (bearings)
    int guided = 0;               ///< matches found anew where the pose says they lie
    double chance = 0.0;          ///< the same for wrong poses nearby: what repeated texture gives by itself
    double elevation = 0.0;       ///< of the other camera, radians; panoramas stand on floors
    /// Radians by which the two pictures' walls miss each other; none where either shows no right angles.
    std::optional<double> skew;
    double parallax = 0.0;        ///< median angle between the two bearings of an inlier, radians
    double direction_sigma = 0.0; ///< uncertainty of t's direction, radians
    double floor_step_m =
        0.0;               ///< metric: from one floor up to the other, range on one side: between the cameras
    RangeAgreement ranges; ///< metric only
    SilentPlaces silent;   ///< metric only
    MovedWalls walls;      ///< metric only
    OneSidedSight sight;   ///< range on one side only
    double position_sigma_m = 0.0; ///< uncertainty of t, range on one side only
};

/// Distinct places among the inliers and their spread over the sphere.
void countPlaces(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                 Evidence* evidence);

/// Probability that a metric pose is right (within 1 degree and 10 cm).
double metricReliability(const Evidence& evidence);
/// Probability that a pose from bearings against points of the other panorama is right (the same bounds).
double oneSidedReliability(const Evidence& evidence);
/// Probability that a pose from bearings is right (within 1 degree, direction within 5).
double bearingReliability(const Evidence& evidence);
/// Probability that two panoramas were taken in one place with this rotation between them.
double rotationReliability(const Evidence& evidence);

} // namespace nexomap
