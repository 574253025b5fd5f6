// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Scene.h"

/// What travels with the camera: the stand, the person who works it, a label at the lower pole.
namespace samplescene {

/// Shapes with their hierarchy but without baked light; empty when the options ask for none.
World companionsOf(const Scene& scene, const Station& station);

/// The colour at a pixel with the round label laid over it.
Vec3 withNadirPatch(Vec3 color, int x, int y, int width);

} // namespace samplescene
