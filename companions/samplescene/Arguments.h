// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Options.h"

#include <string>
#include <vector>

/// The command line.
namespace samplescene {

struct Arguments
{
    Options options;
    std::string folder;    ///< where the files go, local 8-bit encoding
    int width = 4096;      ///< pixels of the pictures
    bool pictures = false; ///< plain pictures as well
    bool help = false;
};

/// Reads the arguments after the program's name.
/// @return empty, or one line that says what is wrong
std::string parseArguments(const std::vector<std::string>& words, Arguments* arguments);

std::string helpText();

} // namespace samplescene
