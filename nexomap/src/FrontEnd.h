// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/PairPose.h"
#include "nexomap/src/Panorama.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace nexomap {

/// Where panoramas and their relative poses come from. The library reads panorama files; tests hand in
/// made-up ones. All three may be called from several threads at once.
struct FrontEnd
{
    /// Identity text of a panorama file, without reading its pictures; nullopt with one line in *error.
    std::function<std::optional<std::string>(const std::string& path, std::string* error)> identify;
    /// The whole panorama; null with one line in *error.
    std::function<std::shared_ptr<const Panorama>(const std::string& path, std::string* error)> load;
    std::function<std::optional<PairPose>(const Panorama&, const Panorama&)> match;
};

/// Reads panorama files and matches their pictures and ranges.
FrontEnd panoramaFileFrontEnd();

} // namespace nexomap
