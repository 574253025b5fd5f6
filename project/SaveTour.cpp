// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/SaveTour.h"

#include "project/CheckedFile.h"
#include "project/SetAside.h"
#include "project/TourContainer.h"
#include "project/TourXml.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace {

QString say(const char* text)
{
    return QCoreApplication::translate("SaveTour", text);
}

struct Source
{
    tour::Kind kind;
    QString path;
};

/// All files of the tour, in the order of their records.
std::vector<Source> sourcesOf(const RoamProject& project)
{
    std::vector<Source> sources;
    for (const auto& node : project.panoramas)
        sources.push_back({tour::KindPanorama, node->file_path});
    for (const auto& link : project.links)
        for (const QString& path : {link->match_path_0, link->match_path_1})
            if (!path.isEmpty()) sources.push_back({tour::KindMatchData, path});
    for (const auto& node : project.panoramas)
        for (const PhotoHotspot& photo : node->photos)
            if (!photo.photo_path.isEmpty()) sources.push_back({tour::KindPhoto, photo.photo_path});
    std::vector<QString> plans;
    for (const auto& node : project.panoramas) {
        if (node->plan_src.isEmpty() || std::find(plans.begin(), plans.end(), node->plan_src) != plans.end())
            continue;
        plans.push_back(node->plan_src);
        sources.push_back({tour::KindPlan, node->plan_src});
    }
    return sources;
}

bool sameFile(const QString& one, const QString& other)
{
    const QString canonical = QFileInfo(one).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(other).canonicalFilePath();
}

bool writeHead(CheckedFile& file, tour::Kind kind, const QString& name, qint64 length)
{
    return file.write(tour::littleEndian16(kind) + tour::nameField(name) +
                      tour::littleEndian32(static_cast<qint32>(length)));
}

bool writeRecord(CheckedFile& file, const Source& record, QString* why)
{
    QFile source(record.path);
    // A bare name is what an opened tour left of a photo that was not in it: never a file that happens to lie
    // in the current folder.
    const QFileInfo info(record.path);
    if (info.isRelative() || !info.isFile() || !source.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        *why = say("%1 cannot be opened").arg(record.path);
        return false;
    }
    const qint64 length = source.size();
    if (length > tour::kLongestRecord) {
        *why = say("%1 is longer than a tour file can hold (2 GiB)").arg(record.path);
        return false;
    }
    if (writeHead(file, record.kind, tour::fileNameOf(record.path), length) && file.copyFrom(source, length))
        return true;
    *why = file.error();
    return false;
}

/// Bytes of the whole tour file, by what its sources say now.
qint64 lengthOf(const QByteArray& xml, const std::vector<Source>& sources)
{
    qint64 length = 2 + tour::kRecordHeadBytes + xml.size();
    for (const Source& source : sources)
        length += tour::kRecordHeadBytes + std::min(QFileInfo(source.path).size(), tour::kLongestRecord);
    return length;
}

bool writeTour(CheckedFile& file, RoamProject& project, int entrySelector, const std::vector<Source>& sources,
               QString* why)
{
    const QByteArray magic = tour::littleEndian16(tour::kMagic);
    const QByteArray xml = tourxml::build(project, entrySelector).toUtf8();
    bool written = file.reserve(lengthOf(xml, sources)) &&
                   file.write(file.seekable() ? QByteArray(magic.size(), '\0') : magic) &&
                   writeHead(file, tour::KindXml, QLatin1String(tour::kXmlName), xml.size()) &&
                   file.write(xml);
    for (const Source& source : sources) {
        if (!written) break;
        if (!writeRecord(file, source, why)) return false;
    }
    if (written) written = file.flushToDisk();
    if (written && file.seekable()) written = file.writeAt(0, magic) && file.flushToDisk();
    if (!written) *why = file.error();
    return written;
}

} // namespace

SaveResult saveTour(RoamProject& project, int entrySelector, const QString& path)
{
    SetAside earlier(path);
    const std::vector<Source> sources = sourcesOf(project);
    for (const Source& source : sources)
        if (sameFile(source.path, earlier.target()) || sameFile(source.path, earlier.keptName()))
            return {SaveOutcome::CannotOpen, say("%1 is one of the tour's own files").arg(source.path)};

    if (!earlier.begin()) return {SaveOutcome::CannotOpen, earlier.error()};
    CheckedFile file(earlier.target());
    if (!file.open(earlier.isDevice() ? CheckedFile::Target::Existing : CheckedFile::Target::New)) {
        earlier.restore();
        return {SaveOutcome::CannotOpen, file.error()};
    }

    QString why;
    bool done = project.panoramas.empty() ? file.flushToDisk()
                                          : writeTour(file, project, entrySelector, sources, &why);
    const bool closed = file.close();
    if (!done || !closed) {
        if (!earlier.isDevice()) QFile::remove(earlier.target());
        return {SaveOutcome::Failed, why.isEmpty() ? file.error() : why};
    }
    if (earlier.permissions()) QFile::setPermissions(earlier.target(), earlier.permissions());
    flushFolderToDisk(QFileInfo(earlier.target()).absolutePath());
    earlier.discard();
    return {};
}
