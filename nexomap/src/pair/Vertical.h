// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Panorama.h"

namespace nexomap {

/// The vertical in a panorama's frame as the rooms around it have it: walls stand upright, floors and
/// ceilings lie level. Unit vector within 12 degrees of z; z itself where too little of either is seen, or
/// disagrees.
Eigen::Vector3d verticalOf(const RangeMap& map);

/// The same for a camera on a stand: z unless it clearly leans, since the estimate errs by half a degree.
Eigen::Vector3d uprightOf(const RangeMap& map);

/// Rotation that turns the vertical onto z by the shortest way.
Eigen::Matrix3d levelling(const Eigen::Vector3d& vertical);

} // namespace nexomap
