// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Scene.h"

#include <string>

/// Puts what was rendered into files.
namespace samplescene {

/// One panorama file.
/// @param number  of the station; its capture time is that many minutes into 2026
/// @return empty, or one line that says what went wrong
std::string writePanorama(const Station& station, int number, const Rendering& picture,
                          const std::string& path);

/// A colour picture as binary PPM.
std::string writePpm(const Rendering& picture, const std::string& path);
/// A range picture as binary PGM of 16 bits, millimetres.
std::string writeRangePgm(const Rendering& picture, const std::string& path);

std::string writeText(const std::string& text, const std::string& path);

} // namespace samplescene
