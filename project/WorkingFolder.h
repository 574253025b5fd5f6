// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The scratch files of the open tour: cleared by every reset, and shown by the newest of a kind.

#pragma once

#include <QString>

/// Deletes the files of the working folder that belong to the open tour, by their exact, case-sensitive
/// ending, and the preview file in its folder Preview. Other files and folders stay; a file that cannot be
/// deleted is left without a word.
/// @param folder  working folder, ends in "/"
void clearWorkingFolder(const QString& folder);

/// Full path of the newest plain file, by modification time, whose name matches `pattern` such as "*.png";
/// empty when there is none.
/// @param folder  ends in "/"
QString newestFile(const QString& folder, const QString& pattern);
