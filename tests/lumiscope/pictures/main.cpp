// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Takes the pictures of the viewer: opens a tour, walks on and saves what the window shows.

#include "companions/lumiscope/window/ViewerWindow.h"
#include "companions/lumiscope/window/WalkView.h"
#include "linking/NexomapLinker.h"
#include "linking/OpenTour.h"
#include "project/LocalText.h"
#include "project/ProjectFolders.h"
#include "project/SaveTour.h"

#include <QApplication>
#include <QFileInfo>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <cmath>

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

/// The tour with two hotspots at its entry, so that there is something to open; empty when it cannot be made.
QString withHotspots(const QString& tour, const QString& folder, const QString& programs)
{
    NexomapLinker linker(programs);
    RoamProject project;
    project.folders.working = folder;
    if (!openTour(project, linker, tour) || project.panoramas.empty()) return QString();
    PanoNode& entry = *project.panoramas[static_cast<std::size_t>(project.entry_index)];
    entry.infos.append({-0.12,
                        1.62,
                        QStringLiteral("Painting"),
                        QStringLiteral("Oil on canvas. The mountains were painted from memory."),
                        {}});
    PhotoHotspot photo;
    photo.sphere_x = 0.553;
    photo.sphere_y = 1.5;
    photo.caption = QStringLiteral("The hall clock");
    photo.photo_path = folder + QStringLiteral("clock.png");
    if (!entry.thumbnail.save(photo.photo_path)) return QString();
    entry.photos.append(photo);
    const QString made = folder + QFileInfo(tour).fileName();
    return saveTour(project, project.entry_index, made) ? made : QString();
}

/// Turns until the neighbour's marker is near the middle.
void lookAt(lumiscope::WalkView* view, const lumiscope::Neighbour& neighbour)
{
    for (int i = 0; i < 120; ++i) {
        const double left =
            std::remainder(neighbour.marker.azimuth - view->visitor()->camera().yaw, 2 * sphere::kPi);
        if (std::abs(left) < 0.06) return;
        QTest::keyClick(view, left > 0 ? Qt::Key_Left : Qt::Key_Right);
    }
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
    const QString programs = asFolder(QCoreApplication::applicationDirPath());
    const QTemporaryDir scratch;
    const QString tour =
        withHotspots(QFileInfo(arguments[1]).absoluteFilePath(), asFolder(scratch.path()), programs);
    if (tour.isEmpty()) return 1;
    lumiscope::ViewerWindow window(programs);
    window.resize(1024, 640);
    window.open(tour);
    window.show();
    auto* view = window.findChild<lumiscope::WalkView*>();
    const auto sharp = [&](int station) {
        return view->visitor() && view->visitor()->station() == station && !view->isWalking() &&
               view->shownWidth(station) == lumiscope::kSharpWidth;
    };
    const QString folder = asFolder(arguments[2]);
    if (!QTest::qWaitFor([&] { return sharp(window.tour().entry); }, kPatience_ms)) return 1;
    QTest::keyClick(view, Qt::Key_Down);
    lookAt(view, view->visitor()->here().neighbours.back());
    bool good = savePicture(window, folder + QStringLiteral("viewer.png"));
    QTest::keyClick(view, Qt::Key_Return);
    if (!QTest::qWaitFor([&] { return !sharp(window.tour().entry); }, kPatience_ms)) return 1;
    if (!QTest::qWaitFor([&] { return sharp(view->visitor()->station()); }, kPatience_ms)) return 1;
    lookAt(view, view->visitor()->here().neighbours.front());
    good = savePicture(window, folder + QStringLiteral("viewer-walked.png")) && good;
    return good ? 0 : 1;
}
