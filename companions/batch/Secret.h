// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A password that is neither an argument nor shown.

#pragma once

#include <QString>

/// From the environment variable, or where that is not set, the first line of standard input; asked for on a
/// terminal, without showing what is typed.
QString readSecret(const char* variable, const QString& question);
