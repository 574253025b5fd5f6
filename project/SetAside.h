// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Keeps the earlier file of a name safe, under that name with "~" added, while a new one is written.

#pragma once

#include <QFile>
#include <QString>

/// The last whole version of a file survives whatever happens during a save: under its own name, or under
/// NAME + "~" from `begin` until `discard`. What an earlier, killed save left behind is sorted out first:
///
/// | NAME        | NAME~            | begin does                                                       |
/// |-------------|------------------|------------------------------------------------------------------|
/// | whole       | any file or none | NAME becomes NAME~ (the older NAME~ is superseded)               |
/// | half        | whole            | half-written NAME goes; NAME~ stays, `discard` removes it        |
/// | half        | half or none     | NAME becomes NAME~: nobody knows what it is, so it is kept       |
/// | none        | any              | nothing; NAME~ is the last good version and is left alone        |
/// | device, pipe| any              | nothing: they hold no earlier version                            |
///
/// Whole means `tour::isWhole`.
class SetAside
{
public:
    /// A symbolic link is followed: the file that it names is replaced, the link stays.
    explicit SetAside(const QString& path);

    /// @return false when the name cannot be written over: a folder, a write-protected file, a folder that
    /// takes
    ///         no new names; nothing has changed then, and `error` says why
    [[nodiscard]] bool begin();

    /// The new file could not be made: gives the earlier one its name back.
    void restore();

    /// The new file is whole and on the disk: the earlier one is needed no longer.
    void discard();

    QString target() const { return m_target; } ///< the file to write, after following links
    QString keptName() const { return m_target + QLatin1Char('~'); }
    bool isDevice() const { return m_device; }
    QFile::Permissions permissions() const { return m_permissions; } ///< of the earlier file; 0 without one
    QString error() const { return m_error; }

private:
    QString m_target;
    bool m_device = false;
    bool m_renamed = false;  ///< this save gave the earlier file its other name
    bool m_obsolete = false; ///< NAME~ is what the new file replaces
    QFile::Permissions m_permissions;
    QString m_error;
};
