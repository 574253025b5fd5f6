// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "project/PanoLink.h"
#include "project/PanoNode.h"
#include "tests/views/GlWindowFixture.h"
#include "views/HotSpotOwner.h"
#include "views/HotSpotWidget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

#include <memory>

class MockOwner : public HotSpotOwner
{
public:
    MOCK_METHOD(void, selectPhotoRow, (int row), (override));
    MOCK_METHOD(void, selectInfoRow, (int row), (override));
    MOCK_METHOD(void, markModified, (), (override));
};

/// Sets what only a long row of mouse movements could set, and reads what only pictures tell.
class HotSpotWidgetProbe
{
public:
    static void look(HotSpotWidget& view, const sphere::Camera& camera) { view.m_target = camera; }
    static sphere::Camera target(const HotSpotWidget& view) { return view.m_target; }
    static sphere::Camera painted(const HotSpotWidget& view) { return view.m_camera; }
    static double maxZoom(const HotSpotWidget& view) { return view.m_maxZoom; }
    static sphere::ViewSize size(const HotSpotWidget& view) { return view.m_size; }
    static sphere::SpherePoint grabbed(const HotSpotWidget& view) { return view.m_viewDrag.grabbed(); }
    static bool dragging(const HotSpotWidget& view) { return view.m_viewDragActive || view.m_iconDragActive; }
    /// As if the driver had refused the shaders.
    static void loseProgram(HotSpotWidget& view) { view.m_sphere = {}; }
};

/// A panorama view in a window of its own, with plainly coloured icons and an owner that records.
class ViewFixture : public GlWindowFixture
{
protected:
    using Probe = HotSpotWidgetProbe;

    ViewFixture();
    QOpenGLWidget* widget() const override { return view.get(); }

    /// Sets the view up and shows it in a window of this size, painted once.
    void show(HotSpotWidget::Mode mode, QSize size = {1056, 930}, int side = 0);

    using GlWindowFixture::frame;
    /// Paints with this camera.
    QImage frame(const sphere::Camera& camera);

    /// Where a point stands on the screen now, rounded to the pixel.
    QPoint pixelOf(sphere::SpherePoint point) const;

    testing::NiceMock<MockOwner> owner;
    QImage panorama; ///< black, 1024 x 512, unless a test puts another one before `show`
    QImage photo, photoSelected, info, infoSelected, link, cross, crossSelected, digits, digitsSelected;
    PanoNode node;
    PanoLink shownLink;
    FeaturePairs pairs;
    std::unique_ptr<HotSpotWidget> view;
};

/// Colours of the icons.
namespace colours {
const QColor kPhoto(255, 0, 0), kPhotoSelected(255, 128, 0), kInfo(0, 0, 255), kInfoSelected(0, 128, 255),
    kLink(0, 255, 0), kCross(255, 255, 0), kCrossSelected(255, 0, 255);
/// Of digit 0 to 9 in the strip.
QColor digit(int value, bool selected = false);
} // namespace colours
