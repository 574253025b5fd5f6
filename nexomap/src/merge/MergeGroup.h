// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

struct MergeOptions
{
    bool indoor = false;    ///< take the ceiling away
    bool pts = false;       ///< also write the cloud as PTS text
    bool binary = false;    ///< also write it in binary form
    int density = 2;        ///< 0: 5 cm cells, 1: 2 cm, 2: 1 cm
    bool cloud_map = false; ///< the map is the coloured cloud; otherwise the black-and-white plan
};

/// Merges the range of the largest group into one cloud, writes the map's files and notes in every node of
/// the group where it stands on the plan.
/// @throws Failure(NEXOMAP_CANNOT_SOLVE) when no panorama of the group has range
void mergeGroup(Model& model, const Workplace& workplace, const MergeOptions& options);

} // namespace nexomap
