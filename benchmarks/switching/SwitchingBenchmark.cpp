// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What choosing another panorama costs, from the row's change to the first frame that shows it, beside
// assembling its picture alone.

#include "app/Tourwright.h"
#include "benchmarks/assembly/TexturedPanorama.h"
#include "linking/ImportPanoramas.h"
#include "linking/NexomapLinker.h"
#include "linking/pictures/PanoramaPicture.h"
#include "project/LocalText.h"
#include "project/ProjectFolders.h"
#include "views/HotSpotWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSurfaceFormat>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

constexpr double kLimit = 1.4;
constexpr int kRounds = 12;

/// Chooses the files in the import dialog that the click opens, as soon as it is there.
void import(Tourwright& window, const QStringList& files)
{
    QTimer waiting;
    QObject::connect(&waiting, &QTimer::timeout, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        waiting.stop();
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
            ->setText(QLatin1Char('"') + files.join(QStringLiteral("\" \"")) + QLatin1Char('"'));
        QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
    });
    waiting.start(10);
    window.findChild<QPushButton*>(QStringLiteral("buttonAddPano"))->click();
}

/// Milliseconds from the row's change to the frame.
double switchTo(QListWidget& list, HotSpotWidget& view, int row)
{
    QElapsedTimer clock;
    clock.start();
    list.setCurrentRow(row);
    bool shown = false;
    const auto connection =
        QObject::connect(&view, &QOpenGLWidget::frameSwapped, &view, [&shown] { shown = true; });
    while (!shown)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QObject::disconnect(connection);
    return double(clock.nsecsElapsed()) / 1e6;
}

double assemble(const QString& file, QImage* picture)
{
    QElapsedTimer clock;
    clock.start();
    assemblePanorama(file, picture);
    return double(clock.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QSurfaceFormat format;
    format.setSwapInterval(0);
    QSurfaceFormat::setDefaultFormat(format);
    const QApplication application(argc, argv);

    const pnotest::TemporaryFolder panoramas;
    QStringList files;
    for (const char letter : {'A', 'B'}) {
        const std::string name = std::string("room ") + letter + ".pno";
        files << QString::fromStdString(writeTexturedPanorama(panoramas, name, std::string(14, letter)));
    }
    const QTemporaryDir folder;
    const ProjectFolders folders = makeProjectFolders(folder.path(), QStringLiteral("en_US")).folders;
    Tourwright window(std::make_unique<NexomapLinker>(folders.application));
    window.handOver(folders.application, folders.working, folders.output, folders.viewer);
    window.resize(1366, 768);
    window.show();
    import(window, files);
    window.findChild<QTabWidget*>(QStringLiteral("tabMain"))->setCurrentIndex(1);
    auto* list = window.findChild<QListWidget*>(QStringLiteral("listPano"));
    auto* view = window.findChild<HotSpotWidget*>(QStringLiteral("widgetPhoto"));
    if (!list || !view || list->count() != 2) {
        std::fprintf(stderr, "bench_switching: the window did not take the two panoramas\n");
        return 1;
    }
    // In turns, and the best of each: what else runs on the machine meets both and is left out.
    QImage picture(8192, 4096, QImage::Format_RGB888);
    picture.fill(Qt::white);
    double switching = std::numeric_limits<double>::max(), assembling = switching;
    switchTo(*list, *view, 1);
    for (int round = 0; round < kRounds; ++round) {
        switching = std::min(switching, switchTo(*list, *view, round % 2));
        assembling = std::min(assembling, assemble(files[round % 2], &picture));
    }
    std::printf("switching panoramas of 8192 x 4096: %.1f ms to the first frame, assembly alone %.1f ms, "
                "ratio %.2f (limit %.2f)\n",
                switching, assembling, switching / assembling, kLimit);
    return 0;
}
