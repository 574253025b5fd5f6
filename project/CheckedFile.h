// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A file being written in which no failure goes unnoticed: each call says whether its bytes arrived.

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// Writes unbuffered, so that a full disk shows at the write that meets it. (The toolkit's safe-save class
/// reports success on a full disk in the version that we build against.) Errors leave a text in `error`.
class CheckedFile
{
public:
    enum class Target
    {
        New,     ///< must not exist yet
        Existing ///< a device or pipe that stands there
    };

    explicit CheckedFile(const QString& path);

    [[nodiscard]] bool open(Target target);

    /// Asks for room for `bytes` bytes in all, so that a disk that is too small shows before anything is
    /// copied and the file lies in one piece. True where the system cannot tell.
    [[nodiscard]] bool reserve(qint64 bytes);
    [[nodiscard]] bool write(const QByteArray& bytes);

    /// Copies `bytes` bytes from `source`'s position, without holding the file in memory. Fails when the
    /// source ends earlier.
    [[nodiscard]] bool copyFrom(QFile& source, qint64 bytes);

    /// Writes over what stands at `position`; later writes go on after it. Not for devices and pipes.
    [[nodiscard]] bool writeAt(qint64 position, const QByteArray& bytes);

    /// Brings everything written so far to the disk itself. True for devices and pipes, which have none.
    [[nodiscard]] bool flushToDisk();
    [[nodiscard]] bool close();

    bool seekable() const { return !m_file.isSequential() && m_regular; }
    QString error() const { return m_error; }

private:
    bool fail(const QString& reason);

    QFile m_file;
    bool m_regular = true;
    QString m_error;
};

/// Brings a folder's entries to the disk, where the system has a call for it.
void flushFolderToDisk(const QString& folder);
