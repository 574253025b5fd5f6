// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Panorama.h"

#include <optional>

namespace nexomap {

/// One point of a panorama's surroundings with the direction of its surface.
struct SurfaceSample
{
    Eigen::Vector3d point;  ///< metres, panorama frame
    Eigen::Vector3d normal; ///< unit, toward the camera
};

/// Surface at one cell of a range map: the cross product of the steps to neighbours a few cells away.
/// @return nullopt at edges, holes and where the surface bends
std::optional<SurfaceSample> surfaceAt(const RangeMap& map, int column, int row);

/// About `count` samples, evenly over the sphere.
std::vector<SurfaceSample> sampleSurfaces(const RangeMap& map, int count);

} // namespace nexomap
