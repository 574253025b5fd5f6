// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Pairs of directions picked by somebody: each two panoramas named in them become one link made by hand.

#pragma once

#include "linking/Linker.h"
#include "project/RoamProject.h"

#include <QByteArray>
#include <QString>

#include <vector>

/// Azimuth and polar angle, radians, of one point seen from both panoramas.
struct DirectionPair
{
    double azimuth_0 = 0.0, polar_0 = 0.0;
    double azimuth_1 = 0.0, polar_1 = 0.0;
};

struct HandMadeLink
{
    QByteArray name_0; ///< the smaller identity text
    QByteArray name_1;
    std::vector<DirectionPair> pairs;

    /// Announces the link, gives its pairs, has it analysed.
    /// @return 0, or the first negative status
    int handTo(Linker& linker) const;
};

struct PairsFile
{
    std::vector<HandMadeLink> links; ///< in the order in which their ids first stand in the file
    QString error;                   ///< with file and line; empty when the file was read whole
};

/// Rows id0,id1,azimuth0,polar0,azimuth1,polar1; empty lines, lines starting with "#" and a heading that
/// starts with "id0" are skipped. Refuses ids that are not in the project.
PairsFile readPairs(const QString& path, const RoamProject& project);
