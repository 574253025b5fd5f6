// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Exit statuses and the words on standard error that all commands share.

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

enum ExitStatus
{
    ExitDone = 0,
    ExitFailed = 1, ///< the input was refused or the work failed
    ExitWrongUsage = 2
};

/// Options of a command, or what is wrong with them.
template <class Options>
struct Parsed
{
    std::optional<Options> options;
    QString error;
};

/// One line each on standard error.
void say(const QString& line);
/// On standard output, as it stands.
void print(const QString& text);
int refused(const QString& reason);     ///< gives ExitFailed
int wrongUsage(const QString& problem); ///< gives ExitWrongUsage

/// All commands and options on standard output; gives ExitDone.
int printHelp();

/// A percentage that overwrites itself on a terminal; nothing where standard error is a file or a pipe.
void showProgress(const QString& what, int percent);
