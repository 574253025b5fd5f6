// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

/// The program pnotool, run as a person would.
namespace pnotest {

struct ToolRun
{
    int status = -1;   ///< exit status; -1 when a signal ended it
    std::string out;   ///< standard output
    std::string err;   ///< standard error
    long peak_kib = 0; ///< largest resident memory
};

/// Runs pnotool with these words and waits for its end.
/// @param fileLimit_bytes  the largest file it may write; 0: no limit
ToolRun runTool(const std::vector<std::string>& words, unsigned long fileLimit_bytes = 0);

/// Runs pnotool and ends it with SIGTERM as soon as a file appears in `folder`.
/// @return the signal that ended it; 0 when it ended by itself
int runToolUntilOutputAppears(const std::vector<std::string>& words, const std::string& folder);

} // namespace pnotest
