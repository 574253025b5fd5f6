// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

/// The sub-commands: words after the sub-command's name in, exit status out.
namespace pnotool {

using Words = std::vector<std::string>;

int makeCommand(const Words& words);
int infoCommand(const Words& words);
int imageCommand(const Words& words);
int tileCommand(const Words& words);
int thumbnailCommand(const Words& words);
int rangeCommand(const Words& words);

} // namespace pnotool
