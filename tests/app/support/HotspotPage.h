// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A main window with two panoramas whose hotspot page is in front.

#pragma once

#include "tests/app/support/WindowTest.h"
#include "views/HotSpotWidget.h"

#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

class HotspotPage : public WindowTest
{
protected:
    enum Tab
    {
        PhotoTab,
        InfoTab
    };

    void SetUp() override;

    /// The first panorama, which is selected.
    PanoNode& node() { return *project().panoramas[0]; }
    HotSpotWidget* view() const { return find<HotSpotWidget>("widgetPhoto"); }

    void showTab(Tab tab) const;
    int currentTab() const;
    int currentRow(const char* table) const { return find<QTableWidget>(table)->currentRow(); }
    QString text(const char* line) const { return find<QLineEdit>(line)->text(); }
    QString content() const;

    /// Types at the end of the field.
    void typeInto(const char* line, const QString& text) const;
    void typeContent(const QString& text) const;

    /// Two photos and two texts apart from each other in the view, painted; the project counts as unmodified.
    void putHotspots();
    /// Selects the panorama anew, so that what a test put into it is shown.
    void showAgain();
    void deletePanoramas();

    /// Paints the view, which also settles where the icons are.
    void paint() const { view()->grabFramebuffer(); }
    /// Press and release in the view, through the window system.
    void press(QPoint at) const { drag(at, at); }
    /// From press to release, in several steps, the view painted after each.
    void drag(QPoint from, QPoint to) const;
};
