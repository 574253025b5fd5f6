// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/ProjectFolders.h"

#include <QDir>

QString asFolder(const QString& path)
{
    return path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
}

QString previewFolder(const ProjectFolders& folders)
{
    return folders.working + QStringLiteral("Preview/");
}

ProjectPlaces makeProjectFolders(const QString& applicationFolder, const QString& localeName)
{
    ProjectPlaces places;
    places.chinese = localeName == QLatin1String("zh_CN");

    ProjectFolders& folders = places.folders;
    folders.application = asFolder(applicationFolder);
    folders.working = folders.application + QStringLiteral("Tmp/");
    folders.output = folders.application + QStringLiteral("Out/");
    folders.viewer = folders.application +
                     (places.chinese ? QStringLiteral(u"望远阁.exe") : QStringLiteral("Lumiscope.exe"));
    places.translation_file = folders.application + (places.chinese ? QStringLiteral("tourwright_zh.qm")
                                                                    : QStringLiteral("tourwright_en.qm"));

    for (const QString& folder : {folders.working, previewFolder(folders), folders.output})
        QDir().mkpath(folder);
    return places;
}
