// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A password from standard input, unseen where that is a terminal.

#pragma once

#include <string>

namespace albumd {

/// One line without its end; empty when there is none, or one of more than 1024 bytes.
std::string readPassword();

} // namespace albumd
