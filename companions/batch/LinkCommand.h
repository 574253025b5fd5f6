// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "link": import, link, save, report.

#pragma once

#include "companions/batch/CommandLine.h"
#include "linking/Linker.h"

#include <QString>
#include <QStringList>

struct LinkOptions
{
    QStringList panoramas; ///< full paths
    QString work;          ///< folder that stands for the program's
    QString out;           ///< tour file
    QString report;        ///< empty: none
    QString pairs;         ///< empty: none
    int entry = 0;         ///< row of the entry panorama
};

Parsed<LinkOptions> parseLinkOptions(const QStringList& arguments);

/// @return an ExitStatus
int runLink(const LinkOptions& options, Linker& linker);
