// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A folder of this process's own for the files of a tour, gone when it ends.

#pragma once

#include <QLockFile>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace lumiscope {

/// Under the system's temporary folder, readable by its owner only. A process that crashes leaves its folder;
/// the next one removes it.
class ScratchFolder
{
public:
    /// Removes what crashed processes left, then makes the folder.
    ScratchFolder();
    ~ScratchFolder();

    /// Whether the folder is there; otherwise `error` says why.
    bool isValid() const { return m_folder.isValid(); }
    QString error() const { return m_folder.errorString(); }

    /// Ends in "/".
    QString path() const { return m_folder.path() + QLatin1Char('/'); }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<QLockFile> m_lock; ///< held as long as this process lives
};

} // namespace lumiscope
