// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Takes a panorama out of the project, with the links that lead to it.

#pragma once

#include "project/RoamProject.h"

/// Whether the link starts or ends at this panorama.
bool joins(const PanoLink& link, quint64 id);

/// Removes the panorama of this row and every link that joins it; other links stay. Views that show the
/// panorama or one of those links let go of it before. Sets the modified flag.
/// @return number of links removed; -1 when there is no such row, and nothing changed
int removePanorama(RoamProject& project, int row);
