// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The window and its upload dialog before a scripted album service, driven by typing and clicking.

#pragma once

#include "publish/dialog/UploadManager.h"
#include "tests/app/support/WindowTest.h"
#include "tests/publish/support/ScriptedService.h"

#include <QProgressBar>
#include <QSignalSpy>

/// What the author sees of window and dialog.
struct UploadState
{
    bool window = false; ///< enabled
    bool dialog = false; ///< enabled
    bool shown = false;  ///< the dialog is on the screen
    int progress = -1;

    bool operator==(const UploadState& other) const
    {
        return window == other.window && dialog == other.dialog && shown == other.shown &&
               progress == other.progress;
    }
};
void PrintTo(const UploadState& state, std::ostream* stream);

constexpr UploadState kReady{true, true, true, 0};   ///< as before the upload
constexpr UploadState kClosed{true, true, false, 0}; ///< the dialog closed

class UploadTest : public WindowTest
{
protected:
    UploadTest();
    explicit UploadTest(std::unique_ptr<Linker> library);
    ~UploadTest() override;

    /// The service's script is made by the test; then this starts it and points the program there.
    void startService();
    static void useService(const QString& baseUrl);

    /// Chooses the menu's action with the mouse.
    void openDialog();
    UploadManager* dialog() const { return window->findChild<UploadManager*>(); }
    template <typename Widget>
    Widget* inDialog(const char* name) const
    {
        auto* widget = dialog()->findChild<Widget*>(QLatin1String(name));
        if (!widget) qFatal("the dialog has no %s", name);
        return widget;
    }
    /// Types into a line edit, in place of what stands there.
    void type(const char* line, const QString& text);
    void fillIn(const QString& account, const QString& password, const QString& album);
    void clickInDialog(const char* button);
    /// Fills in entries that pass and presses the upload button.
    void upload();

    /// Waits until that many replies have been taken since the service was started.
    void waitForReplies(int count, int timeout_ms = 30000);
    /// The reply slot has run and no request is under way.
    bool atRest() const;
    /// Waits for the box and until the upload is over.
    /// @return the box
    SeenBox waitForBox(int timeout_ms = 30000);

    UploadState state() const;

    /// One link between rooms 0 and 1 with match data of both levels.
    void addLink();
    /// A photo hotspot with a picture named as the program names copies.
    void addPhoto(int room, int number, const QByteArray& content = "photo");

    ScriptedService service;
    std::unique_ptr<QSignalSpy> replies;

private:
    void watchReplies();
};

/// Expects kind, title, text, one OK button, modal to the window.
void expectBox(const SeenBox& box, QMessageBox::Icon kind, const QString& title, const QString& text);
