// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Keys, wheel, buttons, full screen and the navigation map.

#include "tests/lumiscope/support/ViewerTest.h"

#include "linking/NexomapLinker.h"
#include "views/cloud/PointCloudFile.h"

#include <QToolButton>

#include <array>
#include <cmath>

using namespace lumiscope;

namespace {

class Controls : public ViewerTest
{
protected:
    Controls()
    {
        made.addStation("AAAAAAAAAAAAAB", QStringLiteral("hall"), 2, 0, 0);
        made.addStation("AAAAAAAAAAAAAC", QStringLiteral("kitchen"), 7, 4, 1);
        made.addStation("AAAAAAAAAAAAAD", QStringLiteral("yard"), -3, 7, -3);
        made.link(0, 1);
        made.link(1, 2);
    }

    MapPanel* map() const { return find<MapPanel>("map"); }
    double zoom() const { return visitor().look().zoom; }
    void press(const char* button) const
    {
        auto* widget = find<QToolButton>(button);
        click(widget, widget->rect().center());
    }
};

TEST_F(Controls, ArrowsTurnTheViewAndStopAtThePoles)
{
    open(made.save());
    const double before = heading();
    key(Qt::Key_Left, 3);
    EXPECT_GT(heading(), before + 0.1);
    key(Qt::Key_Right, 3);
    EXPECT_NEAR(heading(), before, 1e-9);
    key(Qt::Key_Up, 2);
    EXPECT_LT(visitor().look().polar, sphere::kHalfPi - 0.1);
    key(Qt::Key_Down, 30);
    EXPECT_NEAR(visitor().look().polar, sphere::kPi - 0.01, 1e-9);
}

TEST_F(Controls, PlusMinusWheelAndButtonsZoomWithinLimits)
{
    open(made.save());
    key(Qt::Key_Plus);
    EXPECT_NEAR(zoom(), 1.1, 1e-9);
    key(Qt::Key_Minus);
    EXPECT_NEAR(zoom(), 1.0, 1e-9);
    wheel(view, 60); // half a step of a fine wheel
    EXPECT_NEAR(zoom(), 1.0, 1e-9);
    wheel(view, 60);
    EXPECT_NEAR(zoom(), 1.1, 1e-9);
    press("buttonNearer");
    EXPECT_NEAR(zoom(), 1.21, 1e-9);
    press("buttonFarther");
    EXPECT_NEAR(zoom(), 1.1, 1e-9);
    key(Qt::Key_Minus, 9);
    EXPECT_EQ(zoom(), 0.5);
    wheel(view, 120 * 40);
    EXPECT_GT(zoom(), 2.0);
    EXPECT_LE(zoom(), 6.0);
}

TEST_F(Controls, OneFingerTurnsTheViewAndTapsAndTwoFingersZoom)
{
    open(made.save());
    auto fingers = QTest::touchEvent(view, QTest::createTouchDevice(), false);
    const QPoint marker = pixelOf(visitor().here().neighbours.front());
    ASSERT_TRUE(view->rect().contains(marker));
    fingers.press(0, marker, view).commit();
    fingers.release(0, marker, view).commit();
    EXPECT_TRUE(arrivesAt(1)) << "a tap on a marker walks there";

    const QPoint middle = view->rect().center();
    const double before = heading();
    fingers.press(0, middle, view).commit();
    fingers.move(0, middle + QPoint(60, 0), view).commit();
    fingers.move(0, middle + QPoint(120, 0), view).commit();
    fingers.release(0, middle + QPoint(120, 0), view).commit();
    EXPECT_GT(heading(), before + 0.05) << "what is under the finger follows it";
    EXPECT_NEAR(zoom(), 1.0, 1e-9);
    EXPECT_EQ(station(), 1);

    const double turned = heading();
    fingers.press(0, middle - QPoint(100, 0), view).press(1, middle, view).commit();
    fingers.stationary(0).move(1, middle + QPoint(50, 0), view).commit();
    EXPECT_NEAR(zoom(), 1.5, 1e-6);
    fingers.stationary(0).move(1, middle + QPoint(20, 0), view).commit();
    EXPECT_NEAR(zoom(), 1.2, 1e-6);
    fingers.release(0, middle - QPoint(100, 0), view).stationary(1).commit();
    fingers.release(1, middle + QPoint(20, 0), view).commit();
    EXPECT_NEAR(heading(), turned, 1e-6) << "two fingers do not turn";
    EXPECT_EQ(station(), 1);
}

TEST_F(Controls, F11TurnsFullScreenOnAndEscapeOff)
{
    open(made.save());
    key(Qt::Key_F11);
    EXPECT_TRUE(window->isFullScreen());
    EXPECT_TRUE(waitFor([&] { return view->size() == window->size(); }));
    key(Qt::Key_Escape);
    EXPECT_FALSE(window->isFullScreen());
    key(Qt::Key_F11);
    key(Qt::Key_F11);
    EXPECT_FALSE(window->isFullScreen());
    EXPECT_TRUE(window->isVisible());
}

TEST_F(Controls, TheMapFoldsAndUnfolds)
{
    open(made.save());
    EXPECT_TRUE(shown("map"));
    press("buttonMap");
    EXPECT_FALSE(shown("map"));
    key(Qt::Key_M);
    EXPECT_TRUE(shown("map"));
}

TEST_F(Controls, WithoutAPlanTheMapShowsTheStationsFromAbove)
{
    open(made.save());
    const auto hall = map()->placeOf(0), kitchen = map()->placeOf(1), yard = map()->placeOf(2);
    ASSERT_TRUE(hall && kitchen && yard);
    EXPECT_GT(kitchen->x(), hall->x());
    EXPECT_LT(kitchen->y(), hall->y()); // the world's y points up
    EXPECT_GT(yard->y(), hall->y());
    EXPECT_TRUE(map()->rect().contains(yard->toPoint()));
    EXPECT_NEAR(map()->coneAngle(), -heading(), 1e-9);
    key(Qt::Key_Left, 5);
    EXPECT_NEAR(std::remainder(map()->coneAngle() + heading(), 2 * sphere::kPi), 0.0, 1e-9);
}

TEST_F(Controls, TheMapShowsThePlanWithThePlacesOfItsStations)
{
    made.addPlan(QSize(1000, 600));
    open(made.save());
    ASSERT_TRUE(waitFor([&] { return !map()->sheet().picture.isNull(); }));
    EXPECT_EQ(map()->sheet().size, QSizeF(1000, 600));
    ASSERT_TRUE(map()->sheet().places[1]);
    EXPECT_EQ(*map()->sheet().places[1], QPointF(700, 250));
    EXPECT_NEAR(std::remainder(map()->coneAngle() + heading(), 2 * sphere::kPi), 0.0, 0.01);
    const QImage picture = map()->grab().toImage();
    const QPointF kitchen = *map()->placeOf(1);
    EXPECT_TRUE(sameColour(picture.pixelColor(kitchen.toPoint()), QColor(43, 140, 255), 30));
    EXPECT_TRUE(sameColour(picture.pixelColor((kitchen + QPointF(20, -20)).toPoint()), Qt::white));
}

TEST_F(Controls, TheMapShowsACloudFromAbove)
{
    // 10 x 8 metres at 100 steps a metre, floor green, a red block above it at x 3 to 4, y -2 to -1.
    cloud::Header header;
    header.setField(0, 20000); // the scene begins at x -2
    header.setField(4, 50000); // and y -5
    header.setField(12, 1);
    header.setField(20, 1000);
    header.setField(24, 800);
    header.setField(32, 1);
    header.setField(36, 1);
    std::vector<std::array<unsigned, 4>> points;
    for (unsigned x = 0; x < 1000; x += 2)
        for (unsigned y = 0; y < 800; y += 2) {
            const bool block = x >= 500 && x < 600 && y >= 300 && y < 400;
            if (block) points.push_back({x, y, 200, 1});
            points.push_back({x, y, 0, 0});
        }
    header.setPoints(static_cast<std::uint32_t>(points.size()));
    cloud::PointCloud cloud;
    ASSERT_TRUE(cloud.allocate(header));
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            cloud.plane(2 * k)[i] = static_cast<std::uint8_t>(points[i][k] % 256);
            cloud.plane(2 * k + 1)[i] = static_cast<std::uint8_t>(points[i][k] / 256);
        }
        cloud.plane(6)[i] = 0;
        cloud.plane(7)[i] = points[i][3] ? 0 : 200;
        cloud.plane(8)[i] = points[i][3] ? 200 : 0;
    }
    const QString file = made.path(QStringLiteral("A-00000000.tmp"));
    ASSERT_TRUE(cloud::writePointCloud(file, cloud));
    ASSERT_EQ(NexomapLinker(QStringLiteral(TW_PROGRAMS "/")).compressCloud(file), 0);
    for (const auto& node : made.project.panoramas)
        node->plan_src = made.path(QStringLiteral("A-00000000.cld"));

    open(made.save());
    ASSERT_TRUE(waitFor([&] { return !map()->sheet().picture.isNull(); }));
    const MapSheet& sheet = map()->sheet();
    const QPointF hall = *sheet.places[0]; // at the world's origin: 2 m from the left, 3 m from the top
    EXPECT_NEAR(hall.x() / sheet.size.width(), 0.2, 0.005);
    EXPECT_NEAR(hall.y() / sheet.size.height(), 3.0 / 8.0, 0.005);
    // A point stands at every other pixel.
    const auto at = [&](double x, double y) {
        return sheet.picture.pixelColor(sheet.fit.pixel({x, y}).toPoint() / 2 * 2);
    };
    EXPECT_EQ(at(3.5, -1.5), QColor(200, 0, 0)); // what is higher hides what is below
    EXPECT_EQ(at(5.5, -1.5), QColor(0, 200, 0));
    EXPECT_NEAR(std::remainder(map()->coneAngle() + heading(), 2 * sphere::kPi), 0.0, 1e-9);
}

TEST_F(Controls, AClickOnAStationOfTheMapGoesThere)
{
    open(made.save());
    const double before = heading();
    click(map(), map()->placeOf(2)->toPoint());
    EXPECT_TRUE(arrivesAt(2));
    EXPECT_EQ(map()->station(), 2);
    EXPECT_NEAR(heading(), before, 1e-9);
    click(map(), QPoint(3, 3));                 // beside all stations
    click(map(), map()->placeOf(2)->toPoint()); // where the visitor is
    EXPECT_FALSE(view->isWalking());
    EXPECT_EQ(station(), 2);
}

TEST_F(Controls, TheLastOfTwoQuickClicksCounts)
{
    open(made.save());
    click(map(), map()->placeOf(2)->toPoint());
    if (station() == 0) click(map(), map()->placeOf(1)->toPoint());
    const bool second = !view->isWalking();
    EXPECT_TRUE(arrivesAt(second ? 1 : 2));
}

} // namespace
