// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// tourwright-batch: import, link, save, open and upload a tour without a window.

#include "companions/batch/CommandLine.h"
#include "companions/batch/CompareCommand.h"
#include "companions/batch/LinkCommand.h"
#include "companions/batch/OpenCommand.h"
#include "companions/batch/Secret.h"
#include "companions/batch/UploadCommand.h"
#include "linking/NexomapLinker.h"
#include "project/LocalText.h"
#include "project/ProjectFolders.h"

#include <QCoreApplication>

namespace {

int link(const QStringList& arguments)
{
    const Parsed<LinkOptions> parsed = parseLinkOptions(arguments);
    if (!parsed.options) return wrongUsage(parsed.error);
    NexomapLinker linker(asFolder(QCoreApplication::applicationDirPath()));
    if (!linker.available()) return refused(linker.problem());
    const int status = runLink(*parsed.options, linker);
    linker.clean();
    return status;
}

int open(const QStringList& arguments)
{
    const Parsed<OpenOptions> parsed = parseOpenOptions(arguments);
    if (!parsed.options) return wrongUsage(parsed.error);
    NexomapLinker linker(asFolder(QCoreApplication::applicationDirPath()));
    if (!linker.available()) return refused(linker.problem());
    const int status = runOpen(*parsed.options, linker);
    linker.clean();
    return status;
}

int upload(const QStringList& arguments)
{
    Parsed<UploadOptions> parsed = parseUploadOptions(arguments);
    if (!parsed.options) return wrongUsage(parsed.error);
    parsed.options->entries.password = readSecret("TOURWRIGHT_PASSWORD", QStringLiteral("Password: "));
    return runUpload(*parsed.options);
}

int compare(const QStringList& arguments)
{
    const Parsed<CompareOptions> parsed = parseCompareOptions(arguments);
    return parsed.options ? runCompare(*parsed.options) : wrongUsage(parsed.error);
}

} // namespace

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty()) return wrongUsage(QStringLiteral("no command given"));
    if (arguments.contains(QLatin1String("--help")) || arguments.contains(QLatin1String("-h")))
        return printHelp();
    const QString command = arguments.takeFirst();
    if (command == QLatin1String("link")) return link(arguments);
    if (command == QLatin1String("open")) return open(arguments);
    if (command == QLatin1String("upload")) return upload(arguments);
    if (command == QLatin1String("compare")) return compare(arguments);
    return wrongUsage(QStringLiteral("there is no command \"%1\"").arg(command));
}
