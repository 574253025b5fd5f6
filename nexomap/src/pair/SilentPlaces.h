// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// Where two panoramas should show the same features and do not.
struct SilentPlaces
{
    int places = 0;     ///< cells of about 15 degrees, in either panorama, that should match
    double share = 0.0; ///< of them, those in which next to nothing does
    int expected = 0;   ///< features of either panorama that the other should show
    int comparable = 0; ///< of them, those beside which the other has a feature of that size and turn
    int alike = 0;      ///< of these, those that match
};

/// What a metric pose lays onto a surface that both measured, seen from nearly the same side and distance,
/// must look alike: of a dozen such features in one place, some match. A corridor of equal doors, seen one
/// door further, matches in its doors and nowhere else.
/// @param matches  found where the pose says they must lie
SilentPlaces silentPlaces(const Panorama& panorama_0, const Panorama& panorama_1, const RigidPose& pose,
                          const std::vector<Correspondence>& matches);

} // namespace nexomap
