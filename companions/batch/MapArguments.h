// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The options of a navigation map on the command line.

#pragma once

#include "companions/batch/CommandLine.h"
#include "project/MapOptions.h"

#include <QCommandLineParser>

/// The options --map, --scene, --density, --pts and --bin.
class MapArguments
{
public:
    MapArguments();

    void addTo(QCommandLineParser& parser) const;

    /// What the parsed command line says; no options and no error when it asks for no map.
    Parsed<MapOptions> read(const QCommandLineParser& parser) const;

private:
    QCommandLineOption m_map, m_scene, m_density, m_pts, m_bin;
};
