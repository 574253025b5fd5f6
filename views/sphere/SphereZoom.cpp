// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/SphereZoom.h"

#include "views/sphere/SphereCamera.h"

#include <algorithm>

namespace sphere {

double maxZoom(int panoramaWidth, int viewWidth)
{
    return std::max(1.0, panoramaWidth / (viewWidth * kPi));
}

double clampZoom(double zoom, double limit)
{
    return std::clamp(zoom, kMinZoom, limit);
}

double zoomAfterWheel(double zoom, int delta, double limit)
{
    if (delta == 0) return zoom;
    return clampZoom(zoom * (delta > 0 ? 1.1 : 0.9090909090909091), limit);
}

} // namespace sphere
