// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/SphereCamera.h"

#include <algorithm>
#include <cmath>

namespace sphere {

namespace {

double halfLargerSide(ViewSize size)
{
    return std::max(size.width, size.height) / 2.0;
}

} // namespace

double drawablePolar(double polar)
{
    return std::clamp(polar, 0.01, kPi - 0.01);
}

ScreenPoint screenFromSphere(SpherePoint point, const Camera& camera)
{
    const double x = std::cos(point.azimuth) * std::sin(point.polar);
    const double y = std::sin(point.azimuth) * std::sin(point.polar);
    const double z = std::cos(point.polar);
    const double sinYaw = std::sin(camera.yaw), cosYaw = std::cos(camera.yaw);
    const double sinPolar = std::sin(camera.polar), cosPolar = std::cos(camera.polar);

    const double ahead = x * cosYaw + y * sinYaw;
    const double left = y * cosYaw - x * sinYaw;
    const double depth = ahead * sinPolar + z * cosPolar;
    const double scale = camera.zoom / depth;
    // Written so that a point exactly beside the viewer (infinite scale) and one read as no number at all
    // count as behind: both have no place on the screen.
    if (!(scale > 0.0) || !std::isfinite(scale)) return {kBehindViewer, kBehindViewer};
    return {-left * scale, (z * sinPolar - ahead * cosPolar) * scale};
}

SpherePoint sphereFromScreen(ScreenPoint screen, const Camera& camera)
{
    const double left = -screen.u / camera.zoom;
    const double up = screen.v / camera.zoom;
    const double sinYaw = std::sin(camera.yaw), cosYaw = std::cos(camera.yaw);
    const double sinPolar = std::sin(camera.polar), cosPolar = std::cos(camera.polar);

    // The ray (1, left, up), first tilted back, then turned back.
    const double ahead = sinPolar - cosPolar * up;
    const double z = cosPolar + sinPolar * up;
    const double x = ahead * cosYaw - left * sinYaw;
    const double y = ahead * sinYaw + left * cosYaw;
    return {std::atan2(y, x), std::atan2(std::sqrt(x * x + y * y), z)};
}

PixelPoint pixelFromScreen(ScreenPoint screen, ViewSize size)
{
    const double half = halfLargerSide(size);
    return {(size.width - 1) / 2.0 + screen.u * half, (size.height - 1) / 2.0 - screen.v * half};
}

ScreenPoint screenFromPixel(PixelPoint pixel, ViewSize size)
{
    const double half = halfLargerSide(size);
    return {(pixel.x - (size.width - 1) / 2.0) / half, -(pixel.y - (size.height - 1) / 2.0) / half};
}

PixelPoint pixelFromSphere(SpherePoint point, const Camera& camera, ViewSize size)
{
    return pixelFromScreen(screenFromSphere(point, camera), size);
}

SpherePoint sphereFromPixel(PixelPoint pixel, const Camera& camera, ViewSize size)
{
    return sphereFromScreen(screenFromPixel(pixel, size), camera);
}

} // namespace sphere
