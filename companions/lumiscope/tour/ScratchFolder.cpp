// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/tour/ScratchFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace lumiscope {

namespace {

constexpr qint64 kBetweenFolderAndLock_s = 600; ///< far more than a process needs from one to the other

QString lockOf(const QString& folder)
{
    return folder + QStringLiteral("/lock");
}

bool isLeftOver(const QFileInfo& folder)
{
    const QString lockPath = lockOf(folder.filePath());
    if (!QFileInfo::exists(lockPath))
        return folder.lastModified().secsTo(QDateTime::currentDateTime()) > kBetweenFolderAndLock_s;
    QLockFile lock(lockPath);
    lock.setStaleLockTime(0); // a visitor may stay for hours: only the death of the process counts
    return lock.tryLock();
}

void removeLeftOvers()
{
    const auto folders = QDir(QDir::tempPath())
                             .entryInfoList({QStringLiteral("lumiscope-*")},
                                            QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo& folder : folders)
        if (folder.isWritable() && isLeftOver(folder)) QDir(folder.filePath()).removeRecursively();
}

QString pattern()
{
    removeLeftOvers();
    return QDir::tempPath() + QStringLiteral("/lumiscope-XXXXXX");
}

} // namespace

ScratchFolder::ScratchFolder()
    : m_folder(pattern())
{
    if (!m_folder.isValid()) return;
    m_lock = std::make_unique<QLockFile>(lockOf(m_folder.path()));
    m_lock->setStaleLockTime(0);
    m_lock->tryLock();
}

ScratchFolder::~ScratchFolder()
{
    if (m_lock) m_lock->unlock();
}

} // namespace lumiscope
