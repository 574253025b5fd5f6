// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/sphere/SphereCamera.h"

/// Where the flat icons of the panorama view lie on the screen, in whole pixels.
namespace sphere {

struct IconRect
{
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

/// Rectangle of the given size around a projected point: `centre` minus the halved size (halved in whole
/// numbers), cut toward zero. A centre beyond a thousand million pixels, or none at all, is brought to there.
IconRect iconRect(PixelPoint centre, int width, int height);

/// Rectangle of a mark on the floor at this polar angle, foreshortened as a round mark below the viewer would
/// be: 112 x 112 pixels straight down, flat and narrow toward the horizon. Above the horizon the width is
/// negative.
IconRect floorMarkerRect(PixelPoint centre, double polar);

/// Rectangle of one of the two digits beside a cross of the given size: `place` 0 for the tens, 1 for the
/// units.
IconRect digitRect(PixelPoint crossCentre, int crossSize, int place);

/// Highest place of a floor marker that the user may drag it to, about 12.6 degrees below the horizon.
constexpr double kFloorMarkerMinPolar = 1.790707812546182;

} // namespace sphere
