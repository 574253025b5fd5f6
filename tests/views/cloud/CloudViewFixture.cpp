// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/views/cloud/CloudViewFixture.h"

#include <QApplication>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

namespace {

QImage icon(QColor colour)
{
    QImage image(56, 56, QImage::Format_ARGB32);
    image.fill(colour);
    return image.rgbSwapped();
}

} // namespace

CloudViewFixture::CloudViewFixture()
    : box(icon(kBox))
    , boxOn(icon(kBoxOn))
    , remove(icon(kRemove))
    , view(std::make_unique<PntCloudWidget>())
{
    view->setUp(&owner, &box, &boxOn, &remove);
}

void CloudViewFixture::TearDown()
{
    if (m_pressed != Qt::NoButton) release({0, 0}, m_pressed);
}

void CloudViewFixture::show(QSize size)
{
    view->resize(size);
    // Tests run side by side on one screen: in its corner, hardly a pointer moved by another one comes by.
    view->move(view->screen()->geometry().bottomRight() - QPoint(15, 15));
    view->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view.get()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->size() == size; }));
    frame();
}

void CloudViewFixture::resize(QSize size)
{
    view->resize(size);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return view->size() == size && view->windowHandle()->size() == size; }));
    frame();
}

void CloudViewFixture::load(const QByteArray& file)
{
    writeBytes(path(), file);
    view->LoadPointCloud(path());
}

QImage CloudViewFixture::frame(const cloud::Camera& camera)
{
    Probe::look(*view, camera);
    return frame();
}

QPoint CloudViewFixture::pixelOf(const CloudDot& dot) const
{
    const double steps = double(bytes.refinement) * (100 / bytes.divisor);
    const double stepsZ = double(bytes.refinementZ) * (100 / bytes.divisor);
    const cloud::Pixel pixel = cloud::pixelOf({(dot.x + 0.5) / steps - bytes.originX * 0.0001,
                                               (dot.y + 0.5) / steps - bytes.originY * 0.0001,
                                               (dot.z + 0.5) / stepsZ - bytes.originZ * 0.0001},
                                              Probe::camera(*view), Probe::size(*view));
    return {pixel.x, pixel.y};
}

void CloudViewFixture::press(QPoint at, Qt::MouseButton button)
{
    m_pressed = button;
    QTest::mousePress(view->windowHandle(), button, Qt::NoModifier, at);
}

void CloudViewFixture::moveTo(QPoint at)
{
    QTest::mouseMove(view->windowHandle(), at);
}

void CloudViewFixture::release(QPoint at, Qt::MouseButton button)
{
    m_pressed = Qt::NoButton;
    QTest::mouseRelease(view->windowHandle(), button, Qt::NoModifier, at);
}

void CloudViewFixture::click(QPoint at)
{
    press(at);
    release(at);
}

void CloudViewFixture::drag(QPoint from, QPoint to, Qt::MouseButton button)
{
    press(from, button);
    moveTo((from + to) / 2);
    moveTo(to);
    release(to, button);
}

void CloudViewFixture::wheel(int delta)
{
    const QPointF middle = view->rect().center();
    QWheelEvent event(middle, view->mapToGlobal(middle.toPoint()), QPoint(), QPoint(0, delta), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.get(), &event);
}

QRect CloudViewFixture::extentOf(const QImage& frame, QColor colour)
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

int CloudViewFixture::countOf(const QImage& frame, QColor colour)
{
    int count = 0;
    for (int y = 0; y < frame.height(); ++y) {
        for (int x = 0; x < frame.width(); ++x)
            count += frame.pixel(x, y) == colour.rgb();
    }
    return count;
}
