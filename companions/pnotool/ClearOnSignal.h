// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace pnotool {

/// While it lives, an interruption (Ctrl-C, a closed terminal, a request to end) removes the unfinished
/// output before the program ends. One at a time.
class ClearOnSignal
{
public:
    /// @param path  the output whose part file is to go, local 8-bit encoding
    explicit ClearOnSignal(const std::string& path);
    ~ClearOnSignal();
    ClearOnSignal(const ClearOnSignal&) = delete;
    ClearOnSignal& operator=(const ClearOnSignal&) = delete;

    /// To be called first in main(): a file-size limit is then an error of writing, not the program's end.
    static void prepareProcess();
};

} // namespace pnotool
