// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/Viewer.h"

#include "companions/lumiscope/window/ViewerWindow.h"
#include "project/ProjectFolders.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTextStream>
#include <QTranslator>

#include <cstring>

namespace {

constexpr int kWrongUsage = 2;
const QSize kWindowSize(1280, 800);

/// The viewer's words lie in the program itself, so that it can be passed on as one file.
void installTranslation(const QString& path)
{
    auto* translator = new QTranslator;
    if (translator->load(path)) QCoreApplication::installTranslator(translator);
}

void installTranslations()
{
    const bool chinese = QLocale::system().name() == QLatin1String("zh_CN");
    if (chinese)
        installTranslation(QLibraryInfo::location(QLibraryInfo::TranslationsPath) +
                           QStringLiteral("/qtbase_zh_CN.qm"));
    const QString language = chinese ? QStringLiteral("zh") : QStringLiteral("en");
    for (const char* whose : {"tourwright", "lumiscope"})
        installTranslation(QStringLiteral(":/translations/%1_%2.qm").arg(QLatin1String(whose), language));
}

bool asksForHelp(int argc, char** argv)
{
    return argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0);
}

QString usage()
{
    return QStringLiteral(
        "usage: Lumiscope.exe TOUR.roa\n"
        "Walks through the tour; the file is only read.\n"
        "\n"
        "mouse   drag to turn, wheel to zoom, click on a floor marker, a hotspot or a place of the map\n"
        "arrows  turn             + -     zoom\n"
        "Enter   go to the marker towards which you look\n"
        "finger  drag to turn, tap to walk; two fingers zoom\n"
        "M       fold the map     F11     full screen     Escape  close, leave full screen\n");
}

} // namespace

int runViewer(int argc, char** argv)
{
    if (asksForHelp(argc, argv)) {
        QTextStream(stdout) << usage();
        return 0;
    }
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 2) {
        QTextStream(stderr) << usage();
        return kWrongUsage;
    }
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Tourwright/Resources/Tourwright256.png")));
    installTranslations();

    lumiscope::ViewerWindow window(asFolder(QCoreApplication::applicationDirPath()));
    window.resize(kWindowSize);
    if (arguments.size() == 2)
        window.open(QFileInfo(arguments[1]).absoluteFilePath());
    else
        window.showMessage(lumiscope::ViewerWindow::tr("Start the viewer with a tour file (.roa)."));
    window.showMaximized();
    return QApplication::exec();
}
