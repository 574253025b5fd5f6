// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/CloudDrag.h"

#include "views/cloud/CloudCamera.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace cloud;

TEST(CloudDrag, TheWholeWidthIsHalfATurnAndAQuarterOfTilt)
{
    const Camera press{0.5, 1.0, 1, 0, 0, 100};
    const Camera turned = rotatedBy({400, 100}, press, press, {400, 300});
    EXPECT_DOUBLE_EQ(turned.rotation, 0.5 - kPi);
    EXPECT_DOUBLE_EQ(turned.tilt, 1.0 - kHalfPi / 4); // the width is the measure of the tilt, too
}

TEST(CloudDrag, TiltStopsAtZeroAndAtHalfPi)
{
    const Camera press;
    EXPECT_EQ(rotatedBy({0, 5000}, press, press, {400, 300}).tilt, 0.0);
    EXPECT_EQ(rotatedBy({0, -5000}, press, press, {400, 300}).tilt, kHalfPi);
}

TEST(CloudDrag, PanningKeepsTheGroundUnderTheCursor)
{
    for (const double rotation : {0.0, 0.8, -2.0}) {
        for (const double tilt : {0.0, 0.5, 1.4}) {
            const Camera press{rotation, tilt, 0.7, 4, 5, 50};
            const ScenePoint ground{6, 3, 0};
            const PixelPlace before = placeOf(ground, press, {542, 463});
            const Camera panned = pannedBy({37, -21}, press, press);
            const PixelPlace after = placeOf(ground, panned, {542, 463});
            EXPECT_NEAR(after.x - before.x, 37, 1e-9);
            EXPECT_NEAR(after.y - before.y, -21, 1e-9);
        }
    }
}

TEST(CloudDrag, AtATiltWhoseCosineIsBelowAHundredthPanningMovesOnlySideways)
{
    const Camera flat{0.3, std::acos(0.0099), 1, 0, 0, 100}, steep{0.3, std::acos(0.0101), 1, 0, 0, 100};
    const auto aheadOf = [](const Camera& camera) {
        const double a = kHalfPi - camera.rotation;
        return std::sin(a) * camera.pan_x + std::cos(a) * camera.pan_y;
    };
    EXPECT_NEAR(aheadOf(pannedBy({40, 25}, flat, flat)), 0.0, 1e-12);
    EXPECT_NEAR(std::hypot(pannedBy({40, 25}, flat, flat).pan_x, pannedBy({40, 25}, flat, flat).pan_y), 0.4,
                1e-12);
    EXPECT_NEAR(aheadOf(pannedBy({40, 25}, steep, steep)), 0.25 / 0.0101, 1e-9);
}

TEST(CloudDrag, ZoomStopsAtATenthAndAtOne)
{
    double zoom = 1.0;
    EXPECT_EQ(zoomAfterWheel(zoom, 120), 1.0);
    zoom = zoomAfterWheel(zoom, -120);
    EXPECT_DOUBLE_EQ(zoom, 0.9090909090909091);
    for (int notch = 0; notch < 40; ++notch)
        zoom = zoomAfterWheel(zoom, -1);
    EXPECT_EQ(zoom, 0.1);
    EXPECT_DOUBLE_EQ(zoomAfterWheel(zoom, 1), 0.1 * 1.1);
}
