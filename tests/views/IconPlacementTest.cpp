// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/IconPlacement.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace sphere;

TEST(IconPlacement, CutsTowardZeroOnBothSidesOfTheEdge)
{
    const IconRect inside = iconRect({100.9, 50.2}, 28, 28);
    EXPECT_EQ(inside.left, 86);
    EXPECT_EQ(inside.top, 36);
    EXPECT_EQ(inside.width, 28);
    EXPECT_EQ(inside.height, 28);
    const IconRect outside = iconRect({13.5, 0.2}, 28, 28);
    EXPECT_EQ(outside.left, 0);
    EXPECT_EQ(outside.top, -13);
}

TEST(IconPlacement, TheCrossIsCentredWithAWholeHalf)
{
    const IconRect cross = iconRect({100.0, 100.0}, 42, 42);
    EXPECT_EQ(cross.left, 79);
    EXPECT_EQ(cross.top, 79);
}

TEST(IconPlacement, CoordinatesWithoutMeasureStayWholeNumbers)
{
    EXPECT_EQ(iconRect({1e300, -1e300}, 28, 28).left, 1000000000);
    EXPECT_EQ(iconRect({1e300, -1e300}, 28, 28).top, -1000000000);
    EXPECT_EQ(iconRect({std::nan(""), 0.0}, 28, 28).left, 1000000000);
    EXPECT_EQ(floorMarkerRect({0.0, 0.0}, std::nan("")).width, 0);
}

TEST(IconPlacement, TheFloorMarkerIsForeshortened)
{
    const IconRect below = floorMarkerRect({500.0, 400.0}, kPi);
    EXPECT_EQ(below.width, 112);
    EXPECT_EQ(below.height, 112);
    EXPECT_EQ(below.left, 444);
    EXPECT_EQ(below.top, 344);

    const double polar = 3 * kPi / 4;
    const IconRect slanted = floorMarkerRect({500.0, 400.0}, polar);
    EXPECT_EQ(slanted.width, static_cast<int>(112 * std::cos(kPi - polar)));
    EXPECT_EQ(slanted.width, 79);
    EXPECT_TRUE(slanted.height == 55 || slanted.height == 56); // 112 / 2, give or take the last bit
    EXPECT_EQ(slanted.left, 500 - 39);

    EXPECT_EQ(floorMarkerRect({0, 0}, kHalfPi).height, 0);
    EXPECT_LT(floorMarkerRect({0, 0}, 1.0).width, 0);
}

TEST(IconPlacement, TheDigitsStandTenAndTwentyPixelsRightOfTheCross)
{
    const IconRect tens = digitRect({200.7, 100.7}, 42, 0);
    const IconRect units = digitRect({200.7, 100.7}, 42, 1);
    EXPECT_EQ(tens.left, 231);
    EXPECT_EQ(units.left, 241);
    EXPECT_EQ(tens.top, 92);
    EXPECT_EQ(tens.width, 11);
    EXPECT_EQ(tens.height, 16);
    EXPECT_EQ(tens.left + tens.width - units.left, 1); // the glyphs overlap by one pixel
}
