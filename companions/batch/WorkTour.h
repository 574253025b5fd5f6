// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Opens a tour into a folder that stands for the program's.

#pragma once

#include "linking/OpenTour.h"

#include <QString>

/// Makes the folders in `work` where they are missing, empties its working folder and reads the tour there.
/// @param tour  full path; one that lies in the working folder is refused, for it would be deleted
/// @return what went wrong, as a sentence, or empty; an empty tour file is no error
QString openIntoWork(RoamProject& project, Linker& linker, const QString& tour, const QString& work);
