// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A round mark on the floor as the camera of a panorama sees it. Plain numbers, no drawing.

#pragma once

#include "views/gl/Matrix4.h"
#include "views/sphere/SphereCamera.h"

#include <QRect>

#include <array>

namespace lumiscope {

/// A disc on the floor in the panorama's frame; the unit is the height of the camera above the floor.
struct FloorMarker
{
    double x = 0.0;
    double y = 0.0;
    double radius = 0.0;

    /// Corners of the square about the disc, in space: far left, near left, far right, near right as seen
    /// from the camera, the order of a triangle strip.
    std::array<Vector3, 4> corners() const;
};

/// The mark below a station. Points at or above the horizon count as far away on the floor; far marks are
/// larger, so that they stay visible.
FloorMarker floorMarker(sphere::SpherePoint floorPoint);

/// Where the visitor sees a marker and takes it.
struct MarkerSpot
{
    sphere::PixelPoint centre;
    QRect target;        ///< around the mark, at least as large as a finger needs; null when out of view
    bool atEdge = false; ///< lies below the view: stands at its lower edge instead
};

/// Smallest target, pixels.
constexpr int kTargetWidth = 48;
constexpr int kTargetHeight = 32;

MarkerSpot markerSpot(sphere::SpherePoint floorPoint, const sphere::Camera& camera, sphere::ViewSize size);

} // namespace lumiscope
