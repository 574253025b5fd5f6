// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "upload": a saved tour to the album service.

#pragma once

#include "companions/batch/CommandLine.h"
#include "publish/EntryChecks.h"

#include <QString>
#include <QStringList>

struct UploadOptions
{
    QString tour; ///< full path
    QString work; ///< folder that stands for the program's
    QString url;  ///< base URL of the service, ends in "/"
    publish::UploadEntries entries;
    int patience_s = 300; ///< how long the service may be silent, and how long it may take to list a panorama
};

/// All but the password, which is no argument.
Parsed<UploadOptions> parseUploadOptions(const QStringList& arguments);

/// Prints the album's identifier. Ends with a reason, too, where the window's upload would stand still.
/// @return an ExitStatus
int runUpload(const UploadOptions& options);
