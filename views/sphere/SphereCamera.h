// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

/// Camera at the centre of a panorama sphere: where a point of the sphere stands on the screen, and which
/// point stands under a pixel (rectilinear, that is gnomonic, projection). Plain numbers, no drawing.
///
/// Frame: z up; azimuth a and polar angle p stand for the direction (cos a sin p, sin a sin p, cos p), so
/// that azimuth grows to the left of the viewer. All angles in radians.
namespace sphere {

constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;

/// A direction on the panorama.
struct SpherePoint
{
    double azimuth = 0.0;
    double polar = kHalfPi; ///< from the upper pole; pi/2 is the horizon
};

/// A place on the screen in units of half the larger side, origin in the middle, u to the right, v up.
struct ScreenPoint
{
    double u = 0.0;
    double v = 0.0;
};

/// A place on the screen in pixels; the middle of the top-left pixel is (0, 0), y down.
struct PixelPoint
{
    double x = 0.0;
    double y = 0.0;
};

/// Size of the view, pixels.
struct ViewSize
{
    int width = 1056;
    int height = 930;
};

struct Camera
{
    double yaw = 0.0;       ///< azimuth of the middle of the view; grows beyond pi after a full turn
    double polar = kHalfPi; ///< polar angle of the middle of the view
    double zoom = 1.0;      ///< 1: the larger side of the view spans 90 degrees
};

/// Both coordinates of every point that lies behind the viewer: far outside any screen.
constexpr double kBehindViewer = 100000.0;

/// Polar angle as it may be drawn: kept 0.01 away from the poles, where the view would flip over.
double drawablePolar(double polar);

/// The point's place on the screen; (`kBehindViewer`, `kBehindViewer`) when it is not in front of the viewer.
ScreenPoint screenFromSphere(SpherePoint point, const Camera& camera);

/// The point under a place on the screen. Azimuth in [-pi, pi], polar angle in [0, pi].
SpherePoint sphereFromScreen(ScreenPoint screen, const Camera& camera);

PixelPoint pixelFromScreen(ScreenPoint screen, ViewSize size);
ScreenPoint screenFromPixel(PixelPoint pixel, ViewSize size);

PixelPoint pixelFromSphere(SpherePoint point, const Camera& camera, ViewSize size);
SpherePoint sphereFromPixel(PixelPoint pixel, const Camera& camera, ViewSize size);

} // namespace sphere
