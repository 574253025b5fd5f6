// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Options.h"
#include "companions/samplescene/RayTracer.h"

/// What a scanner makes of the true distances.
namespace samplescene {

struct RangePixel
{
    int x, y, width; ///< column, row, columns of the picture
};

/// @param back        what the ray through the middle of the pixel found
/// @param neighbours  left, right, above, below
/// @param lot         random number of the pixel
/// @return millimetres, 0 = no return
std::uint16_t measuredRange(const Options& options, RangePixel pixel, const FirstReturn& back,
                            const FirstReturn* const (&neighbours)[4], std::uint32_t lot);

} // namespace samplescene
