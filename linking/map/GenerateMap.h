// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Completes the links, has the library merge the lidar into a map, and hands the map's files out.

#pragma once

#include "linking/Linker.h"
#include "project/RoamProject.h"

#include <functional>

/// A moment of the work at which the window can show how far it is.
struct MapStep
{
    enum class Kind
    {
        CompletingLinks, ///< the library is about to complete the links, which takes long
        LinksCompleted,  ///< show the newest picture; links of the project are about to be destroyed
        Merging, ///< the new links are read: refresh the link table; the merge comes next, the longest step
        Merged,  ///< show the newest picture and the newest cloud
        HandingOut, ///< poses and plans are read; files are about to be moved and the pose table written
        Finished
    };
    Kind kind = Kind::CompletingLinks;
    int progress = 0; ///< for the progress bar, 0 to 100
};

/// Whether one group holds every panorama of the project; otherwise a map shows only some of them.
bool isConnected(const RoamProject& project, Linker& linker);

/// Makes the map of the project's `map_options`; at the end the stage is `MapGenerated` and the project
/// modified, whatever the library's results: a merge that fails leaves fewer files.
/// @param atStep  called at each step, in this order; may process events, as long as no other command can run
/// @return what the merge returned: 0, or a negative status
int generateMap(RoamProject& project, Linker& linker, const std::function<void(const MapStep&)>& atStep);
