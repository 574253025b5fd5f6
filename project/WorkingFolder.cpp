// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/WorkingFolder.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

bool isScratchFile(const QString& name)
{
    static const QLatin1String kEndings[] = {
        QLatin1String(".jpg"), QLatin1String(".pno"), QLatin1String(".dat"), QLatin1String(".png"),
        QLatin1String(".cld"), QLatin1String(".pts"), QLatin1String(".tmp"), QLatin1String(".bin")};
    return std::any_of(std::begin(kEndings), std::end(kEndings),
                       [&](QLatin1String ending) { return name.endsWith(ending, Qt::CaseSensitive); });
}

} // namespace

void clearWorkingFolder(const QString& folder)
{
    const QDir::Filters files = QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot;
    for (const QString& name : QDir(folder).entryList(files, QDir::NoSort))
        if (isScratchFile(name)) QFile::remove(folder + name);

    const QString preview = folder + QStringLiteral("Preview/tmp.roa");
    QFile::remove(preview);
    // What a failed preview left set aside is scratch like the preview itself.
    QFile::remove(preview + QLatin1Char('~'));
}

QString newestFile(const QString& folder, const QString& pattern)
{
    const QFileInfoList files =
        QDir(folder).entryInfoList({pattern}, QDir::Files | QDir::NoDotAndDotDot, QDir::Time);
    return files.isEmpty() ? QString() : folder + files.first().fileName();
}
