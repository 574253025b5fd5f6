// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which commands the author can give in the project's present state, as plain values.

#pragma once

#include "project/RoamProject.h"

/// Settled anew after every refresh of the panorama list and of the link table.
struct CommandState
{
    bool add_panorama = false;    ///< buttonAddPano
    bool delete_panorama = false; ///< buttonDelPano
    bool panorama = false;        ///< groupSetEntryPano, groupAddPhoto, groupAddInfo
    bool auto_link = false;       ///< buttonAutoGenLink
    bool add_link = false;        ///< groupAddLink
    bool generate_map = false;    ///< groupGenMap
    bool delete_link = false;     ///< buttonDelLink
};

/// @param panoramaRow  selected row of the panorama list, -1 for none
/// @param linkRow      selected row of the link table, -1 for none
CommandState commandState(const RoamProject& project, int panoramaRow, int linkRow);

/// The row to select after a list of `count` rows was filled anew: the remembered one, or the first when none
/// was selected, at most the last; -1 for an empty list.
int rowAfterRefresh(int remembered, int count);

/// A project without panoramas is not linked. Part of every refresh of the panorama list.
void settleStage(RoamProject& project);
