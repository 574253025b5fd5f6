// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A main window in a folder of its own, with a recording linking library, driven by mouse and keys through
// the object names of its controls.

#pragma once

#include "app/Tourwright.h"
#include "tests/app/support/DialogRobot.h"
#include "tests/linking/support/RecordingLinker.h"

#include <QMenu>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

class WindowTest : public testing::Test
{
protected:
    /// The folder's name holds Chinese, a blank and an accent.
    WindowTest();
    /// With this linking library instead; `linker` is then null.
    explicit WindowTest(std::unique_ptr<Linker> library);
    ~WindowTest() override;
    /// What a test hung into the library goes with its body; the window outlives it.
    void TearDown() override;

    RoamProject& project() { return window->project(); }

    /// Full path of a file in the program's folder, in Tmp/ and beside both.
    QString inFolder(const QString& name) const { return folder + name; }
    QString inWorkingFolder(const QString& name) const { return folder + QStringLiteral("Tmp/") + name; }
    /// Writes a file with some content, its folder is there; returns its path.
    static QString writeFile(const QString& path, const QByteArray& content = "content");
    /// A panorama file whose smallest tile is a picture; the others decode to nothing.
    QString makePano(const QString& fileName, const char* identity, bool lidar = false) const;
    /// The same with a picture in every tile.
    QString makePictureOfPlaces(const QString& fileName, const char* identity, bool lidar = false) const;

    /// The control of this object name; the test fails where there is none.
    template <typename Widget>
    Widget* find(const char* name) const
    {
        auto* widget = window->findChild<Widget*>(QLatin1String(name));
        if (!widget) qFatal("no control named %s", name);
        return widget;
    }
    void click(const char* button) const;
    /// Opens the menu with the mouse and clicks on its action.
    void choose(const char* menu, const char* action) const;
    /// Clicks on a row of the list or of a table.
    void clickListRow(int row) const;
    void clickTableRow(const char* table, int row) const;
    /// Chooses an entry of a combo box with the keyboard.
    void chooseEntry(const char* combo, int index) const;
    bool enabled(const char* name) const { return find<QWidget>(name)->isEnabled(); }

    /// Imports these files through the button and its dialog.
    void import(const QStringList& files);
    /// Imports `count` panoramas named room 1.pno, room 2.pno, ... with the identities AAAAAAAAAAAAAA,
    /// BBBBBBBBBBBBBB, ...
    void importRooms(int count, bool lidar = false);
    static const char* identity(int room);
    /// What the table shows, row by row, cells separated by "|".
    QStringList rows(const char* table) const;

private:
    void show(std::unique_ptr<Linker> library);

protected:
    QTemporaryDir temporary;
    QString folder; ///< the program's folder, ends in "/"
    RecordingLinker* linker = nullptr;
    std::unique_ptr<Tourwright> window;
    std::unique_ptr<DialogRobot> robot;
};
