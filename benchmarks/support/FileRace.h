// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "project/RoamProject.h"

#include <QStringList>

#include <functional>

/// A tour of files of noise, for racing what reads or writes it against a plain copy of the same files.
namespace filerace {

/// Fills `project` with eight panoramas in `folder` of `mib` MiB in all. Noise, so that no file system makes
/// it smaller; no panoramas, which the reader finds out at their first bytes.
/// @return the files, empty when they cannot be written
QStringList noiseTour(RoamProject& project, const QString& folder, qint64 mib);

struct Medians
{
    double ours_s = 0.0, peer_s = 0.0;
    int rounds = 0;
};

/// Alternating rounds, since whoever comes second meets a disk that the first has warmed up; ends the program
/// when one of them fails.
/// @param prepare  called before each round, not timed
Medians race(const std::function<void()>& prepare, const std::function<bool()>& ours,
             const std::function<bool()>& peer);

/// The most memory that this process ever had, in MiB; 0 where the system does not tell.
double peakMemory_mib();

} // namespace filerace
