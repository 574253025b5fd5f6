// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// What two range maps say about each other's upright planes, square metres over both directions.
struct MovedWalls
{
    double agree_m2 = 0.0; ///< of the pieces that the other sees in the same place
    double moved_m2 = 0.0; ///< of the pieces that the other sees through
};

/// Projects the upright surfaces of each range map into the other and adds up connected flat pieces, of at
/// least a tenth of a square metre, on which one verdict holds. What is merely hidden says nothing, nor does
/// what was moved before a wall that both know. A right pose sees through a door that was shut since and
/// through what a mirror shows; otherwise through nothing, whatever stands beside the cameras and however
/// panes scatter: persons are not flat, panes not connected. A room's twin that is longer, or whose door
/// leads elsewhere, is seen through by whole walls.
MovedWalls movedWalls(const RangeMap& map_0, const RangeMap& map_1, const RigidPose& pose_0_from_1);

} // namespace nexomap
