// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Names of the files that the linking library leaves in the working folder for a match.

#pragma once

#include "project/RoamProject.h"

#include <QByteArray>
#include <QString>

/// The smaller of the two identity texts, "_", the larger, whichever of them is panorama 0.
QString matchKey(const QByteArray& name_0, const QByteArray& name_1);

/// The newest picture in the working folder, by modification time; empty without one, and always empty in a
/// project without lidar, whose matches have no pictures to show.
QString newestMatchPicture(const RoamProject& project);
