// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/LinkCommand.h"

#include "companions/batch/PairsFile.h"
#include "companions/batch/Report.h"
#include "companions/batch/Stopwatch.h"
#include "linking/AutoLink.h"
#include "linking/ImportPanoramas.h"
#include "linking/map/GenerateMap.h"
#include "linking/ReadBack.h"
#include "project/ProjectFolders.h"
#include "project/SaveTour.h"
#include "project/WorkingFolder.h"

#include <QFileInfo>
#include <QLocale>

namespace {

bool liesIn(const QString& path, const QString& folder)
{
    return QFileInfo(QFileInfo(path).canonicalPath()) == QFileInfo(QFileInfo(folder).canonicalFilePath());
}

void startEmpty(RoamProject& project, Linker& linker)
{
    linker.init(project.folders.working);
    clearProject(project);
    linker.reset();
    clearWorkingFolder(project.folders.working);
}

void tellWhatWasLeftOut(const ImportResult& result)
{
    using Fate = ImportResult::Fate;
    for (const ImportResult::File& file : result.files) {
        if (file.fate == Fate::Unreadable)
            say(QStringLiteral("%1: refused, status %2").arg(file.path).arg(file.status));
        if (file.fate == Fate::Duplicate) say(QStringLiteral("%1: is in the tour already").arg(file.path));
        if (file.fate == Fate::NoThumbnail)
            say(QStringLiteral("%1: refused, its smallest tile cannot be decoded").arg(file.path));
        if (file.fate == Fate::LidarMismatch)
            say(QStringLiteral("%1: refused, either all panoramas of a tour have lidar or none")
                    .arg(file.path));
    }
}

void linkAll(RoamProject& project, Linker& linker, Stopwatch& watch)
{
    linkAutomatically(project, linker, [&](const AutoLinkStep& step) {
        if (step.kind == AutoLinkStep::Kind::PanoramaAdded) watch.lap(QStringLiteral("add"));
        if (step.kind == AutoLinkStep::Kind::Finished) watch.lap(QStringLiteral("solve"));
        showProgress(QStringLiteral("Linking"), step.progress);
    });
    watch.lap(QStringLiteral("read_back"));
    const int count = static_cast<int>(project.panoramas.size());
    if (count >= 2 && linker.nodeCount() < count)
        say(QStringLiteral("the linking library took %1 of %2 panoramas").arg(linker.nodeCount()).arg(count));
}

/// @return what is wrong, or empty
QString linkByHand(const LinkOptions& options, RoamProject& project, Linker& linker)
{
    const PairsFile pairs = readPairs(options.pairs, project);
    if (!pairs.error.isEmpty()) return pairs.error;
    for (const HandMadeLink& link : pairs.links) {
        const int status = link.handTo(linker);
        if (status < 0)
            return QStringLiteral("%1: %2 and %3 cannot be linked, status %4")
                .arg(options.pairs, QString::fromLatin1(link.name_0), QString::fromLatin1(link.name_1))
                .arg(status);
    }
    linker.relocateAll();
    readBackAfterEdit(project, linker);
    return QString();
}

/// @return what is wrong, or empty
QString makeMap(const MapOptions& options, RoamProject& project, Linker& linker, Stopwatch& watch)
{
    if (!isConnected(project, linker))
        say(QStringLiteral("some panoramas are not connected: the map shows the largest group"));
    project.map_options = options;
    const int status = generateMap(project, linker, [&](const MapStep& step) {
        if (step.kind == MapStep::Kind::LinksCompleted) watch.lap(QStringLiteral("complete_links"));
        if (step.kind == MapStep::Kind::Merged) watch.lap(QStringLiteral("merge"));
        if (step.kind == MapStep::Kind::Finished) watch.lap(QStringLiteral("map_files"));
        showProgress(QStringLiteral("Map"), step.progress);
    });
    return status < 0 ? QStringLiteral("the map cannot be made, status %1").arg(status) : QString();
}

} // namespace

int runLink(const LinkOptions& options, Linker& linker)
{
    Stopwatch watch;
    RoamProject project;
    project.folders = makeProjectFolders(options.work, QLocale::system().name()).folders;
    if (!QFileInfo(project.folders.working).isWritable())
        return refused(QStringLiteral("%1 cannot be written to").arg(project.folders.working));
    for (const QString& path : options.panoramas)
        if (liesIn(path, project.folders.working))
            return refused(QStringLiteral("%1 lies in the working folder, which is emptied first").arg(path));
    startEmpty(project, linker);

    tellWhatWasLeftOut(importPanoramas(project, options.panoramas));
    watch.lap(QStringLiteral("import"));
    if (project.panoramas.empty()) return refused(QStringLiteral("none of the panoramas can be used"));
    if (options.map && !project.lidar) return refused(QStringLiteral("--map wants panoramas with lidar"));
    if (options.entry >= static_cast<int>(project.panoramas.size()))
        return refused(QStringLiteral("--entry %1: the tour has %2 panoramas, counted from 0")
                           .arg(options.entry)
                           .arg(project.panoramas.size()));

    linkAll(project, linker, watch);
    if (!options.pairs.isEmpty()) {
        const QString problem = linkByHand(options, project, linker);
        if (!problem.isEmpty()) return refused(problem);
        watch.lap(QStringLiteral("pairs"));
    }

    // A tour without its map is better than none: it is saved whatever becomes of the map.
    const QString mapProblem = options.map ? makeMap(*options.map, project, linker, watch) : QString();

    const SaveResult saved = saveTour(project, options.entry, options.out);
    if (!saved) return refused(QStringLiteral("%1 cannot be saved: %2").arg(options.out, saved.detail));
    watch.lap(QStringLiteral("save"));

    QString problem = mapProblem;
    if (!options.report.isEmpty()) {
        const QString unwritten = writeReport(options.report, project, linker, watch);
        if (problem.isEmpty()) problem = unwritten;
    }
    return problem.isEmpty() ? ExitDone : refused(problem);
}
