// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnotool/input/EvenSelection.h"

#include <istream>
#include <string>

namespace pnotool {

/// Reads the vertices of a PLY file: text, or binary in either byte order (the Stanford triangle format,
/// 1994).
/// @param in  at its first byte
/// @return empty on success, else one line
std::string readPly(std::istream& in, EvenSelection& points);

} // namespace pnotool
