// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/sphere/SphereCamera.h"

#include <QImage>

#include <vector>

/// A coloured disc on a black panorama.
struct Patch
{
    sphere::SpherePoint centre;
    QRgb colour; ///< red, green, blue or white
};

/// Discs in rings around the sphere, about 0.3 radians apart, neighbours of different colour; none within
/// 0.25 radians of a pole.
std::vector<Patch> patchesAllAround();

/// An equirectangular picture with the patches as discs of this angular radius.
QImage patchedPanorama(int width, const std::vector<Patch>& patches, double radius);

/// Centre of gravity of a patch in a frame, searched in a square of `reach` pixels around where it is
/// expected; each pixel weighs what it shares with the patch's colour. NaN when there is nothing of it.
sphere::PixelPoint patchCentre(const QImage& frame, const Patch& patch, sphere::PixelPoint expected,
                               int reach);
