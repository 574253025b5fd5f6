// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QOpenGLWidget>

/// A GL view in a window of its own, used as a person does: through the window system, button state and all.
class GlWindowFixture : public testing::Test
{
protected:
    /// The view under test; null while there is none.
    virtual QOpenGLWidget* widget() const = 0;

    /// A button left pressed would grab the mouse for the next test.
    void TearDown() override;

    /// Shows the view in a window of this size, painted once.
    void showWindow(QSize size);
    void resize(QSize size);

    /// Paints and returns the picture; its device pixel ratio is the screen's.
    QImage frame() { return widget()->grabFramebuffer(); }

    void press(QPoint at, Qt::MouseButton button = Qt::LeftButton);
    void moveTo(QPoint at);
    void release(QPoint at, Qt::MouseButton button = Qt::LeftButton);
    void wheel(int delta);

    /// Bounding box of the pixels of exactly this colour, in logical pixels.
    static QRect extentOf(const QImage& frame, QColor colour);

private:
    Qt::MouseButton m_pressed = Qt::NoButton;
};
