// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/UnpackFolder.h"

#include "project/RecordName.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

QString say(const char* text)
{
    return QCoreApplication::translate("OpenTour", text);
}

/// Under what a name is remembered: names that this system takes for one are one here, too.
QString keyOf(const QString& name)
{
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
#else
    return name;
#endif
}

bool isThere(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace

UnpackFolder::UnpackFolder(const QString& folder, const QString& tourFile)
    : m_folder(folder)
    , m_tourFile(QFileInfo(tourFile).canonicalFilePath())
{}

bool UnpackFolder::unpack(TourReader& tour, QString* path, QString* error)
{
    *path = m_folder + tour.name();
    if (!tour::isBareName(tour.name())) {
        *error = say(QT_TRANSLATE_NOOP("OpenTour", "the name of a file inside it is not a bare file name"));
        return false;
    }
    if (m_occupied.contains(keyOf(tour.name())) || isTourFile(*path)) return writeBeside(tour, path, error);
    m_occupied.insert(keyOf(tour.name()), Occupied());
    return write(tour, *path, error);
}

bool UnpackFolder::write(TourReader& tour, const QString& path, QString* error)
{
    QFile file(path);
    if (isThere(path) && !file.remove()) {
        *error = file.errorString();
        return false;
    }
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        *error = file.errorString();
        return false;
    }
    const bool copied = tour.copyTo(file, error);
    file.close();
    if (copied && file.error() == QFileDevice::NoError) return true;
    if (error->isEmpty()) *error = file.errorString();
    file.remove();
    return false;
}

bool UnpackFolder::writeBeside(TourReader& tour, QString* path, QString* error)
{
    Occupied& earlier = m_occupied[keyOf(tour.name())];
    if (earlier.paths.isEmpty() && !isTourFile(*path)) {
        QFile first(*path);
        if (!first.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            *error = first.errorString();
            return false;
        }
        earlier.paths.insert(digestOf(first, first.size()), *path);
    }
    const QByteArray digest = tour.digest();
    const auto same = earlier.paths.constFind(digest);
    if (same != earlier.paths.constEnd()) {
        *path = same.value();
        return true;
    }
    *path = freePath(tour.name(), &earlier.versions);
    if (!write(tour, *path, error)) return false;
    earlier.paths.insert(digest, *path);
    // A later record may have this very name.
    m_occupied[keyOf(tour::fileNameOf(*path))].paths.insert(digest, *path);
    return true;
}

QString UnpackFolder::freePath(const QString& name, int* version) const
{
    QString path;
    do
        path = QStringLiteral("%1%2_%3").arg(m_folder).arg(++*version).arg(name);
    while (isThere(path));
    return path;
}

bool UnpackFolder::isTourFile(const QString& path) const
{
    return !m_tourFile.isEmpty() && QFileInfo(path).canonicalFilePath() == m_tourFile;
}
