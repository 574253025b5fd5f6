// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/views/ViewFixture.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QWheelEvent>
#include <QWindow>

namespace {

QImage icon(QSize size, QColor colour)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(colour);
    return image.rgbSwapped();
}

QImage digitStrip(bool selected)
{
    QImage strip(220, 32, QImage::Format_ARGB32);
    QPainter painter(&strip);
    for (int i = 0; i < 10; ++i)
        painter.fillRect(22 * i, 0, 22, 32, colours::digit(i, selected));
    painter.end();
    return strip.rgbSwapped();
}

} // namespace

QColor colours::digit(int value, bool selected)
{
    return {20 + 20 * value, selected ? 40 : 90, 60};
}

ViewFixture::ViewFixture()
    : panorama(1024, 512, QImage::Format_RGB888)
    , photo(icon({56, 56}, colours::kPhoto))
    , photoSelected(icon({56, 56}, colours::kPhotoSelected))
    , info(icon({56, 56}, colours::kInfo))
    , infoSelected(icon({56, 56}, colours::kInfoSelected))
    , link(icon({224, 224}, colours::kLink))
    , cross(icon({84, 84}, colours::kCross))
    , crossSelected(icon({84, 84}, colours::kCrossSelected))
    , digits(digitStrip(false))
    , digitsSelected(digitStrip(true))
{
    panorama.fill(Qt::black);
}

void ViewFixture::TearDown()
{
    if (view && m_pressed != Qt::NoButton) release({0, 0}, m_pressed);
}

void ViewFixture::show(HotSpotWidget::Mode mode, QSize size, int side)
{
    MarkerImages markers;
    if (mode == HotSpotWidget::Hotspots) {
        markers.photo = &photo;
        markers.photoSelected = &photoSelected;
        markers.info = &info;
        markers.infoSelected = &infoSelected;
    } else if (mode == HotSpotWidget::Link) {
        markers.link = &link;
    } else {
        markers.cross = &cross;
        markers.crossSelected = &crossSelected;
        markers.digits = &digits;
        markers.digitsSelected = &digitsSelected;
    }
    view = std::make_unique<HotSpotWidget>();
    view->setUp(&owner, &panorama, markers, mode, side);
    if (mode == HotSpotWidget::Hotspots) view->showPanorama(&node);
    if (mode == HotSpotWidget::Link) view->showLink(&shownLink);
    if (mode == HotSpotWidget::FeaturePairs) view->showPairs(&pairs);
    view->resize(size);
    // Tests run side by side on one screen: in its corner, hardly a pointer moved by another one comes by.
    view->move(view->screen()->geometry().bottomRight() - QPoint(15, 15));
    view->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view.get()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->size() == size; }));
    frame();
}

void ViewFixture::resize(QSize size)
{
    view->resize(size);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return view->size() == size && view->windowHandle()->size() == size; }));
    frame();
}

QImage ViewFixture::frame(const sphere::Camera& camera)
{
    Probe::look(*view, camera);
    return frame();
}

QPoint ViewFixture::pixelOf(sphere::SpherePoint point) const
{
    const auto pixel = sphere::pixelFromSphere(point, Probe::painted(*view), Probe::size(*view));
    return {qRound(pixel.x), qRound(pixel.y)};
}

void ViewFixture::press(QPoint at, Qt::MouseButton button)
{
    m_pressed = button;
    QTest::mousePress(view->windowHandle(), button, Qt::NoModifier, at);
}

void ViewFixture::moveTo(QPoint at)
{
    QTest::mouseMove(view->windowHandle(), at);
}

void ViewFixture::release(QPoint at, Qt::MouseButton button)
{
    m_pressed = Qt::NoButton;
    QTest::mouseRelease(view->windowHandle(), button, Qt::NoModifier, at);
}

void ViewFixture::wheel(int delta)
{
    const QPointF middle = view->rect().center();
    QWheelEvent event(middle, view->mapToGlobal(middle.toPoint()), QPoint(), QPoint(0, delta), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.get(), &event);
}

QRect ViewFixture::extentOf(const QImage& frame, QColor colour)
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
