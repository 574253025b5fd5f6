// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pnomaker {

class PnoWriter;
class WorkerPool;
struct SpherePicture;

/// Empty when the range picture can be stored, else one line that says why not.
std::string refusalOfRange(const RangePicture& range);

/// Writes the four lidar segments: the range picture brought to 8192 x 4096 by nearest neighbour, tile by
/// tile, and the point block.
/// @param picture  colours for points taken from the range picture; unused where points are given
/// @return empty on success, else one line
std::string writeLidar(const MakeOptions& options, const SpherePicture& picture, WorkerPool& pool,
                       PnoWriter& writer);

} // namespace pnomaker
