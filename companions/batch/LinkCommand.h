// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "link": import, link, make the map, save, report.

#pragma once

#include "companions/batch/CommandLine.h"
#include "linking/Linker.h"
#include "project/MapOptions.h"

#include <QString>
#include <QStringList>

#include <optional>

struct LinkOptions
{
    QStringList panoramas;         ///< full paths
    QString work;                  ///< folder that stands for the program's
    QString out;                   ///< tour file
    QString report;                ///< empty: none
    QString pairs;                 ///< empty: none
    int entry = 0;                 ///< row of the entry panorama
    std::optional<MapOptions> map; ///< empty: no map is made
};

Parsed<LinkOptions> parseLinkOptions(const QStringList& arguments);

/// @return an ExitStatus
int runLink(const LinkOptions& options, Linker& linker);
