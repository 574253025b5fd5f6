// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/MergeGroup.h"

namespace nexomap {

void mergeGroup(Model&, const Workplace&, const MergeOptions&)
{
    throw Failure(NEXOMAP_CANNOT_SOLVE, "merging is not there yet");
}

} // namespace nexomap
