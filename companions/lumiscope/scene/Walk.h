// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The short blend from one station to the next.

#pragma once

#include "views/gl/Matrix4.h"
#include "views/sphere/SphereCamera.h"

namespace lumiscope {

/// How long a walk's blend takes.
constexpr double kWalk_s = 0.45;

/// Both panoramas during a walk: the one left behind fades while the visitor moves on inside both. Headings
/// stay as they are.
struct WalkFrame
{
    float leftBehindOpacity = 0.0f; ///< 1 at the start
    double leftBehindShift = 0.0;   ///< how far ahead the visitor is in it, in radii of the sphere
    double reachedShift = 0.0;      ///< how far ahead in the one reached; negative: not yet there
};

/// @param elapsed_s  since the walk's first frame, >= 0
WalkFrame walkFrame(double elapsed_s);

/// Matrix of a panorama sphere whose viewer stands `shift` radii off its middle toward this azimuth.
Matrix4 spherePlacement(const sphere::Camera& camera, sphere::ViewSize size, double azimuth, double shift);

} // namespace lumiscope
