// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Reads a tour file into the project, its files into the working folder, its state into the linking library.

#pragma once

#include "linking/Linker.h"
#include "project/RoamProject.h"

#include <QString>

#include <functional>

enum class OpenOutcome
{
    Opened,
    Empty, ///< fewer than two bytes: what a tour without panoramas is saved as
    Failed ///< what was read so far stays in the project and in the working folder
};

struct OpenResult
{
    OpenOutcome outcome = OpenOutcome::Opened;
    QString path;   ///< the file to name: the tour file, or the one that was to be unpacked from it
    QString detail; ///< why it failed, for a person to read; otherwise empty

    explicit operator bool() const { return outcome == OpenOutcome::Opened; }
};

/// Called while the tour is read, for each plan record; either may be empty.
struct PlanViews
{
    std::function<void(const QString& picturePath)> showPicture; ///< the plan picture lies there
    std::function<void(const QString& cloudPath)> showCloud;     ///< the library has just decompressed it
};

/// Reads the tour into an empty project (`clearProject`, an empty working folder, `Linker::reset`). The
/// linking library gets nodes and matches only after the whole file was read; after a failure it stays empty
/// while the project holds what was read, until the next reset. The file path and the modified flag are the
/// caller's.
/// @param path  full path of the tour file; stays as it is
OpenResult openTour(RoamProject& project, Linker& linker, const QString& path, const PlanViews& views = {});
