// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <optional>
#include <string>

namespace pnotool {

/// What is to be made of one picture.
struct MakeJob
{
    std::string picture; ///< paths in the local 8-bit encoding
    std::string out;
    std::string range; ///< empty: none
    std::string points;
    bool polarGiven = false; ///< else the picture's own statement counts
    bool timeGiven = false;
    pnomaker::MakeOptions options; ///< its name may be empty: the picture's base name then
    double rangeUnit_m = 0.001;
    bool showProgress = false;
};

struct MakeResult
{
    std::string error; ///< one line with the file's name; empty on success
    std::string id;
    std::string summary; ///< one line, for people
};

/// Reads the picture and what it says of itself, and makes the panorama file.
MakeResult makePanorama(MakeJob job);

/// Name of a file without its folder and its ending.
std::string baseName(const std::string& path);

} // namespace pnotool
