// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The numbered crosses of the link editor.

#include "tests/views/ViewFixture.h"

using sphere::kHalfPi;
using sphere::kPi;
using testing::_;

class FeaturePairView : public ViewFixture
{
protected:
    void addPair(sphere::SpherePoint on0, sphere::SpherePoint on1)
    {
        FeaturePair pair;
        pair.point_0 = on0;
        pair.point_1 = on1;
        pairs.list.push_back(pair);
    }

    /// Colour in the middle of a glyph of the only cross in view.
    QColor glyph(const QImage& picture, QRect cross, int place) const
    {
        const double scale = picture.devicePixelRatio();
        return picture.pixelColor(int((cross.left() + 42 + 10 * (place + 1) + 4) * scale),
                                  int((cross.top() + 21) * scale));
    }
};

TEST_F(FeaturePairView, EachSideShowsItsOwnPoint)
{
    addPair({0.1, 1.5}, {-0.4, 1.7});
    for (const int side : {0, 1}) {
        show(HotSpotWidget::FeaturePairs, {1056, 930}, side);
        const auto at = sphere::pixelFromSphere(side == 0 ? pairs.list[0].point_0 : pairs.list[0].point_1,
                                                Probe::painted(*view), Probe::size(*view));
        const QRect extent = extentOf(frame(), colours::kCross);
        EXPECT_NEAR(extent.left(), std::trunc(at.x - 21), 1);
        EXPECT_NEAR(extent.top(), std::trunc(at.y - 21), 1);
        EXPECT_NEAR(extent.width(), 41, 1);
        EXPECT_EQ((side == 0 ? pairs.list[0].marker_0 : pairs.list[0].marker_1).width(), 42);
    }
}

TEST_F(FeaturePairView, TheFirstPairShows00AndTheThirteenth12)
{
    show(HotSpotWidget::FeaturePairs);
    addPair({0.0, kHalfPi}, {});
    QImage picture = frame();
    EXPECT_EQ(glyph(picture, pairs.list[0].marker_0, 0), colours::digit(0));
    EXPECT_EQ(glyph(picture, pairs.list[0].marker_0, 1), colours::digit(0));

    // Twelve behind the viewer, the thirteenth ahead.
    pairs.list.clear();
    for (int i = 0; i < 12; ++i)
        addPair({kPi, kHalfPi}, {});
    addPair({0.0, kHalfPi}, {});
    picture = frame();
    EXPECT_EQ(glyph(picture, pairs.list[12].marker_0, 0), colours::digit(1));
    EXPECT_EQ(glyph(picture, pairs.list[12].marker_0, 1), colours::digit(2));
}

TEST_F(FeaturePairView, TheSelectedPairHasItsOwnCrossAndDigits)
{
    addPair({kPi, kHalfPi}, {});
    addPair({0.0, kHalfPi}, {});
    pairs.select(1);
    show(HotSpotWidget::FeaturePairs);
    const QImage picture = frame();
    EXPECT_FALSE(extentOf(picture, colours::kCrossSelected).isNull());
    EXPECT_TRUE(extentOf(picture, colours::kCross).isNull());
    EXPECT_EQ(glyph(picture, pairs.list[1].marker_0, 1), colours::digit(1, true));
}

TEST_F(FeaturePairView, TheHundredthPairIsDrawnWithoutHarm)
{
    for (int i = 0; i < 105; ++i)
        addPair({kPi, kHalfPi}, {});
    addPair({0.0, kHalfPi}, {});
    show(HotSpotWidget::FeaturePairs);
    const QImage picture = frame();
    // The strip has no tenth digit: its last column goes on.
    EXPECT_EQ(glyph(picture, pairs.list[105].marker_0, 0), colours::digit(9));
    EXPECT_EQ(glyph(picture, pairs.list[105].marker_0, 1), colours::digit(5));
}

TEST_F(FeaturePairView, APressSelectsTheFirstPairUnderTheCursor)
{
    addPair({0.5, kHalfPi}, {});
    addPair({0.0, kHalfPi}, {});
    addPair({0.01, kHalfPi}, {});
    show(HotSpotWidget::FeaturePairs);
    press(pixelOf({0.0, kHalfPi}));
    EXPECT_EQ(pairs.selected, 1);
    release(pixelOf({0.0, kHalfPi}));
    press(pixelOf({0.5, kHalfPi}));
    EXPECT_EQ(pairs.selected, 0);
}

TEST_F(FeaturePairView, ADragMovesThePairOnItsSideOnlyAndMarksNothing)
{
    for (const int side : {0, 1}) {
        pairs = {};
        addPair({0.0, kHalfPi}, {0.0, kHalfPi});
        show(HotSpotWidget::FeaturePairs, {1056, 930}, side);
        EXPECT_CALL(owner, markModified()).Times(0);
        const QRect marker = side == 0 ? pairs.list[0].marker_0 : pairs.list[0].marker_1;
        const QPoint start = marker.center(), end = start + QPoint(120, -80);
        press(start);
        moveTo(end);
        release(end);
        const auto expected = sphere::sphereFromPixel({marker.left() + 21.0 + 120, marker.top() + 21.0 - 80},
                                                      Probe::painted(*view), Probe::size(*view));
        const auto& moved = side == 0 ? pairs.list[0].point_0 : pairs.list[0].point_1;
        const auto& still = side == 0 ? pairs.list[0].point_1 : pairs.list[0].point_0;
        EXPECT_DOUBLE_EQ(moved.azimuth, expected.azimuth);
        EXPECT_DOUBLE_EQ(moved.polar, expected.polar);
        EXPECT_EQ(still.azimuth, 0.0);
        EXPECT_EQ(view->cursor().shape(), Qt::PointingHandCursor);
    }
}

TEST_F(FeaturePairView, TheHandShowsOverACross)
{
    addPair({0.2, kHalfPi}, {});
    show(HotSpotWidget::FeaturePairs);
    moveTo(pixelOf({0.2, kHalfPi}));
    EXPECT_EQ(view->cursor().shape(), Qt::PointingHandCursor);
    moveTo({20, 20});
    EXPECT_EQ(view->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(FeaturePairView, APairRemovedDuringItsDragIsLeftAlone)
{
    addPair({0.0, kHalfPi}, {});
    show(HotSpotWidget::FeaturePairs);
    press(pixelOf({0.0, kHalfPi}));
    pairs.list.clear();
    moveTo({100, 100});
    pairs.select(0);
    EXPECT_EQ(pairs.selected, -1);
}

TEST(FeaturePairSelection, AnIndexOutsideTheListSelectsNone)
{
    FeaturePairs pairs;
    pairs.list.resize(2);
    pairs.select(1);
    EXPECT_EQ(pairs.selected, 1);
    pairs.select(2);
    EXPECT_EQ(pairs.selected, -1);
    pairs.select(0);
    pairs.select(-7);
    EXPECT_EQ(pairs.selected, -1);
}
