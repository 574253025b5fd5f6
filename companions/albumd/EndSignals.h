// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Being asked to end: SIGTERM and SIGINT, or the console's equals.

#pragma once

#include <functional>

namespace albumd {

/// To be called before any thread starts: from now on only `onEndSignal` meets the signals.
void holdEndSignals();

/// Calls `end` once, from a thread of its own, when the process is asked to end.
void onEndSignal(std::function<void()> end);

} // namespace albumd
