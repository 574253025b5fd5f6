// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The files that the linking library leaves in the working folder for a map.

#pragma once

#include "project/RoamProject.h"

#include <QString>

/// Full path of the cloud written last, by modification time; empty without one, and always empty in a
/// project without lidar. The plan picture to show is `newestMatchPicture`.
QString newestCloud(const RoamProject& project);

/// Hands the author what is meant for keeping: full and concise clouds go from the working folder to the
/// output folder, the colour and grey views from above are copied there. A file of the same name that is in
/// the output folder already stays, and the new one stays in the working folder.
void moveMapOutputs(const ProjectFolders& folders);
