// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The report on a tour as JSON.

#pragma once

#include "companions/batch/Stopwatch.h"
#include "linking/Linker.h"
#include "project/RoamProject.h"

#include <QJsonObject>
#include <QString>

/// Keys: stage, lidar, entry, groups (count), panoramas, links, outputs; rotations are the library's, of a
/// panorama that it does not know the heading alone.
QJsonObject reportOf(const RoamProject& project, Linker& linker);

/// `reportOf` with the keys seconds and peak_memory_mib, to a file.
/// @return what went wrong, or empty
QString writeReport(const QString& path, const RoamProject& project, Linker& linker, const Stopwatch& watch);

/// Largest resident memory of this process so far, MiB; 0 where the system does not tell.
double peakMemoryMib();
