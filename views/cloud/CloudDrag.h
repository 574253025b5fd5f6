// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/CloudCamera.h"

/// What the mouse does to the camera over a point cloud.
namespace cloud {

constexpr double kLeastZoom = 0.1;
constexpr double kMostZoom = 1.0; ///< one quantisation step per pixel

/// Cursor movement since the press, pixels, y down.
struct CursorStep
{
    double x = 0.0, y = 0.0;
};

/// The camera turned and tilted. The view's width is the measure of both: its whole is half a turn and a
/// quarter of tilt. The tilt stays in [0, pi/2].
Camera rotatedBy(CursorStep step, const Camera& now, const Camera& atPress, ViewSize size);

/// The camera panned so that the ground follows the cursor. Looking so nearly horizontally that the cosine of
/// the tilt is below 0.01, the ground moves only sideways.
Camera pannedBy(CursorStep step, const Camera& now, const Camera& atPress);

/// The zoom one notch further in (`delta` > 0) or out, in [kLeastZoom, kMostZoom].
double zoomAfterWheel(double zoom, int delta);

} // namespace cloud
