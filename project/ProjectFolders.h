// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Where the program's folders lie and what it picks by the system's language, without a window.

#pragma once

#include "project/RoamProject.h"

/// What start-up settles before the window is made.
struct ProjectPlaces
{
    ProjectFolders folders;
    QString translation_file; ///< full path of the .qm file; need not exist
    bool chinese = false;     ///< the locale's name is exactly "zh_CN"
};

/// Forms all paths and makes the working folder, its folder Preview and the output folder where they are
/// missing; what lies in them already stays. A folder that cannot be made is not reported: the file that is
/// to be written there will be.
/// @param applicationFolder  with or without "/" at its end
/// @param localeName         language and territory, such as "de_DE"
ProjectPlaces makeProjectFolders(const QString& applicationFolder, const QString& localeName);

/// `path` with "/" at its end, exactly one where there was none.
QString asFolder(const QString& path);

/// Where a preview is written: working folder + "Preview/".
QString previewFolder(const ProjectFolders& folders);
