// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Whether a file is the panorama that it is said to be.

#pragma once

#include <string>

namespace albumd {

/// True when the panorama reader finds the file sound, and its identity is `id`.
bool isPanorama(const std::string& path, const std::string& id);

} // namespace albumd
