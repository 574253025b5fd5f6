// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/OpenCommand.h"

#include "companions/batch/Report.h"
#include "companions/batch/Stopwatch.h"
#include "companions/batch/WorkTour.h"
#include "project/SaveTour.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace {

Parsed<OpenOptions> wrong(const QString& error)
{
    return {std::nullopt, error};
}

void tellWhatIsMissing(const RoamProject& project, Linker& linker)
{
    for (const auto& node : project.panoramas)
        if (node->file_path.isEmpty())
            say(QStringLiteral("panorama %1 of the description has no file in the tour").arg(node->id));
    const int count = static_cast<int>(project.panoramas.size());
    if (linker.nodeCount() < count)
        say(QStringLiteral("the linking library took %1 of %2 panoramas").arg(linker.nodeCount()).arg(count));
}

} // namespace

Parsed<OpenOptions> parseOpenOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption work(QStringLiteral("work"), QString(), QStringLiteral("DIR"));
    const QCommandLineOption report(QStringLiteral("report"), QString(), QStringLiteral("R.json"));
    const QCommandLineOption out(QStringLiteral("out"), QString(), QStringLiteral("COPY.roa"));
    parser.addOptions({work, report, out});
    if (!parser.parse(QStringList{QStringLiteral("open")} + arguments)) return wrong(parser.errorText());
    if (parser.positionalArguments().size() != 1) return wrong(QStringLiteral("open takes one TOUR.roa"));
    if (!parser.isSet(work)) return wrong(QStringLiteral("--work DIR is missing"));

    const auto fullPath = [](const QString& path) { return QFileInfo(path).absoluteFilePath(); };
    OpenOptions options;
    options.tour = fullPath(parser.positionalArguments().constFirst());
    options.work = fullPath(parser.value(work));
    if (parser.isSet(report)) options.report = fullPath(parser.value(report));
    if (parser.isSet(out)) options.out = fullPath(parser.value(out));
    return {options, QString()};
}

int runOpen(const OpenOptions& options, Linker& linker)
{
    Stopwatch watch;
    RoamProject project;
    const QString problem = openIntoWork(project, linker, options.tour, options.work);
    if (!problem.isEmpty()) return refused(problem);
    if (project.panoramas.empty()) say(QStringLiteral("%1 is empty").arg(options.tour));
    tellWhatIsMissing(project, linker);
    watch.lap(QStringLiteral("open"));

    if (!options.out.isEmpty()) {
        const SaveResult saved = saveTour(project, project.entry_index, options.out);
        if (!saved) return refused(QStringLiteral("%1 cannot be saved: %2").arg(options.out, saved.detail));
        watch.lap(QStringLiteral("save"));
    }
    if (options.report.isEmpty()) return ExitDone;
    const QString unwritten = writeReport(options.report, project, linker, watch);
    return unwritten.isEmpty() ? ExitDone : refused(unwritten);
}
