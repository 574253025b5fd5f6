// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// How long a visitor waits: for the first frame of a tour, against assembling its entry panorama; and for the
// first frame after a step to a neighbour that was loaded ahead. Wants a display.
//   bench_viewer TOUR.roa

#include "companions/lumiscope/tour/ScratchFolder.h"
#include "companions/lumiscope/window/ViewerWindow.h"
#include "companions/lumiscope/window/WalkView.h"
#include "linking/pictures/PanoramaPicture.h"
#include "project/LocalText.h"
#include "project/ProjectFolders.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kVisits = 3;
constexpr int kRounds = 5;
constexpr int kPatience_ms = 120000;
constexpr double kLimitOfOpening = 1.5;
constexpr double kLimitOfWalk_ms = 100.0;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double milliseconds(const QElapsedTimer& timer)
{
    return static_cast<double>(timer.nsecsElapsed()) * 1e-6;
}

[[noreturn]] void give_up(const char* why)
{
    std::fprintf(stderr, "bench_viewer: %s\n", why);
    std::exit(1);
}

/// One opening of the tour, and a walk along its links.
class Visit
{
public:
    explicit Visit(const QString& tour)
        : m_window(asFolder(QCoreApplication::applicationDirPath()))
        , m_view(m_window.findChild<lumiscope::WalkView*>())
    {
        QObject::connect(m_view, &lumiscope::WalkView::painted,
                         [this](int station, int) { m_painted = station; });
        // The frame is on the screen when the window has swapped its buffers.
        QObject::connect(m_view, &QOpenGLWidget::frameSwapped, [this] { m_seen = m_painted; });
        m_window.resize(1280, 800);
        m_window.show();
        if (!QTest::qWaitForWindowExposed(&m_window)) give_up("no window");
        QElapsedTimer timer;
        timer.start();
        m_window.open(tour);
        if (!waitFor([this] { return m_seen >= 0; })) give_up("no first frame");
        opening_ms = milliseconds(timer);
        if (!waitFor([this] { return isSharp(m_window.tour().entry); })) give_up("no sharp frame");
        sharp_ms = milliseconds(timer);
    }

    const lumiscope::WalkTour& tour() const { return m_window.tour(); }

    /// To the first neighbour and on, each loaded ahead before the step.
    std::vector<double> walk()
    {
        std::vector<double> steps_ms;
        for (int i = 0; i < kRounds; ++i) {
            const int next = m_view->visitor()->here().neighbours.front().station;
            if (!waitFor([&] { return isSharp(next) && !m_view->isWalking(); })) give_up("not loaded ahead");
            QElapsedTimer timer;
            timer.start();
            m_window.goTo(next);
            if (!waitFor([&] { return m_seen == next; })) give_up("no frame after a step");
            steps_ms.push_back(milliseconds(timer));
        }
        return steps_ms;
    }

    /// Frames of a view at rest.
    std::vector<double> frames()
    {
        std::vector<double> frames_ms;
        for (int i = 0; i < kRounds; ++i) {
            m_seen = m_painted = -1;
            QElapsedTimer timer;
            timer.start();
            m_view->update();
            if (!waitFor([this] { return m_seen >= 0; })) give_up("no frame");
            frames_ms.push_back(milliseconds(timer));
        }
        return frames_ms;
    }

    double opening_ms = 0.0;
    double sharp_ms = 0.0;

private:
    bool isSharp(int station) const { return m_view->shownWidth(station) == lumiscope::kSharpWidth; }

    template <typename Condition>
    static bool waitFor(Condition done)
    {
        QElapsedTimer patience;
        patience.start();
        while (!done() && patience.elapsed() < kPatience_ms)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        return done();
    }

    lumiscope::ViewerWindow m_window;
    lumiscope::WalkView* m_view;
    int m_painted = -1;
    int m_seen = -1;
};

double assembly_ms(const QString& panorama)
{
    std::vector<double> rounds;
    for (int i = 0; i < kRounds; ++i) {
        QElapsedTimer timer;
        timer.start();
        QImage picture(lumiscope::kSharpWidth, lumiscope::kSharpWidth / 2, QImage::Format_RGB888);
        if (!assemblePanorama(panorama, &picture)) give_up("the entry panorama cannot be read");
        rounds.push_back(milliseconds(timer));
    }
    return median(rounds);
}

} // namespace

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: bench_viewer TOUR.roa\n");
        return 2;
    }
    std::vector<double> openings, sharps, steps, frames, assemblies;
    for (int round = 0; round < kVisits; ++round) {
        Visit visit(arguments[1]);
        openings.push_back(visit.opening_ms);
        sharps.push_back(visit.sharp_ms);
        for (const double step : visit.walk())
            steps.push_back(step);
        for (const double frame : visit.frames())
            frames.push_back(frame);
        const auto entry = static_cast<std::size_t>(visit.tour().entry);
        assemblies.push_back(assembly_ms(visit.tour().stations[entry].node.file_path));
    }
    const double assembly = median(assemblies);
    std::printf("first frame after %.0f ms, sharp after %.0f ms; assembling the entry panorama: %.0f ms\n",
                median(openings), median(sharps), assembly);
    std::printf("ratio %.2f (limit %.1f)\n", median(openings) / assembly, kLimitOfOpening);
    std::printf(
        "a step to a neighbour loaded ahead: %.0f ms to its first sharp frame, slowest of %zu: %.0f ms"
        " (limit %.0f); a frame at rest: %.0f ms\n",
        median(steps), steps.size(), *std::max_element(steps.begin(), steps.end()), kLimitOfWalk_ms,
        median(frames));
    return 0;
}
