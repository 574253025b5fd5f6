// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "compare": a report's poses and links against the truth of a made-up building.

#pragma once

#include "companions/batch/CommandLine.h"
#include "companions/batch/PoseFile.h"

#include <QString>
#include <QStringList>

#include <vector>

/// What the found links are worth.
struct LinkScore
{
    int found = 0;
    int trueSight = 0;  ///< found, and the two truly see each other
    int neighbours = 0; ///< truly visible pairs nearer than `kNeighbour_m`
    int neighboursLinked = 0;
};
constexpr double kNeighbour_m = 6.0;

LinkScore scoreLinks(const PoseFile& report, const PoseFile& truth);

/// Panoramas of the report that links join with each other, the largest group first; those that the truth
/// does not know are left out.
std::vector<QStringList> linkedGroups(const PoseFile& report, const PoseFile& truth);

struct CompareOptions
{
    QString report; ///< of `link` or `open`
    QString truth;  ///< truth.json
    QString work;   ///< folder that stood for the program's, whose map is compared as well; empty: none
};

Parsed<CompareOptions> parseCompareOptions(const QStringList& arguments);

/// Prints the tables on standard output.
/// @return an ExitStatus
int runCompare(const CompareOptions& options);
