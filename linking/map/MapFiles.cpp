// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/map/MapFiles.h"

#include "project/WorkingFolder.h"

#include <QDir>
#include <QFile>

namespace {

struct Output
{
    QLatin1String ending;
    bool copied; ///< the working folder keeps it: the tour saves it, the plan view shows it
};

constexpr Output kOutputs[] = {{QLatin1String("-group.pts"), false},
                               {QLatin1String("-concise.pts"), false},
                               {QLatin1String("-color.png"), true},
                               {QLatin1String("-gray.png"), true},
                               {QLatin1String("-group.bin"), false}};

} // namespace

QString newestCloud(const RoamProject& project)
{
    return project.lidar ? newestFile(project.folders.working, QStringLiteral("*.tmp")) : QString();
}

void moveMapOutputs(const ProjectFolders& folders)
{
    const QStringList names = QDir(folders.working).entryList(QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names)
        for (const Output& output : kOutputs) {
            if (!name.endsWith(output.ending)) continue;
            // Neither of the two ever replaces a file.
            if (output.copied)
                QFile::copy(folders.working + name, folders.output + name);
            else
                QFile::rename(folders.working + name, folders.output + name);
        }
}
