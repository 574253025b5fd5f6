// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/IconPlacement.h"

#include <algorithm>
#include <cmath>

namespace sphere {

namespace {

constexpr double kFarthest = 1e9; // leaves room for a width in 32 bits
constexpr int kFloorMarkerSize = 112;
constexpr int kDigitWidth = 11;
constexpr int kDigitHeight = 16;

int wholePixel(double value)
{
    if (std::isnan(value)) return static_cast<int>(kFarthest);
    return static_cast<int>(std::clamp(value, -kFarthest, kFarthest));
}

} // namespace

IconRect iconRect(PixelPoint centre, int width, int height)
{
    return {wholePixel(centre.x - width / 2), wholePixel(centre.y - height / 2), width, height};
}

IconRect floorMarkerRect(PixelPoint centre, double polar)
{
    const double slant = std::cos(kPi - polar);
    // A polar angle that is no number leaves the marker without extent.
    if (std::isnan(slant)) return iconRect(centre, 0, 0);
    return iconRect(centre, static_cast<int>(kFloorMarkerSize * slant),
                    static_cast<int>(kFloorMarkerSize * slant * slant));
}

IconRect digitRect(PixelPoint crossCentre, int crossSize, int place)
{
    return {wholePixel(crossCentre.x + crossSize / 2 + 10 * (place + 1)),
            wholePixel(crossCentre.y - kDigitHeight / 2), kDigitWidth, kDigitHeight};
}

} // namespace sphere
