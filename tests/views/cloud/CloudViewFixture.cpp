// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/views/cloud/CloudViewFixture.h"

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

int CloudViewFixture::countOf(const QImage& frame, QColor colour)
{
    int count = 0;
    for (int y = 0; y < frame.height(); ++y) {
        for (int x = 0; x < frame.width(); ++x)
            count += frame.pixel(x, y) == colour.rgb();
    }
    return count;
}
