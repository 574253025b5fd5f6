// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/SurfaceCells.h"

namespace nexomap {

/// Draws together what several stations say of one surface with errors of a few centimetres: every cell moves
/// along its normal to the weighted mean of the cells in front of it and behind it that face the same way.
/// Afterwards cells that met are one, and the order is again that of the keys.
/// @param cells  in the order of their keys
/// @param reach  cells along the normal, 1 to 4
void drawTogether(std::vector<SurfaceCell>& cells, const CloudGrid& grid, int reach);

/// How far a cell can be influenced from, in cells, by `drawTogether` with the largest reach.
constexpr int kInfluence = 11;

} // namespace nexomap
