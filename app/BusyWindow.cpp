// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "app/BusyWindow.h"

#include <QGuiApplication>

BusyWindow::BusyWindow(QWidget* window)
    : m_window(window)
    , m_focus(window->focusWidget())
{
    m_window->setEnabled(false);
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

BusyWindow::~BusyWindow()
{
    QGuiApplication::restoreOverrideCursor();
    m_window->setEnabled(true);
    if (m_focus && m_focus->isEnabled()) m_focus->setFocus();
}
