// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace pnomaker {

/// Fills a row beyond the source's extent from the source's nearest row: blurred along the horizon, more and
/// more toward the pole, where only the mean colour is left. A hard edge or streaks running to the pole would
/// offer features that no camera saw.
/// @param row       the nearest row of the picture, `width` RGB pixels; filled in place
/// @param nearness  0 at the source's edge to 1 at the pole
void blurTowardPole(std::uint8_t* row, int width, double nearness);

} // namespace pnomaker
