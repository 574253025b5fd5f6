// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The floor marker of a link, seen from both of its sides.

#include "tests/views/ViewFixture.h"

#include <cmath>

using sphere::kHalfPi;
using sphere::kPi;
using testing::_;
using testing::AtLeast;

class LinkView : public ViewFixture
{
protected:
    LinkView()
    {
        shownLink.mode = LinkByHand;
        shownLink.rot_0 = -0.2;
        shownLink.rot_1 = -kPi + 0.3;
        shownLink.icon_y0 = 2.2;
        shownLink.icon_y1 = 2.0;
    }

    /// Where each side shows the marker: crossed icon heights.
    sphere::SpherePoint marker(int side) const
    {
        return side == 0 ? sphere::SpherePoint{0.2, 2.0} : sphere::SpherePoint{-0.3, 2.2};
    }

    QRect icon(int side) const { return side == 0 ? shownLink.icon_0 : shownLink.icon_1; }
};

TEST_F(LinkView, EachSideShowsTheOtherEndsIconHeight)
{
    for (const int side : {0, 1}) {
        show(HotSpotWidget::Link, {1056, 930}, side);
        const QImage picture = frame({0.0, 1.9, 1.0});
        const auto at = sphere::pixelFromSphere(marker(side), Probe::painted(*view), Probe::size(*view));
        const QRect extent = extentOf(picture, colours::kLink);
        const double c = std::cos(kPi - marker(side).polar);
        const int width = int(112 * c), height = int(112 * c * c);
        EXPECT_NEAR(extent.left(), int(at.x - width / 2), 1.0) << "side " << side;
        EXPECT_NEAR(extent.top(), int(at.y - height / 2), 1.0) << "side " << side;
        EXPECT_NEAR(extent.width(), width, 1.0) << "side " << side;
        EXPECT_NEAR(extent.height(), height, 1.0) << "side " << side;
        EXPECT_EQ(icon(side).width(), width);
        EXPECT_EQ(icon(side).height(), height);
    }
}

TEST_F(LinkView, TheMarkerTurnsAndLowersTheLinkOnItsSide)
{
    for (const int side : {0, 1}) {
        show(HotSpotWidget::Link, {1056, 930}, side);
        frame({0.0, 1.9, 1.0});
        const PanoLink before = shownLink;
        EXPECT_CALL(owner, markModified()).Times(AtLeast(1));
        const QPoint start = icon(side).center(), end = start + QPoint(60, 40);
        press(start);
        moveTo(end);
        release(end);
        const auto expected = sphere::sphereFromPixel({double(end.x()), double(end.y())},
                                                      Probe::painted(*view), Probe::size(*view));
        if (side == 0) {
            EXPECT_DOUBLE_EQ(shownLink.rot_0, -expected.azimuth);
            EXPECT_DOUBLE_EQ(shownLink.icon_y1, expected.polar);
            EXPECT_EQ(shownLink.rot_1, before.rot_1);
            EXPECT_EQ(shownLink.icon_y0, before.icon_y0);
        } else {
            EXPECT_DOUBLE_EQ(shownLink.rot_1, -expected.azimuth - kPi);
            EXPECT_DOUBLE_EQ(shownLink.icon_y0, expected.polar);
            EXPECT_EQ(shownLink.rot_0, before.rot_0);
            EXPECT_EQ(shownLink.icon_y1, before.icon_y1);
        }
        EXPECT_EQ(view->cursor().shape(), Qt::PointingHandCursor);
        testing::Mock::VerifyAndClearExpectations(&owner);
    }
}

TEST_F(LinkView, AMarkerDraggedAboveTheHorizonStaysOnTheFloor)
{
    for (const int side : {0, 1}) {
        show(HotSpotWidget::Link, {1056, 930}, side);
        frame({0.0, 1.9, 1.0});
        press(icon(side).center());
        moveTo({528, 20});
        release({528, 20});
        EXPECT_EQ(side == 0 ? shownLink.icon_y1 : shownLink.icon_y0, 1.790707812546182);
    }
}

TEST_F(LinkView, TheMarkerOfAFoundLinkCannotBeTaken)
{
    for (const int mode : {LinkMatched, LinkByPose}) {
        shownLink.mode = mode;
        show(HotSpotWidget::Link);
        frame({0.0, 1.9, 1.0});
        EXPECT_CALL(owner, markModified()).Times(0);
        const PanoLink before = shownLink;
        const QPoint start = icon(0).center();
        moveTo(start);
        EXPECT_EQ(view->cursor().shape(), Qt::ArrowCursor);
        press(start);
        moveTo(start + QPoint(50, 30));
        release(start + QPoint(50, 30));
        EXPECT_EQ(shownLink.rot_0, before.rot_0);
        EXPECT_EQ(shownLink.icon_y1, before.icon_y1);
        // The view turned instead.
        EXPECT_GT(Probe::target(*view).yaw, 0.01);
    }
}

TEST_F(LinkView, TheHandShowsOverTheMarkerOfALinkMadeByHand)
{
    show(HotSpotWidget::Link);
    frame({0.0, 1.9, 1.0});
    moveTo(icon(0).center());
    EXPECT_EQ(view->cursor().shape(), Qt::PointingHandCursor);
    moveTo({20, 20});
    EXPECT_EQ(view->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(LinkView, AMarkerBehindTheViewerIsNeitherSeenNorTaken)
{
    show(HotSpotWidget::Link);
    const QImage picture = frame({0.2 + kPi, kHalfPi, 1.0});
    EXPECT_TRUE(extentOf(picture, colours::kLink).isNull());
    EXPECT_FALSE(icon(0).intersects(view->rect()));
}

TEST_F(LinkView, WithoutALinkNothingIsShownAndNothingHappens)
{
    panorama.fill(Qt::white);
    show(HotSpotWidget::Link);
    view->showLink(nullptr);
    EXPECT_EQ(frame().pixelColor(10, 10), QColor(160, 160, 164));
    press({500, 500});
    moveTo({100, 100});
    wheel(120);
    EXPECT_EQ(Probe::target(*view).yaw, 0.0);
    EXPECT_EQ(Probe::target(*view).zoom, 1.0);
}
