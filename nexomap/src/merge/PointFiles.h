// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudBlocks.h"
#include "nexomap/src/merge/PendingFile.h"

namespace nexomap {

// Point files for other programs, written piece by piece. They come back whole, not yet under their names.
// All throw Failure(NEXOMAP_CANNOT_WRITE), and what the cloud throws.

/// PTS text: a line with the count, then a line "x y z intensity r g b" per point, each ended by a line feed:
/// metres with four decimals; intensity 0 to 255 is the colour's brightness.
[[nodiscard]] PendingFile writePts(const std::filesystem::path& path, const SurfaceBlocks& surface);
[[nodiscard]] PendingFile writePts(const std::filesystem::path& path, const CloudBlocks& cloud);

/// "NXB1", the count as u64, then 16 bytes a point: x, y, z as f32 metres, red, green, blue, 255.
/// Little-endian.
[[nodiscard]] PendingFile writePointBinary(const std::filesystem::path& path, const SurfaceBlocks& surface);

} // namespace nexomap
