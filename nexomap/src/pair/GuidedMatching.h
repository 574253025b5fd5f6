// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Correspondence.h"
#include "nexomap/src/pair/RigidPose.h"

namespace nexomap {

/// Matches looked for where a pose says they must lie. The ratio test then has few rivals, so that a right
/// pose finds many more matches than it was made from, and a wrong one hardly any.
/// @param max_distance2  largest squared descriptor distance that counts as alike
/// @return mutual best, one for one, ordered by index in panorama 0
std::vector<Correspondence> guidedByRange(const Features& features_0, const Features& features_1,
                                          const RigidPose& pose, int max_distance2);

/// How many matches guidedByRange finds on average where the pose is certainly wrong: 0.8 m off, four ways.
double matchesByChance(const Features& features_0, const Features& features_1, const RigidPose& pose,
                       int max_distance2);

} // namespace nexomap
