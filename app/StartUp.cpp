// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "app/StartUp.h"

#include "app/Messages.h"
#include "app/Tourwright.h"
#include "linking/NexomapLinker.h"
#include "project/ProjectFolders.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QLockFile>
#include <QTimer>
#include <QTranslator>

namespace {

// Loaded from exactly this file, without any search; lives as long as the process.
void installTranslation(const QString& path)
{
    auto* translator = new QTranslator;
    if (translator->load(path, QString(), QString(), QString()))
        QCoreApplication::installTranslator(translator);
}

// The toolkit's own words, on the buttons of message boxes and file dialogs. Installed first: the program's
// words go before them.
void installToolkitTranslation()
{
    auto* translator = new QTranslator;
    if (translator->load(QStringLiteral("qtbase_zh_CN"),
                         QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
}

// Two instances would delete each other's scratch files. A folder that cannot be written is no reason to
// stop.
bool folderIsFree(QLockFile& lock)
{
    lock.setStaleLockTime(0);
    return lock.tryLock() || lock.error() != QLockFile::LockFailedError;
}

} // namespace

int runTourwright(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Tourwright/Resources/Tourwright256.png")));

    const ProjectPlaces places =
        makeProjectFolders(QCoreApplication::applicationDirPath(), QLocale::system().name());
    const ProjectFolders& folders = places.folders;
    if (places.chinese) installToolkitTranslation();
    installTranslation(places.translation_file);

    QLockFile lock(folders.application + QStringLiteral("Tmp.lock"));
    if (!folderIsFree(lock)) {
        messages::folderInUse(nullptr, folders.application);
        return 1;
    }

    auto linker = std::make_unique<NexomapLinker>(folders.application);
    const QString problem = linker->problem();
    Tourwright window(std::move(linker));
    window.handOver(folders.application, folders.working, folders.output, folders.viewer);
    window.showMaximized();
    if (!problem.isEmpty())
        QTimer::singleShot(0, &window, [&] { messages::linkingLibraryMissing(&window, problem); });
    return QApplication::exec();
}
