// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The way from the process's arguments to the shown window and back to the exit code.

#pragma once

/// Runs the program: folders, translation, window, event loop.
/// @return exit code of the event loop; 1 when another instance works in the same folder
int runTourwright(int argc, char** argv);
