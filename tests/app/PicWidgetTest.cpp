// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The picture viewer: fitting, zoom, dragging, painting.

#include "linking/editor/PicWidget.h"

#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

class PictureViewer : public testing::Test
{
protected:
    PictureViewer()
    {
        view.resize(400, 300);
        view.show();
        if (!QTest::qWaitForWindowExposed(&view)) qFatal("the view does not show");
    }

    QImage picture(int width, int height, Qt::GlobalColor colour = Qt::red) const
    {
        QImage image(width, height, QImage::Format_RGB888);
        image.fill(colour);
        return image;
    }

    void wheel(int delta)
    {
        const QPointF at = view.rect().center();
        QWheelEvent event(at, view.mapToGlobal(at.toPoint()), {}, {0, delta}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&view, &event);
    }

    void drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(&view, button, {}, from);
        QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, button, {});
        QCoreApplication::sendEvent(&view, &move);
        QTest::mouseRelease(&view, button, {}, to);
    }

    QColor pixel(int x, int y) { return view.grab().toImage().pixelColor(x, y); }

    PicWidget view;
};

TEST_F(PictureViewer, StartsWithoutAPictureAtHalfScaleInTheMiddle)
{
    EXPECT_EQ(view.image(), nullptr);
    EXPECT_EQ(view.scale(), 0.5);
    EXPECT_EQ(view.center(), QPointF(0.5, 0.5));
}

TEST_F(PictureViewer, WithoutAPictureItIsGray)
{
    EXPECT_EQ(pixel(200, 150), QColor(Qt::gray));
    EXPECT_EQ(pixel(0, 0), QColor(Qt::gray));
}

TEST_F(PictureViewer, AWidePictureFitsByItsWidth)
{
    const QImage image = picture(1600, 300);
    view.setImage(&image, false);
    EXPECT_EQ(view.scale(), 0.25);
}

TEST_F(PictureViewer, ATallPictureFitsByItsHeight)
{
    const QImage image = picture(400, 1200);
    view.setImage(&image, false);
    EXPECT_EQ(view.scale(), 0.25);
}

TEST_F(PictureViewer, APictureOfTheWidgetsProportionsFitsByItsHeight)
{
    const QImage image = picture(800, 600);
    view.setImage(&image, false);
    EXPECT_EQ(view.scale(), 0.5);
}

TEST_F(PictureViewer, ASmallPictureStaysAtScaleOneCenteredAndCannotBeDragged)
{
    const QImage image = picture(100, 50);
    view.setImage(&image, false);
    EXPECT_EQ(view.scale(), 1.0);
    drag({200, 150}, {260, 190});
    EXPECT_EQ(view.center(), QPointF(0.5, 0.5));
    wheel(120);
    EXPECT_EQ(view.scale(), 1.0);
    EXPECT_EQ(pixel(200, 150), QColor(Qt::red));
    EXPECT_EQ(pixel(148, 150), QColor(Qt::white));
    EXPECT_EQ(pixel(252, 150), QColor(Qt::white));
    EXPECT_EQ(pixel(152, 150), QColor(Qt::red));
    EXPECT_EQ(pixel(248, 150), QColor(Qt::red));
}

TEST_F(PictureViewer, APictureIsFramedOnWhite)
{
    const QImage image = picture(100, 50);
    view.setImage(&image, false);
    EXPECT_EQ(pixel(0, 0), QColor(Qt::black));
    EXPECT_EQ(pixel(399, 150), QColor(Qt::black));
    EXPECT_EQ(pixel(200, 299), QColor(Qt::black));
    EXPECT_EQ(pixel(1, 1), QColor(Qt::white));
}

TEST_F(PictureViewer, TheWheelGoesOneStepPerEventWhateverItsDelta)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, false);
    wheel(120);
    EXPECT_DOUBLE_EQ(view.scale(), 0.25 * 1.1);
    wheel(960);
    EXPECT_DOUBLE_EQ(view.scale(), 0.25 * 1.1 * 1.1);
    wheel(-15);
    EXPECT_DOUBLE_EQ(view.scale(), 0.25 * 1.1 * 1.1 * 0.9090909090909091);
    wheel(0);
    EXPECT_DOUBLE_EQ(view.scale(), 0.25 * 1.1 * 1.1 * 0.9090909090909091);
}

TEST_F(PictureViewer, TheWheelDownAtTheFitScaleLeavesTheScale)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, false);
    wheel(-120);
    EXPECT_EQ(view.scale(), 0.25);
}

TEST_F(PictureViewer, TheWheelUpStopsAtOneToOne)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, false);
    for (int step = 0; step < 40; ++step)
        wheel(120);
    EXPECT_EQ(view.scale(), 1.0);
}

TEST_F(PictureViewer, DraggingMovesTheCentreWithThePicture)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, false);
    for (int step = 0; step < 40; ++step)
        wheel(120);
    drag({200, 150}, {360, 90});
    EXPECT_DOUBLE_EQ(view.center().x(), 0.5 - 160.0 / 1600.0);
    EXPECT_DOUBLE_EQ(view.center().y(), 0.5 + 60.0 / 1200.0);
}

TEST_F(PictureViewer, DraggingStopsAtThePicturesEdges)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, false);
    for (int step = 0; step < 40; ++step)
        wheel(120);
    drag({200, 150}, {20000, -20000});
    EXPECT_DOUBLE_EQ(view.center().x(), 400 * 0.5 / 1600);
    EXPECT_DOUBLE_EQ(view.center().y(), 1 - 300 * 0.5 / 1200);
}

TEST_F(PictureViewer, TheOtherButtonsDoNotDrag)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, false);
    for (int step = 0; step < 40; ++step)
        wheel(120);
    drag({200, 150}, {360, 90}, Qt::RightButton);
    EXPECT_EQ(view.center(), QPointF(0.5, 0.5));
}

TEST_F(PictureViewer, ZoomingOutBringsTheCentreBackIntoItsLimits)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, false);
    for (int step = 0; step < 40; ++step)
        wheel(120);
    drag({200, 150}, {20000, 20000});
    for (int step = 0; step < 40; ++step)
        wheel(-120);
    EXPECT_EQ(view.center(), QPointF(0.5, 0.5));
}

TEST_F(PictureViewer, KeepingTheZoomClampsItToTheNewPicture)
{
    const QImage large = picture(1600, 1200);
    const QImage small = picture(500, 375);
    view.setImage(&large, false);
    wheel(120);
    const double zoomed = view.scale();
    view.setImage(&large, true);
    EXPECT_EQ(view.scale(), zoomed);
    view.setImage(&small, true);
    EXPECT_EQ(view.scale(), 0.8);
    view.setImage(&large, false);
    EXPECT_EQ(view.scale(), 0.25);
}

TEST_F(PictureViewer, TheFirstPictureWithKeptZoomStartsFromHalfScale)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, true);
    EXPECT_EQ(view.scale(), 0.5);
}

TEST_F(PictureViewer, ClearingGoesBackToTheStart)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, false);
    wheel(120);
    view.clear();
    EXPECT_EQ(view.image(), nullptr);
    EXPECT_EQ(view.scale(), 0.5);
    EXPECT_EQ(view.center(), QPointF(0.5, 0.5));
    EXPECT_EQ(pixel(200, 150), QColor(Qt::gray));
}

TEST_F(PictureViewer, AnEmptyImageIsNoPicture)
{
    const QImage none;
    view.setImage(&none, false);
    EXPECT_EQ(view.image(), nullptr);
    view.setImage(nullptr, false);
    EXPECT_EQ(pixel(200, 150), QColor(Qt::gray));
}

TEST_F(PictureViewer, EveryPartOfAFittedPictureStandsAtItsPlace)
{
    QImage image = picture(1600, 1200, Qt::blue);
    for (int y = 0; y < 600; ++y)
        for (int x = 0; x < 800; ++x)
            image.setPixelColor(x, y, Qt::green);
    view.setImage(&image, false);
    EXPECT_EQ(pixel(195, 145), QColor(Qt::green));
    EXPECT_EQ(pixel(205, 145), QColor(Qt::blue));
    EXPECT_EQ(pixel(195, 155), QColor(Qt::blue));
    EXPECT_EQ(pixel(5, 5), QColor(Qt::green));
    EXPECT_EQ(pixel(395, 295), QColor(Qt::blue));
}

TEST_F(PictureViewer, AThinLineIsSeenInAPictureMuchLargerThanTheWidget)
{
    QImage image = picture(6400, 4800, Qt::white);
    for (int x = 0; x < 6400; ++x)
        for (int y = 2401; y < 2404; ++y)
            image.setPixelColor(x, y, Qt::black);
    view.setImage(&image, false);
    int darkest = 255;
    for (int y = 145; y < 155; ++y)
        darkest = std::min(darkest, pixel(100, y).red());
    EXPECT_LT(darkest, 245);
}

TEST_F(PictureViewer, ResizingKeepsAFittedPictureFitted)
{
    const QImage image = picture(1600, 1200);
    view.setImage(&image, false);
    view.resize(800, 600);
    EXPECT_TRUE(QTest::qWaitFor([this] { return view.scale() == 0.5; }));
}

} // namespace
