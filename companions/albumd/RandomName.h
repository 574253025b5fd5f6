// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Names that nobody can guess.

#pragma once

#include <string>

namespace albumd {

/// Capital and small ASCII letters from the system's random source.
std::string randomLetters(int count);

} // namespace albumd
