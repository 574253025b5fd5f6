// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/FrontEnd.h"

/// What `load` makes of a file, kept in a folder between runs so that trying a change of what comes after the
/// features does not wait for them. Whoever changes the features empties the folder.
/// @param folder  empty: nothing is kept
std::shared_ptr<const nexomap::Panorama> cachedPanorama(
    const std::string& folder, const std::string& path, std::string* error,
    const std::function<std::shared_ptr<const nexomap::Panorama>(const std::string&, std::string*)>& load);

/// The panorama as if it had been taken without lidar.
std::shared_ptr<const nexomap::Panorama>
withoutRange(const std::shared_ptr<const nexomap::Panorama>& panorama);
