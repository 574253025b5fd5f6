// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The way from the process's arguments to the viewer's window and back to the exit code.

#pragma once

/// Runs the viewer on the tour file that the one argument names.
/// @return 0; 2 after more than one argument
int runViewer(int argc, char** argv);
