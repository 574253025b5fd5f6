// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/UploadCommand.h"

#include "companions/batch/IdleLinker.h"
#include "companions/batch/UploadRun.h"
#include "companions/batch/WorkTour.h"
#include "publish/AlbumUrl.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QUrl>

namespace {

Parsed<UploadOptions> wrong(const QString& error)
{
    return {std::nullopt, error};
}

QString problemOf(const publish::UploadEntries& entries)
{
    switch (publish::checkEntries(entries)) {
    case publish::EntryProblem::Account:
        return QStringLiteral("the account is no e-mail address that the service takes");
    case publish::EntryProblem::Password:
        return QStringLiteral("the password needs seven characters, among them a letter and a digit");
    case publish::EntryProblem::AlbumName:
        return QStringLiteral("the album name may hold letters, digits and \"_\", at most 256");
    case publish::EntryProblem::None:
        break;
    }
    return QString();
}

QString problemOf(const RoamProject& project)
{
    if (project.panoramas.empty()) return QStringLiteral("the tour has no panorama");
    for (const auto& node : project.panoramas)
        if (node->file_path.isEmpty())
            return QStringLiteral("panorama %1 of the description has no file in the tour")
                .arg(QString::fromLatin1(node->name()));
    return QString();
}

// The service wants bodies without a type of their own; the toolkit remarks on each of them.
void withoutTypeRemarks(QtMsgType, const QMessageLogContext&, const QString& text)
{
    if (!text.startsWith(QLatin1String("content-type missing"))) say(text);
}

} // namespace

Parsed<UploadOptions> parseUploadOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption work(QStringLiteral("work"), QString(), QStringLiteral("DIR"));
    const QCommandLineOption url(QStringLiteral("url"), QString(), QStringLiteral("URL"));
    const QCommandLineOption account(QStringLiteral("account"), QString(), QStringLiteral("A"));
    const QCommandLineOption album(QStringLiteral("album"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption patience(QStringLiteral("timeout"), QString(), QStringLiteral("SECONDS"));
    parser.addOptions({work, url, account, album, patience});
    if (!parser.parse(QStringList{QStringLiteral("upload")} + arguments)) return wrong(parser.errorText());
    if (parser.positionalArguments().size() != 1) return wrong(QStringLiteral("upload takes one TOUR.roa"));
    if (!parser.isSet(work)) return wrong(QStringLiteral("--work DIR is missing"));
    if (!parser.isSet(account)) return wrong(QStringLiteral("--account A is missing"));
    if (!parser.isSet(album)) return wrong(QStringLiteral("--album NAME is missing"));

    UploadOptions options;
    options.tour = QFileInfo(parser.positionalArguments().constFirst()).absoluteFilePath();
    options.work = QFileInfo(parser.value(work)).absoluteFilePath();
    options.url = parser.isSet(url) ? publish::asBaseUrl(parser.value(url)) : publish::albumUrl();
    const QUrl address(options.url);
    if (!QStringList{QStringLiteral("http"), QStringLiteral("https")}.contains(address.scheme()) ||
        address.host().isEmpty())
        return wrong(QStringLiteral("--url takes http://HOST/ or https://HOST/"));
    options.entries.account = parser.value(account);
    options.entries.album_name = parser.value(album);
    if (parser.isSet(patience)) {
        bool isNumber = false;
        options.patience_s = parser.value(patience).toInt(&isNumber);
        if (!isNumber || options.patience_s < 1 || options.patience_s > 86400)
            return wrong(QStringLiteral("--timeout takes seconds from 1 to 86400"));
    }
    return {options, QString()};
}

int runUpload(const UploadOptions& options)
{
    const QString entryProblem = problemOf(options.entries);
    if (!entryProblem.isEmpty()) return refused(entryProblem);
    IdleLinker linker;
    RoamProject project;
    const QString openProblem = openIntoWork(project, linker, options.tour, options.work);
    if (!openProblem.isEmpty()) return refused(openProblem);
    const QString tourProblem = problemOf(project);
    if (!tourProblem.isEmpty()) return refused(tourProblem);

    qInstallMessageHandler(withoutTypeRemarks);
    UploadRun run(project, options.url, options.patience_s);
    const QString problem = run.upload(options.entries);
    qInstallMessageHandler(nullptr);
    if (!problem.isEmpty()) return refused(problem);
    print(QStringLiteral("album %1\n").arg(project.cloud.album_id));
    return ExitDone;
}
