// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/JpegTiles.h"
#include "tests/support/PnoParts.h"

#include <string>
#include <vector>

/// Panoramas of one colour with patches of others at known directions.
namespace albumtest {

struct Patch
{
    double azimuth = 0; ///< radians; not across the picture's seam
    double polar = 0;
    double half = 0; ///< half its extent in both angles, radians
    pnotest::Colour colour{};
};

/// Patches must not overlap.
pnotest::Bytes paintedPanorama(const std::string& id, pnotest::Colour ground,
                               const std::vector<Patch>& patches);

} // namespace albumtest
