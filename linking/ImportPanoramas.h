// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Brings panorama files into the project.

#pragma once

#include "project/RoamProject.h"

#include <QString>
#include <QStringList>
#include <vector>

/// What became of the files of one import.
struct ImportResult
{
    enum class Fate
    {
        Added,
        Unreadable,    ///< `PnoFile::Open` refused it with `status`
        Duplicate,     ///< a panorama of this identity is in the project
        NoThumbnail,   ///< its smallest tile cannot be read or decoded
        LidarMismatch, ///< has lidar and the project none, or the other way round
    };
    struct File
    {
        QString path;
        Fate fate = Fate::Added;
        qint32 status = 0; ///< a `pno::Status`
    };
    enum class Mismatch
    {
        None,
        DroppedWithoutLidar, ///< the project has lidar
        DroppedWithLidar     ///< the project has none
    };

    std::vector<File> files; ///< one per path, in their order
    int added = 0;
    Mismatch mismatch = Mismatch::None; ///< to be told once per import
};

/// Adds the files in their order. Files that cannot be read, are there already or have no thumbnail are left
/// out silently. The first panorama of an empty project decides whether the project has lidar; later files
/// that differ are dropped. Sets the modified flag, except for an empty list of paths.
/// @param paths  full paths with "/"
ImportResult importPanoramas(RoamProject& project, const QStringList& paths);

/// The file name without folder and without its last four characters.
QString panoBaseName(const QString& path);
