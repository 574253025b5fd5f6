// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Copies the linking library's results into the project: where panoramas stand, which links there are.

#pragma once

#include "linking/Linker.h"
#include "project/RoamProject.h"

/// Poses and plan values of every panorama that the library names; names that are not in the project are
/// skipped. Plan values change only when the library gives a centre and a picture that is in the working
/// folder.
void readBackNodes(RoamProject& project, Linker& linker);

/// Replaces all links by the library's. Destroys every `PanoLink` of the project: whoever shows one has to
/// let go of it before.
void readBackMatches(RoamProject& project, Linker& linker);

/// What follows a change by hand, in this order: nodes, matches. The caller then shows the newest match
/// picture and refreshes the link table.
void readBackAfterEdit(RoamProject& project, Linker& linker);
