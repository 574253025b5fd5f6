// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnotool/input/PictureSource.h"

#include <optional>
#include <string>

namespace pnotool {

/// When the picture was taken: DateTimeOriginal with its fraction of a second, else DateTime. EXIF 2.3,
/// JEITA CP-3451.
/// @param block  from the TIFF header on; may be bent in any way
std::optional<CaptureMoment> momentFromExif(const std::string& block);

/// From "YYYY:MM:DD HH:MM:SS" and the digits after the decimal point; nothing when it is no date from 1970 to
/// 2100.
std::optional<CaptureMoment> momentFromExifText(const std::string& text, const std::string& fraction);

/// From "YYYY-MM-DD", followed or not by "THH:MM", ":SS", ".fraction" and a zone, which is not applied: the
/// time on the clock beside the camera counts.
std::optional<CaptureMoment> momentFromIso8601(const std::string& text);

} // namespace pnotool
