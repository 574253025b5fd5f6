// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Takes the pictures of the viewer: opens a tour, walks on and saves what the window shows.

#include "companions/lumiscope/window/ViewerWindow.h"
#include "companions/lumiscope/window/WalkView.h"
#include "project/LocalText.h"
#include "project/ProjectFolders.h"

#include <QApplication>
#include <QScreen>
#include <QTest>
#include <QTextStream>

namespace {

constexpr int kUsage = 2;
constexpr int kPatience_ms = 60000;

bool savePicture(QWidget& window, const QString& path)
{
    QTest::qWait(500); // blends and repaints
    const bool saved = window.screen()->grabWindow(window.winId()).save(path);
    QTextStream(saved ? stdout : stderr) << (saved ? "" : "cannot write ") << path << '\n';
    return saved;
}

} // namespace

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        QTextStream(stderr)
            << "usage: viewer-pictures TOUR.roa FOLDER\n"
               "Opens the tour in the viewer and saves pictures of its window in the folder.\n";
        return kUsage;
    }
    lumiscope::ViewerWindow window(asFolder(QCoreApplication::applicationDirPath()));
    window.resize(1280, 800);
    window.open(arguments[1]);
    window.show();
    auto* view = window.findChild<lumiscope::WalkView*>();
    const auto sharp = [&](int station) {
        return view->visitor() && view->visitor()->station() == station && !view->isWalking() &&
               view->shownWidth(station) == lumiscope::kSharpWidth;
    };
    const QString folder = asFolder(arguments[2]);
    if (!QTest::qWaitFor([&] { return sharp(window.tour().entry); }, kPatience_ms)) return 1;
    QTest::keyClick(view, Qt::Key_Down);
    bool good = savePicture(window, folder + QStringLiteral("viewer-entry.png"));
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(view, Qt::Key_Right);
    QTest::keyClick(view, Qt::Key_Return);
    if (!QTest::qWaitFor([&] { return !sharp(window.tour().entry); }, kPatience_ms)) return 1;
    if (!QTest::qWaitFor([&] { return sharp(view->visitor()->station()); }, kPatience_ms)) return 1;
    good = savePicture(window, folder + QStringLiteral("viewer-walked.png")) && good;
    return good ? 0 : 1;
}
