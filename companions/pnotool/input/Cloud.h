// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <string>
#include <vector>

namespace pnotool {

/// Reads a point cloud, in metres in the panorama frame: PLY (text or binary), or lines of "x y z", "x y z
/// intensity", "x y z red green blue" or "x y z intensity red green blue", with or without a line that counts
/// them (PTS). Of a large cloud an even selection is kept.
/// @param path  local 8-bit encoding
/// @return empty on success, else one line without the path
std::string readCloud(const std::string& path, std::vector<pnomaker::CloudPoint>& points);

/// Parses the numbers of a line, parted by blanks, commas or semicolons, whatever the locale.
/// @return how many; -1 when something else stands between them; more than `limit` are not read
int numbersOfLine(const std::string& line, double* values, int limit);

} // namespace pnotool
