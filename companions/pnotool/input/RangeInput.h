// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <string>

namespace pnotool {

/// Reads a 16-bit grey PNG or TIFF picture whole.
/// @param path  local 8-bit encoding
/// @return empty on success, else one line without the path
std::string readRangePicture(const std::string& path, pnomaker::RangePicture& range);

/// Reads a 16-bit grey PNG picture from memory.
/// @param maxWidth, maxHeight  what is larger is refused before its pixels are decoded
/// @return false when it is anything else
bool readGrey16Png(const std::uint8_t* bytes, std::size_t size, int maxWidth, int maxHeight,
                   pnomaker::RangePicture& range);

} // namespace pnotool
