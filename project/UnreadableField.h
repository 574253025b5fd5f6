// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Finds what would keep a saved tour from being opened again: the format escapes hardly anything.

#pragma once

#include "project/RoamProject.h"

#include <QString>

#include <optional>

struct UnreadableField
{
    QString field; ///< what the author knows it as, in the language of the window
    QString text;  ///< what stands in it
};

/// The first field, in the order of the file, whose text would make the saved file unreadable or come back
/// changed: a quotation mark, "&" or "<" in a name or caption, a character that XML has no place for, a file
/// name that is none on every system. Saving works all the same; it is for a warning.
std::optional<UnreadableField> firstUnreadableField(const RoamProject& project);
