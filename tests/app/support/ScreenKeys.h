// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Windows of another process on the same X display: found by process and title, driven by key presses.

#pragma once

#include <QString>

#include <memory>
#include <optional>

class ScreenKeys
{
public:
    ScreenKeys();
    ~ScreenKeys();

    /// Titles of the shown windows of this process.
    QStringList titles(qint64 process) const;
    /// Gives the window of this title the keyboard and presses a key there; nothing when it is not shown.
    /// @param key  X key symbol
    void press(qint64 process, const QString& title, unsigned long key, bool control = false) const;
    /// Asks the window of this title to close, as a window manager does.
    void close(qint64 process, const QString& title) const;

private:
    struct Display;
    std::unique_ptr<Display> m_display;
};
