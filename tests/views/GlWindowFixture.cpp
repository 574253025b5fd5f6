// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/views/GlWindowFixture.h"

#include <QApplication>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

void GlWindowFixture::TearDown()
{
    if (widget() && m_pressed != Qt::NoButton) release({0, 0}, m_pressed);
}

void GlWindowFixture::showWindow(QSize size)
{
    widget()->resize(size);
    // Tests run side by side on one screen: in its corner, hardly a pointer moved by another one comes by.
    widget()->move(widget()->screen()->geometry().bottomRight() - QPoint(15, 15));
    widget()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(widget()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return widget()->size() == size; }));
    frame();
}

void GlWindowFixture::resize(QSize size)
{
    widget()->resize(size);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return widget()->size() == size && widget()->windowHandle()->size() == size; }));
    frame();
}

void GlWindowFixture::press(QPoint at, Qt::MouseButton button)
{
    m_pressed = button;
    QTest::mousePress(widget()->windowHandle(), button, Qt::NoModifier, at);
}

void GlWindowFixture::moveTo(QPoint at)
{
    QTest::mouseMove(widget()->windowHandle(), at);
}

void GlWindowFixture::release(QPoint at, Qt::MouseButton button)
{
    m_pressed = Qt::NoButton;
    QTest::mouseRelease(widget()->windowHandle(), button, Qt::NoModifier, at);
}

void GlWindowFixture::wheel(int delta)
{
    const QPointF middle = widget()->rect().center();
    QWheelEvent event(middle, widget()->mapToGlobal(middle.toPoint()), QPoint(), QPoint(0, delta),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget(), &event);
}

QRect GlWindowFixture::extentOf(const QImage& frame, QColor colour)
{
    QRect extent;
    const int scale = qRound(frame.devicePixelRatio());
    for (int y = 0; y < frame.height(); ++y) {
        for (int x = 0; x < frame.width(); ++x) {
            if (frame.pixel(x, y) == colour.rgb()) extent |= QRect(x / scale, y / scale, 1, 1);
        }
    }
    return extent;
}
