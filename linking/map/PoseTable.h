// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The table of all panorama poses for other programs: comma-separated values, rows ended by CR LF.

#pragma once

#include "linking/Linker.h"
#include "project/RoamProject.h"

#include <QString>

#include <vector>

/// What the library says of every panorama, in its order; what it leaves untouched keeps its preset.
std::vector<PanoNodeParasB> allPoses(Linker& linker);

/// Identity of the first panorama, "_", of the last, "_", how many, ".csv".
/// @param poses  not empty
QString poseTableName(const std::vector<PanoNodeParasB>& poses);

/// Heading and one row for each panorama: number from 1, identity, base name of its file (empty when the
/// project has none of this identity), position in metres with 4 decimals, rotation row by row with 6, plan
/// pixel, plan picture. No field is quoted.
QString poseTable(const std::vector<PanoNodeParasB>& poses, const RoamProject& project);

/// Writes the table into the output folder, in the system's 8-bit encoding, over an earlier one. A file that
/// cannot be opened is passed over without a word, and so is a library that knows no panorama.
void writePoseTable(const RoamProject& project, Linker& linker);
