// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "open": read, report, save again.

#pragma once

#include "companions/batch/CommandLine.h"
#include "linking/Linker.h"

#include <QString>
#include <QStringList>

struct OpenOptions
{
    QString tour;   ///< full path
    QString work;   ///< folder that stands for the program's
    QString report; ///< empty: none
    QString out;    ///< empty: not saved again
};

Parsed<OpenOptions> parseOpenOptions(const QStringList& arguments);

/// A tour without panoramas (a file without a byte) is opened like any other. Entry panorama of the copy is
/// that of the tour.
/// @return an ExitStatus
int runOpen(const OpenOptions& options, Linker& linker);
