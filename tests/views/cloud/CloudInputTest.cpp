// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Mouse and wheel of the point-cloud view.

#include "tests/views/cloud/CloudViewFixture.h"

#include <cmath>

using cloud::kFirstTilt;
using cloud::kHalfPi;
using cloud::kPi;

class CloudInput : public CloudViewFixture
{
protected:
    void showCloud()
    {
        bytes.points = CloudBytes::randomPoints(2000, 300, 300, 100);
        show();
        load();
    }
    cloud::Camera camera() const { return Probe::camera(*view); }
};

TEST_F(CloudInput, TheLeftButtonTurnsAndTiltsByTheWidth)
{
    showCloud();
    drag({300, 200}, {363, 171});
    EXPECT_DOUBLE_EQ(camera().rotation, -63 * kPi / 542);
    EXPECT_DOUBLE_EQ(camera().tilt, kFirstTilt + 29 * kHalfPi / 542);
    EXPECT_FALSE(Probe::dragging(*view));
    moveTo({100, 100});
    EXPECT_DOUBLE_EQ(camera().rotation, -63 * kPi / 542);
}

TEST_F(CloudInput, TiltStopsAtZeroAndAtHalfPi)
{
    showCloud();
    for (int stroke = 0; stroke < 3; ++stroke)
        drag({300, 100}, {300, 450});
    EXPECT_EQ(camera().tilt, 0.0);
    for (int stroke = 0; stroke < 3; ++stroke)
        drag({300, 450}, {300, 100});
    EXPECT_EQ(camera().tilt, kHalfPi);
}

TEST_F(CloudInput, TheRightButtonPansTheGroundWithTheCursor)
{
    showCloud();
    Probe::look(*view, {0.8, 0.7, 0.6, 1, 1, 0});
    const CloudDot onTheGround{150, 120, 0};
    const QPoint before = pixelOf(onTheGround);
    drag({200, 200}, {245, 168}, Qt::RightButton);
    const QPoint moved = pixelOf(onTheGround) - before;
    EXPECT_LE(std::abs(moved.x() - 45), 1);
    EXPECT_LE(std::abs(moved.y() + 32), 1);
    EXPECT_EQ(camera().rotation, 0.8);
}

TEST_F(CloudInput, PanningAtATiltWhoseCosineIsBelowAHundredthMovesOnlySideways)
{
    showCloud();
    Probe::look(*view, {0.0, kHalfPi - 0.005, 1, 0, 0, 0});
    drag({200, 200}, {250, 260}, Qt::RightButton);
    EXPECT_NEAR(camera().pan_x, 0.0, 1e-12); // ahead
    EXPECT_NEAR(camera().pan_y, 0.5, 1e-12); // to the left
}

TEST_F(CloudInput, TheMiddleButtonDoesNothing)
{
    showCloud();
    press({300, 200}, Qt::MiddleButton);
    EXPECT_FALSE(Probe::dragging(*view));
    release({300, 200}, Qt::MiddleButton);
}

TEST_F(CloudInput, ZoomStopsAtATenthAndAtOne)
{
    showCloud();
    wheel(120);
    EXPECT_EQ(camera().zoom, 1.0);
    wheel(-120);
    EXPECT_DOUBLE_EQ(camera().zoom, 0.9090909090909091);
    for (int notch = 0; notch < 40; ++notch)
        wheel(-120);
    EXPECT_EQ(camera().zoom, 0.1);
    wheel(120);
    EXPECT_DOUBLE_EQ(camera().zoom, 0.1 * 1.1);
}

TEST_F(CloudInput, TheWheelDoesNothingInBoxMode)
{
    showCloud();
    click(kBoxIcon);
    wheel(-120);
    EXPECT_EQ(camera().zoom, 1.0);
    click(kBoxIcon);
    wheel(-120);
    EXPECT_LT(camera().zoom, 1.0);
}

TEST_F(CloudInput, BoxModeNeitherTurnsNorPans)
{
    showCloud();
    click(kBoxIcon);
    drag({200, 200}, {300, 300});
    drag({200, 200}, {300, 300}, Qt::RightButton);
    EXPECT_EQ(camera().rotation, 0.0);
    EXPECT_EQ(camera().pan_x, 0.0);
}

TEST_F(CloudInput, TheSelectionFollowsTheCursorAndEndsAtTheRelease)
{
    showCloud();
    click(kBoxIcon);
    press({200, 150});
    EXPECT_EQ(Probe::selection(*view), QRect(200, 150, 0, 0));
    moveTo({260, 190});
    EXPECT_EQ(Probe::selection(*view), QRect(QPoint(200, 150), QPoint(260, 190)));
    moveTo({120, 90});
    EXPECT_EQ(Probe::selection(*view), QRect(QPoint(200, 150), QPoint(120, 90)));
    release({121, 91});
    EXPECT_EQ(Probe::selection(*view), QRect(QPoint(200, 150), QPoint(121, 91)));
    moveTo({300, 300});
    EXPECT_EQ(Probe::selection(*view), QRect(QPoint(200, 150), QPoint(121, 91)));
}

TEST_F(CloudInput, TheBoxIconTogglesTheModeAndEmptiesTheSelection)
{
    showCloud();
    click(kBoxIcon);
    EXPECT_TRUE(Probe::boxMode(*view));
    EXPECT_EQ(Probe::selection(*view), QRect(-1, -1, 0, 0)); // letting go of the icon has drawn no box
    drag({200, 150}, {300, 250});
    click(kBoxIcon);
    EXPECT_FALSE(Probe::boxMode(*view));
    EXPECT_EQ(Probe::selection(*view), QRect(-1, -1, 0, 0));
}

TEST_F(CloudInput, IconsEndAtTheirEdges)
{
    showCloud();
    for (const QPoint inside : {QPoint(14, 14), QPoint(41, 41)}) {
        const bool before = Probe::boxMode(*view);
        click(inside);
        EXPECT_NE(Probe::boxMode(*view), before);
    }
    for (const QPoint outside : {QPoint(13, 14), QPoint(42, 41), QPoint(41, 42)}) {
        click(outside);
        EXPECT_FALSE(Probe::boxMode(*view));
    }
}

TEST_F(CloudInput, TheCursorIsAHandOverTheIconsOnly)
{
    showCloud();
    const auto shapeAt = [&](QPoint at) {
        moveTo(at);
        return view->cursor().shape();
    };
    EXPECT_EQ(shapeAt(kBoxIcon), Qt::PointingHandCursor);
    EXPECT_EQ(shapeAt({200, 200}), Qt::ArrowCursor);
    EXPECT_EQ(shapeAt(kDeleteIcon), Qt::PointingHandCursor);
    press({200, 200});
    EXPECT_EQ(shapeAt(kBoxIcon), Qt::ArrowCursor); // while it drags
    release(kBoxIcon);
}

TEST_F(CloudInput, WithoutACloudNothingAnswers)
{
    show();
    EXPECT_CALL(owner, confirmPointDeletion()).Times(0);
    click(kBoxIcon);
    click(kDeleteIcon);
    drag({200, 200}, {300, 300});
    drag({200, 200}, {300, 300}, Qt::RightButton);
    wheel(-120);
    EXPECT_FALSE(Probe::boxMode(*view));
    EXPECT_EQ(camera().rotation, 0.0);
    EXPECT_EQ(camera().pan_x, 0.0);
    EXPECT_EQ(camera().zoom, 1.0);
}

TEST_F(CloudInput, ResetDuringADragEndsIt)
{
    showCloud();
    press({200, 200});
    moveTo({220, 200});
    view->ResetPointCloud();
    moveTo({300, 300});
    EXPECT_EQ(camera().rotation, 0.0);
    release({300, 300});
}
