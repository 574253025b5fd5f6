// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Vec.h"

#include <cstdint>

/// Noise with detail at every size, cut off where a pixel could no longer show it.
namespace samplescene {

/// Smooth value noise (Perlin's lattice with random values instead of gradients), about -1 to 1.
float valueNoise(Vec2 p, std::uint32_t seed);

/// Sum of octaves from `wavelength` downwards, each half the size and `gain` times as strong; octaves finer
/// than two pixel footprints fade out, so that a far wall neither flickers nor aliases.
/// @param p          metres
/// @param wavelength metres of the coarsest octave, > 0
/// @param octaves    1 to 16
/// @param footprint  metres that one pixel covers on the surface
float fractalNoise(Vec2 p, float wavelength, int octaves, float gain, float footprint, std::uint32_t seed);

} // namespace samplescene
