// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Turning, zooming and resizing the panorama view.

#include "tests/views/ViewFixture.h"

#include <cmath>

using sphere::kHalfPi;
using sphere::kPi;

class ViewInput : public ViewFixture
{};

TEST_F(ViewInput, ANewViewLooksStraightAheadAtTheHorizon)
{
    show(HotSpotWidget::Hotspots);
    EXPECT_EQ(view->viewingDirection().azimuth, 0.0);
    EXPECT_EQ(view->viewingDirection().polar, kHalfPi);
}

TEST_F(ViewInput, TenWheelStepsInStopAtTheMaximumZoom)
{
    panorama = QImage(4096, 2048, QImage::Format_RGB888);
    show(HotSpotWidget::Hotspots);
    wheel(120);
    EXPECT_DOUBLE_EQ(Probe::target(*view).zoom, 1.1);
    for (int i = 0; i < 9; ++i)
        wheel(120);
    EXPECT_DOUBLE_EQ(Probe::target(*view).zoom, 4096 / (1056 * kPi));
}

TEST_F(ViewInput, TheMaximumZoomIsAtLeastOne)
{
    show(HotSpotWidget::Hotspots);
    for (int i = 0; i < 10; ++i)
        wheel(120);
    EXPECT_EQ(Probe::target(*view).zoom, 1.0);
}

TEST_F(ViewInput, WheelStepsOutStopAtAHalf)
{
    show(HotSpotWidget::Hotspots);
    wheel(-120);
    EXPECT_DOUBLE_EQ(Probe::target(*view).zoom, 0.9090909090909091);
    for (int i = 0; i < 20; ++i)
        wheel(-15);
    EXPECT_EQ(Probe::target(*view).zoom, 0.5);
}

TEST_F(ViewInput, AWheelWithoutDeltaOrContentDoesNothing)
{
    show(HotSpotWidget::Hotspots);
    wheel(0);
    EXPECT_EQ(Probe::target(*view).zoom, 1.0);
    view->clear();
    wheel(-120);
    EXPECT_EQ(Probe::target(*view).zoom, 1.0);
}

TEST_F(ViewInput, AResizeTo320By600IsIgnored)
{
    show(HotSpotWidget::Hotspots, {800, 500});
    resize({320, 600});
    EXPECT_EQ(Probe::size(*view).width, 800);
    EXPECT_EQ(Probe::size(*view).height, 500);
    resize({400, 240});
    EXPECT_EQ(Probe::size(*view).width, 800);
}

TEST_F(ViewInput, AResizeTo321By241IsAccepted)
{
    show(HotSpotWidget::Hotspots, {800, 500});
    resize({321, 241});
    EXPECT_EQ(Probe::size(*view).width, 321);
    EXPECT_EQ(Probe::size(*view).height, 241);
}

TEST_F(ViewInput, AViewBelowTheMinimumTakesIconsWhereItShowsThem)
{
    node.photos = {PhotoHotspot{}};
    node.photos[0].sphere_x = 0.6;
    show(HotSpotWidget::Hotspots, {800, 500});
    resize({320, 600});
    const QRect shown = extentOf(frame(), colours::kPhoto);
    ASSERT_FALSE(shown.isNull());
    EXPECT_CALL(owner, selectPhotoRow(0));
    press(shown.center());
}

TEST_F(ViewInput, AWiderWindowBringsTheZoomBelowItsMaximum)
{
    panorama = QImage(4096, 2048, QImage::Format_RGB888);
    show(HotSpotWidget::Hotspots, {400, 300});
    for (int i = 0; i < 20; ++i)
        wheel(120);
    EXPECT_DOUBLE_EQ(Probe::target(*view).zoom, 4096 / (400 * kPi));
    resize({1200, 300});
    EXPECT_DOUBLE_EQ(Probe::target(*view).zoom, 4096 / (1200 * kPi));
}

TEST_F(ViewInput, DraggingKeepsTheGrabbedPointUnderTheCursorAtEveryZoom)
{
    show(HotSpotWidget::Hotspots, {400, 300});
    panorama = QImage(4096, 2048, QImage::Format_RGB888);
    resize({401, 301}); // the maximum zoom is that of the picture
    for (const double zoom : {0.5, 0.8, 1.0, 1.7, Probe::maxZoom(*view)}) {
        frame({2.9, kHalfPi, zoom});
        const auto cursorAt = [](int step) {
            const double t = step / 50.0;
            return QPoint(qRound(200 + 130 * std::sin(7 * t)), qRound(150 + 80 * std::sin(11 * t)));
        };
        press(cursorAt(0));
        double worst = 0;
        for (int step = 1; step <= 100; ++step) {
            const QPoint cursor = cursorAt(step);
            moveTo(cursor);
            const auto at =
                sphere::pixelFromSphere(Probe::grabbed(*view), Probe::target(*view), Probe::size(*view));
            worst = std::max(worst, std::hypot(at.x - cursor.x(), at.y - cursor.y()));
        }
        release(cursorAt(100));
        EXPECT_NE(Probe::target(*view).yaw, 2.9);
        EXPECT_LE(worst, 1.5) << "zoom " << zoom;
    }
}

TEST_F(ViewInput, TheScenePointStaysUnderTheCursorInThePicture)
{
    // One white dot on black: where it is grabbed, there it is after the drag.
    panorama = QImage(4096, 2048, QImage::Format_RGB888);
    panorama.fill(Qt::black);
    for (int y = 1018; y < 1030; ++y) {
        for (int x = 2042; x < 2054; ++x)
            panorama.setPixelColor(x, y, Qt::white);
    }
    show(HotSpotWidget::Hotspots);
    const auto brightest = [](const QImage& picture) {
        double sum = 0, x = 0, y = 0;
        for (int v = 0; v < picture.height(); ++v) {
            for (int u = 0; u < picture.width(); ++u) {
                const int weight = qRed(picture.pixel(u, v));
                sum += weight;
                x += weight * u;
                y += weight * v;
            }
        }
        const double scale = picture.devicePixelRatio();
        return QPointF(((x / sum) + 0.5) / scale - 0.5, ((y / sum) + 0.5) / scale - 0.5);
    };
    const QPointF before = brightest(frame());
    const QPoint start = before.toPoint(), end(280, 700);
    press(start);
    for (int i = 1; i <= 50; ++i)
        moveTo(start + (end - start) * i / 50);
    const QPointF after = brightest(frame());
    EXPECT_NEAR(after.x() - before.x(), end.x() - start.x(), 1.5);
    EXPECT_NEAR(after.y() - before.y(), end.y() - start.y(), 1.5);
}

TEST_F(ViewInput, LookingStraightUpAndDownStaysOffThePoles)
{
    show(HotSpotWidget::Hotspots, {400, 400});
    for (const int direction : {1, -1}) {
        for (int stroke = 0; stroke < 6; ++stroke) {
            press({200, 200 - direction * 190});
            for (int y = -190; y <= 190; y += 20) {
                moveTo({200, 200 + direction * y});
                const double target = Probe::target(*view).polar;
                EXPECT_GE(target, 0.001);
                EXPECT_LE(target, 3.1405926535897932);
            }
            frame();
            EXPECT_GE(view->viewingDirection().polar, 0.01);
            EXPECT_LE(view->viewingDirection().polar, kPi - 0.01);
            release({200, 200 + direction * 190});
        }
        EXPECT_NEAR(view->viewingDirection().polar, direction > 0 ? 0.0 : kPi, 0.05);
    }
}

TEST_F(ViewInput, OnlyTheLeftButtonTurnsTheView)
{
    show(HotSpotWidget::Hotspots);
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        press({500, 400}, button);
        moveTo({300, 300});
        release({300, 300}, button);
        EXPECT_EQ(Probe::target(*view).yaw, 0.0);
    }
}

TEST_F(ViewInput, AfterReleaseTheViewRests)
{
    show(HotSpotWidget::Hotspots);
    press({500, 400});
    moveTo({400, 400});
    release({400, 400});
    const double yaw = Probe::target(*view).yaw;
    EXPECT_LT(yaw, 0.0);
    moveTo({100, 400});
    EXPECT_EQ(Probe::target(*view).yaw, yaw);
}

TEST_F(ViewInput, WithoutContentThereIsNoDrag)
{
    show(HotSpotWidget::Hotspots);
    view->clear();
    press({500, 400});
    EXPECT_FALSE(Probe::dragging(*view));
    moveTo({300, 400});
    EXPECT_EQ(Probe::target(*view).yaw, 0.0);
}

TEST_F(ViewInput, AnotherPanoramaIsSeenInTheSameDirection)
{
    show(HotSpotWidget::Hotspots);
    frame({1.0, 1.2, 0.8});
    PanoNode other;
    view->showPanorama(&other);
    frame();
    EXPECT_EQ(view->viewingDirection().azimuth, 1.0);
    EXPECT_EQ(Probe::painted(*view).zoom, 0.8);
    view->showPanorama(nullptr);
}

TEST_F(ViewInput, ShowingNothingEndsDragAndSelection)
{
    node.photos = {PhotoHotspot{}};
    show(HotSpotWidget::Hotspots);
    press(pixelOf({0.0, kHalfPi}));
    EXPECT_EQ(view->selectedPhoto(), 0);
    view->showPanorama(nullptr);
    EXPECT_EQ(view->selectedPhoto(), -1);
    EXPECT_FALSE(Probe::dragging(*view));
}

TEST_F(ViewInput, ResetLooksStraightAheadAgain)
{
    show(HotSpotWidget::Hotspots);
    frame({1.0, 1.2, 0.8});
    view->resetView();
    EXPECT_EQ(view->viewingDirection().azimuth, 0.0);
    EXPECT_EQ(Probe::target(*view).zoom, 1.0);
}
