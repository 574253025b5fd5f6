// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/views/ViewFixture.h"

#include <QPainter>

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
    showWindow(size);
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
