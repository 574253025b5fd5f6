// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Writes the tour file: description, panoramas, match data, photos and plans in one container.

#pragma once

#include "project/RoamProject.h"

#include <QString>

enum class SaveOutcome
{
    Saved,      ///< the file is whole and on the disk
    CannotOpen, ///< nothing was written; a file that stood there stands there still
    Failed      ///< the half-written file is gone; the earlier one stands under its name + "~"
};

struct SaveResult
{
    SaveOutcome outcome = SaveOutcome::Saved;
    QString detail; ///< why, for a person to read; empty when saved

    explicit operator bool() const { return outcome == SaveOutcome::Saved; }
};

/// Saves the tour. Memory does not grow with the tour's files. A project without panoramas gives a file
/// without a byte. An existing file is set aside under its name + "~" until the new one is whole and flushed
/// to disk; the magic word is written last, so that a file left by a killed program does not pass for a tour.
/// Refused without touching anything: a path that is one of the tour's own source files. Failing while
/// writing: a source that cannot be read to its end, one longer than 2^31 - 1 bytes, a full disk.
/// The modified flag stays; only the entry index is settled.
/// @param entrySelector  see tourxml::build
SaveResult saveTour(RoamProject& project, int entrySelector, const QString& path);
