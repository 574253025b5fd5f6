// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <cstdint>
#include <vector>

namespace pnomaker {

/// An RGB picture of the full sphere, 3 bytes a pixel.
struct SpherePicture
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb;
};

/// At most 65,536 points, spread evenly over the directions that have a return, coloured by the picture.
std::vector<CloudPoint> pointsFromRange(const RangePicture& range, const SpherePicture& picture);

/// At most 65,536 of the points, evenly along the list; points that are not finite are left out.
std::vector<CloudPoint> thinned(const std::vector<CloudPoint>& points);

/// The point block's payload, padded with zeros to its minimum.
std::vector<std::uint8_t> pointPayload(const std::vector<CloudPoint>& points);

} // namespace pnomaker
