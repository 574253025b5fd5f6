// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Keys, wheel, buttons, full screen and the navigation map.

#include "tests/lumiscope/support/ViewerTest.h"

#include <QToolButton>

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
