// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Links all panoramas of the project automatically, step by step.

#pragma once

#include "linking/Linker.h"
#include "project/RoamProject.h"

#include <functional>

/// A moment between two calls of the library at which the window can show how far the work is.
struct AutoLinkStep
{
    enum class Kind
    {
        Started, ///< the library is reset; links of the project are about to be destroyed: clear the views
        LinksDropped,  ///< refresh the link table
        PanoramaAdded, ///< once per panorama
        Finished       ///< the library has solved; nothing is read back yet
    };
    Kind kind = Kind::Started;
    int panorama = -1;         ///< index of the panorama just added, otherwise -1
    int progress = 0;          ///< for the progress bar, 0 to 100
    bool show_picture = false; ///< show the newest match picture now
};

/// Resets the library, adds every panorama, finishes, reads nodes and matches back, sets the stage to linked
/// and the modified flag.
/// @param afterStep  called between the steps; may process events, as long as no other command can run
/// @return false when the project has fewer than two panoramas; nothing happened then
bool linkAutomatically(RoamProject& project, Linker& linker,
                       const std::function<void(const AutoLinkStep&)>& afterStep);
