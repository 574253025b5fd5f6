// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/CloudDrag.h"

#include <algorithm>
#include <cmath>

namespace cloud {

Camera rotatedBy(CursorStep step, const Camera& now, const Camera& atPress, ViewSize size)
{
    Camera camera = now;
    camera.rotation = atPress.rotation - step.x * kPi / size.width;
    camera.tilt = std::clamp(atPress.tilt - step.y * kHalfPi / size.width, 0.0, kHalfPi);
    return camera;
}

Camera pannedBy(CursorStep step, const Camera& now, const Camera& atPress)
{
    const double k = now.pixelsPerUnit();
    const double a = kHalfPi - now.rotation;
    const double foreshortening = std::cos(now.tilt);
    const double dx = -step.x / k;
    const double dy = foreshortening < 0.01 ? 0.0 : step.y / k / foreshortening;
    Camera camera = now;
    camera.pan_x = atPress.pan_x + std::cos(a) * dx + std::sin(a) * dy;
    camera.pan_y = atPress.pan_y - std::sin(a) * dx + std::cos(a) * dy;
    return camera;
}

double zoomAfterWheel(double zoom, int delta)
{
    return std::clamp(zoom * (delta > 0 ? 1.1 : 0.9090909090909091), kLeastZoom, kMostZoom);
}

} // namespace cloud
