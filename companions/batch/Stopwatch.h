// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Seconds spent in each step of a command.

#pragma once

#include <QElapsedTimer>
#include <QString>

#include <map>

class Stopwatch
{
public:
    Stopwatch() { m_timer.start(); }

    /// Adds the time since the last lap to the step's.
    void lap(const QString& step)
    {
        const qint64 now = m_timer.nsecsElapsed();
        m_seconds[step] += static_cast<double>(now - m_last) * 1e-9;
        m_last = now;
    }

    const std::map<QString, double>& seconds() const { return m_seconds; }
    double total() const { return static_cast<double>(m_timer.nsecsElapsed()) * 1e-9; }

private:
    QElapsedTimer m_timer;
    qint64 m_last = 0;
    std::map<QString, double> m_seconds;
};
