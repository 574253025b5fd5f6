// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/PointCloud.h"

#include <QString>

/// Reading and writing point-cloud files: header of 56 bytes, then nine planes of one byte a point.
namespace cloud {

/// Why a file is no cloud that can be shown.
enum class ReadStatus
{
    Ok,
    CannotOpen,
    HeaderCutShort, ///< fewer than 56 bytes
    SizesDiffer,    ///< points, bytes of the points and size of the file do not fit each other
    NoResolution,   ///< unit divisor 0 or above 100, or a refinement of 0: coordinates mean nothing
    GridTooLarge,   ///< more cells than the thinning may count, see `kMostGridCells`
    DataCutShort,   ///< the file ended or failed while it was read
    MemoryDoesNotSuffice,
};

/// Reads a whole file. Nothing is allocated before the file's size has confirmed the header's count.
/// @param path   absolute
/// @param cloud  untouched unless the result is `Ok`
[[nodiscard]] ReadStatus readPointCloud(const QString& path, PointCloud* cloud);

/// Replaces the file's content by this cloud: written beside the file, which takes its place only when it is
/// whole, or into the file itself where the folder takes no new file.
/// @return false when the file could not be written; it is then as it was, unless only the second way was
/// open
[[nodiscard]] bool writePointCloud(const QString& path, const PointCloud& cloud);

} // namespace cloud
