// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/PairPose.h"

namespace nexomap {

/// Relative pose of two panoramas from their range maps alone, for where pictures do not match. Both stand
/// about upright: headings by the directions that walls face, positions by correlating what stands at three
/// heights above the floor (Fourier transform), then point-to-plane alignment of what both see (Chen and
/// Medioni 1992). Accepted when the range maps agree, neither sees through the other's surfaces, and no other
/// place fits nearly as well. The pose has no inliers.
std::optional<PairPose> alignScans(const Panorama& panorama_0, const Panorama& panorama_1);

} // namespace nexomap
