// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The rows of the link table as plain values.

#pragma once

#include "project/RoamProject.h"

#include <QString>
#include <vector>

struct LinkRow
{
    bool automatic = false; ///< "Yes" in the first column: not made by hand
    QString panorama_0;     ///< base name; empty when the panorama is not in the project
    QString panorama_1;
};

/// One row per link, in list order.
std::vector<LinkRow> linkRows(const RoamProject& project);

/// The panoramas of a link, for showing it.
struct LinkEnds
{
    PanoNode* panorama_0 = nullptr; ///< null when it is not in the project
    PanoNode* panorama_1 = nullptr;

    bool complete() const { return panorama_0 && panorama_1; }
};
LinkEnds endsOf(const RoamProject& project, const PanoLink& link);
