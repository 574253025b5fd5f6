// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Photo and text hotspots under the mouse.

#include "tests/views/ViewFixture.h"

using sphere::kHalfPi;
using sphere::kPi;
using testing::_;
using testing::AtLeast;

class HotspotView : public ViewFixture
{
protected:
    void addPhoto(double azimuth, double polar)
    {
        PhotoHotspot photo;
        photo.sphere_x = azimuth;
        photo.sphere_y = polar;
        node.photos.append(photo);
    }

    void addInfo(double azimuth, double polar)
    {
        InfoHotspot info;
        info.sphere_x = azimuth;
        info.sphere_y = polar;
        node.infos.append(info);
    }
};

TEST_F(HotspotView, APressOnAPhotoSelectsItAndTellsTheOwner)
{
    addPhoto(0.3, kHalfPi);
    addPhoto(-0.3, 1.2);
    addInfo(0.0, 2.0);
    show(HotSpotWidget::Hotspots);
    EXPECT_CALL(owner, selectPhotoRow(1));
    EXPECT_CALL(owner, selectInfoRow(_)).Times(0);
    press(pixelOf({-0.3, 1.2}));
    EXPECT_EQ(view->selectedPhoto(), 1);
    EXPECT_EQ(view->selectedInfo(), -1);
    EXPECT_FALSE(extentOf(frame(), colours::kPhotoSelected).isNull());
}

TEST_F(HotspotView, APressOnATextSelectsItAndDeselectsThePhoto)
{
    addPhoto(0.3, kHalfPi);
    addInfo(0.0, 2.0);
    show(HotSpotWidget::Hotspots);
    view->selectPhoto(0);
    EXPECT_CALL(owner, selectInfoRow(0));
    press(pixelOf({0.0, 2.0}));
    EXPECT_EQ(view->selectedInfo(), 0);
    EXPECT_EQ(view->selectedPhoto(), -1);
}

TEST_F(HotspotView, OfTwoOverlappingPhotosTheEarlierIsTaken)
{
    addPhoto(0.01, kHalfPi);
    addPhoto(0.0, kHalfPi);
    show(HotSpotWidget::Hotspots);
    EXPECT_CALL(owner, selectPhotoRow(0));
    press(pixelOf({0.0, kHalfPi}));
    EXPECT_EQ(view->selectedPhoto(), 0);
}

TEST_F(HotspotView, APhotoIsTakenBeforeATextThatCoversIt)
{
    addPhoto(0.0, kHalfPi);
    addInfo(0.0, kHalfPi);
    show(HotSpotWidget::Hotspots);
    EXPECT_CALL(owner, selectPhotoRow(0));
    EXPECT_CALL(owner, selectInfoRow(_)).Times(0);
    press(pixelOf({0.0, kHalfPi}));
}

TEST_F(HotspotView, AHotspotBehindTheViewerCannotBeTaken)
{
    addPhoto(kPi, kHalfPi);
    show(HotSpotWidget::Hotspots);
    EXPECT_CALL(owner, selectPhotoRow(_)).Times(0);
    for (const QPoint at : {QPoint(528, 465), QPoint(0, 0), QPoint(1055, 929), QPoint(0, 465)}) {
        press(at);
        release(at);
    }
    EXPECT_EQ(view->selectedPhoto(), -1);
}

TEST_F(HotspotView, AnotherButtonTakesNothing)
{
    addPhoto(0.0, kHalfPi);
    show(HotSpotWidget::Hotspots);
    EXPECT_CALL(owner, selectPhotoRow(_)).Times(0);
    press(pixelOf({0.0, kHalfPi}), Qt::RightButton);
    EXPECT_FALSE(Probe::dragging(*view));
}

TEST_F(HotspotView, APhotoFollowsTheCursorByItsCentre)
{
    addPhoto(0.0, kHalfPi);
    show(HotSpotWidget::Hotspots);
    EXPECT_CALL(owner, markModified()).Times(AtLeast(1));
    const QRect marker = node.photos[0].marker;
    // Taken near its corner: the offset to its centre is kept.
    const QPoint start = marker.topLeft() + QPoint(3, 4), end = start + QPoint(-200, 150);
    press(start);
    moveTo(end);
    release(end);
    const sphere::PixelPoint centre{marker.left() + 14.0 - 200, marker.top() + 14.0 + 150};
    const auto expected = sphere::sphereFromPixel(centre, Probe::painted(*view), Probe::size(*view));
    EXPECT_DOUBLE_EQ(node.photos[0].sphere_x, expected.azimuth);
    EXPECT_DOUBLE_EQ(node.photos[0].sphere_y, expected.polar);
    frame();
    EXPECT_NEAR(node.photos[0].marker.left(), marker.left() - 200, 1);
    EXPECT_NEAR(node.photos[0].marker.top(), marker.top() + 150, 1);
    EXPECT_EQ(view->cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(HotspotView, ATextIsMovedWhileNoPhotoIsSelected)
{
    addPhoto(0.5, kHalfPi);
    addInfo(0.0, kHalfPi);
    show(HotSpotWidget::Hotspots);
    const QPoint at = pixelOf({0.0, kHalfPi});
    press(at);
    moveTo(at + QPoint(100, 0));
    EXPECT_LT(node.infos[0].sphere_x, -0.1);
    EXPECT_EQ(node.photos[0].sphere_x, 0.5);
}

TEST_F(HotspotView, AMereClickChangesNoRecord)
{
    addPhoto(0.0, kHalfPi);
    show(HotSpotWidget::Hotspots);
    EXPECT_CALL(owner, markModified()).Times(0);
    press(pixelOf({0.0, kHalfPi}));
    release(pixelOf({0.0, kHalfPi}));
    EXPECT_EQ(node.photos[0].sphere_x, 0.0);
    EXPECT_EQ(node.photos[0].sphere_y, kHalfPi);
}

TEST_F(HotspotView, TurningTheViewMarksNothing)
{
    addPhoto(0.0, kHalfPi);
    show(HotSpotWidget::Hotspots);
    EXPECT_CALL(owner, markModified()).Times(0);
    press({300, 300});
    moveTo({500, 400});
    release({500, 400});
    EXPECT_EQ(node.photos[0].sphere_x, 0.0);
}

TEST_F(HotspotView, AHotspotRemovedDuringItsDragIsLeftAlone)
{
    addPhoto(0.0, kHalfPi);
    show(HotSpotWidget::Hotspots);
    EXPECT_CALL(owner, markModified()).Times(0);
    press(pixelOf({0.0, kHalfPi}));
    node.photos.clear();
    moveTo({100, 100});
}

TEST_F(HotspotView, TheHandShowsOverAnIconAndTheArrowElsewhere)
{
    addPhoto(0.3, kHalfPi);
    addInfo(-0.3, kHalfPi);
    show(HotSpotWidget::Hotspots);
    moveTo(pixelOf({0.3, kHalfPi}));
    EXPECT_EQ(view->cursor().shape(), Qt::PointingHandCursor);
    moveTo(pixelOf({0.0, kHalfPi}));
    EXPECT_EQ(view->cursor().shape(), Qt::ArrowCursor);
    moveTo(pixelOf({-0.3, kHalfPi}));
    EXPECT_EQ(view->cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(HotspotView, SelectionByTheOwnerIsExclusive)
{
    show(HotSpotWidget::Hotspots);
    view->selectPhoto(2);
    view->selectInfo(1);
    EXPECT_EQ(view->selectedPhoto(), -1);
    view->selectPhoto(0);
    EXPECT_EQ(view->selectedInfo(), -1);
}

TEST_F(HotspotView, CoordinatesThatAreNoNumbersAreNeitherDrawnNorTaken)
{
    addPhoto(std::nan(""), 1.0);
    addPhoto(1e300, kHalfPi / 2);
    addInfo(0.0, std::numeric_limits<double>::infinity());
    show(HotSpotWidget::Hotspots);
    frame();
    EXPECT_FALSE(node.photos[0].marker.intersects(view->rect()));
    EXPECT_FALSE(node.infos[0].marker.intersects(view->rect()));
}
