// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/MatchFiles.h"

#include "project/WorkingFolder.h"

#include <algorithm>

QString matchKey(const QByteArray& name_0, const QByteArray& name_1)
{
    return QString::fromLatin1(std::min(name_0, name_1)) + QLatin1Char('_') +
           QString::fromLatin1(std::max(name_0, name_1));
}

QString newestMatchPicture(const RoamProject& project)
{
    return project.lidar ? newestFile(project.folders.working, QStringLiteral("*.png")) : QString();
}
