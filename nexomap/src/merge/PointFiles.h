// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudFile.h"

#include <filesystem>

namespace nexomap {

/// PTS text: a line with the count, then a line "x y z intensity r g b" per point; metres with four decimals.
/// @throws Failure(NEXOMAP_CANNOT_WRITE)
void writePts(const std::filesystem::path& path, const std::vector<CloudPoint>& points,
              const CloudGrid& grid);

/// "NXB1", the count as u64, then 16 bytes a point: x, y, z as f32 metres, red, green, blue, 255.
/// Little-endian.
void writePointBinary(const std::filesystem::path& path, const std::vector<CloudPoint>& points,
                      const CloudGrid& grid);

/// One point per cell of `factor` grid steps, the first in order.
std::vector<CloudPoint> thinned(const std::vector<CloudPoint>& points, int factor);

} // namespace nexomap
