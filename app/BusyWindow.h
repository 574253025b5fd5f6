// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QWidget>

/// Disables a window for the length of a long command, so that the user starts no other while the event queue
/// is served in between; enables it again at the end and gives the keyboard back to where it was.
class BusyWindow
{
public:
    explicit BusyWindow(QWidget* window);
    ~BusyWindow();
    BusyWindow(const BusyWindow&) = delete;
    BusyWindow& operator=(const BusyWindow&) = delete;

private:
    QWidget* m_window;
    QPointer<QWidget> m_focus;
};
