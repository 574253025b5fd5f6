// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The viewer's window on a tour, driven by mouse and keys as a visitor does it.

#pragma once

#include "companions/lumiscope/window/MapPanel.h"
#include "companions/lumiscope/window/ViewerWindow.h"
#include "companions/lumiscope/window/WalkView.h"
#include "tests/lumiscope/support/WorldTour.h"

#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

class ViewerTest : public testing::Test
{
protected:
    static constexpr int kPatience_ms = 60000;

    /// Opens a tour and waits until its entry panorama is seen.
    void open(const QString& tour);
    /// Opens what may be no tour, and waits for nothing.
    void openAnything(const QString& path);

    template <typename Condition>
    static bool waitFor(Condition done)
    {
        return QTest::qWaitFor(done, kPatience_ms);
    }

    const lumiscope::Visitor& visitor() const { return *view->visitor(); }
    int station() const { return visitor().station(); }
    double heading() const { return visitor().look().heading; }
    /// Waits until the walk to the station is over.
    bool arrivesAt(int station) const;

    template <typename Widget>
    Widget* find(const char* name) const
    {
        auto* widget = window->findChild<Widget*>(QLatin1String(name));
        if (!widget) qFatal("no control named %s", name);
        return widget;
    }
    QString textOf(const char* label) const { return find<QLabel>(label)->text(); }
    bool shown(const char* name) const { return find<QWidget>(name)->isVisible(); }

    void key(Qt::Key key, int times = 1) const;
    void click(QWidget* widget, QPoint at) const;
    void move(QPoint at) const;
    void wheel(QWidget* widget, int delta) const;

    /// Where a direction of the present panorama stands in the view.
    QPoint pixelOf(double azimuth, double polar) const;
    QPoint pixelOf(const lumiscope::Neighbour& neighbour) const;
    /// What the view shows at a pixel.
    QColor colourAt(QPoint at) const { return QColor(view->grabFramebuffer().pixel(at)); }

    WorldTour made;
    std::unique_ptr<lumiscope::ViewerWindow> window;
    lumiscope::WalkView* view = nullptr;
};

/// Whether two colours are the same up to what compression makes of them.
testing::AssertionResult sameColour(const QColor& a, const QColor& b, int tolerance = 12);
