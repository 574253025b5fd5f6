// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

/// How far the panorama view may be zoomed, and what one step of the wheel does.
namespace sphere {

constexpr double kMinZoom = 0.5;

/// Zoom at which the middle of a view `viewWidth` pixels wide shows a panorama `panoramaWidth` pixels wide
/// pixel for pixel, times two; at least 1.
double maxZoom(int panoramaWidth, int viewWidth);

/// `zoom` brought into [`kMinZoom`, `limit`].
double clampZoom(double zoom, double limit);

/// Zoom after one event of the wheel: nearer for a positive delta, farther for a negative one, one step
/// of 1.1 whatever the delta's size, unchanged for 0; clamped.
double zoomAfterWheel(double zoom, int delta, double limit);

} // namespace sphere
