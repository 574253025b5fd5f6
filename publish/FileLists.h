// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The files that an upload sends beside the panoramas.

#pragma once

#include "project/RoamProject.h"

#include <QStringList>

namespace publish {

/// Match data of every link in list order, level 0 before level 1; nothing is left out as a repetition.
QStringList modelFiles(const RoamProject& project);

/// Photos of all hotspots that have one, repetitions included, then every plan image not yet in the list.
QStringList photoFiles(const RoamProject& project);

} // namespace publish
