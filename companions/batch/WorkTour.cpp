// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/WorkTour.h"

#include "project/ProjectFolders.h"
#include "project/WorkingFolder.h"

#include <QFileInfo>
#include <QLocale>

namespace {

bool liesBelow(const QString& path, const QString& folder)
{
    const QString top = QFileInfo(folder).canonicalFilePath();
    return !top.isEmpty() && QFileInfo(path).canonicalFilePath().startsWith(top + QLatin1Char('/'));
}

} // namespace

QString openIntoWork(RoamProject& project, Linker& linker, const QString& tour, const QString& work)
{
    project.folders = makeProjectFolders(work, QLocale::system().name()).folders;
    const QString& folder = project.folders.working;
    if (!QFileInfo(folder).isWritable()) return QStringLiteral("%1 cannot be written to").arg(folder);
    if (liesBelow(tour, folder))
        return QStringLiteral("%1 lies in the working folder, which is emptied first").arg(tour);
    linker.init(folder);
    linker.reset();
    clearWorkingFolder(folder);

    project.file_path = tour;
    const OpenResult opened = openTour(project, linker, tour);
    if (opened.outcome == OpenOutcome::Failed)
        return QStringLiteral("%1 cannot be opened: %2").arg(opened.path, opened.detail);
    return QString();
}
