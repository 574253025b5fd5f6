// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Adds and deletes single links.

#pragma once

#include "linking/Linker.h"
#include "project/RoamProject.h"

enum class AddLinkOutcome
{
    NothingSelected, ///< one of the rows is negative or behind the list
    SamePanorama,
    AlreadyLinked, ///< a link joins these two, in either order
    NeedsEditor,   ///< project with lidar: the author picks pairs of points; nothing changed
    Added          ///< project without lidar: a link with the fixed defaults stands at the list's end
};

struct AddLinkResult
{
    AddLinkOutcome outcome = AddLinkOutcome::NothingSelected;
    PanoNode* panorama_0 = nullptr; ///< the one with the smaller identity text; set for NeedsEditor and Added
    PanoNode* panorama_1 = nullptr;
};

/// A link between two rows of the panorama list, in either order. Sets the modified flag when it adds one.
AddLinkResult addLinkByHand(RoamProject& project, int row, int otherRow);

/// Deletes the link of this row; with lidar in the library as well, which then relocates everything and is
/// read back: all links of the project are destroyed and made anew, so views let go of any link before. Sets
/// the modified flag.
/// @return false when there is no such row
bool deleteLink(RoamProject& project, Linker& linker, int row);

/// Whether selecting this link has the library draw its match picture: automatic links of a project with
/// lidar that has no map yet, both panoramas present.
bool hasMatchPicture(const RoamProject& project, const PanoLink& link);

/// Has the library draw the picture of the match into the working folder, where it is then the newest
/// picture.
/// @return false when this link has none; the library was not called
bool drawMatchPicture(const RoamProject& project, Linker& linker, const PanoLink& link);
