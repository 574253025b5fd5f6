// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The grabbed point stays under the cursor: over long paths, at every zoom, as a person moves the mouse.

#include "views/sphere/SphereDrag.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace sphere;

namespace {

constexpr ViewSize kSize{1056, 930};

double missInPixels(const ViewDrag& drag, PixelPoint cursor, const Camera& camera)
{
    const PixelPoint shown = pixelFromSphere(drag.grabbed(), camera, kSize);
    return std::hypot(shown.x - cursor.x, shown.y - cursor.y);
}

} // namespace

TEST(SphereDrag, KeepsTheGrabbedPointUnderTheCursorAtEveryZoom)
{
    for (double zoom = 0.5; zoom < 2.47; zoom *= 1.1) {
        Camera camera{0.4, kHalfPi, zoom};
        ViewDrag drag;
        const auto cursorAt = [](int step) {
            const double t = step / 200.0;
            return PixelPoint{528 + 300 * std::sin(7 * t), 465 + 150 * std::sin(11 * t)};
        };
        drag.begin(screenFromPixel(cursorAt(0), kSize), camera);
        double worst = 0.0;
        for (int step = 1; step <= 2000; ++step) {
            const PixelPoint cursor = cursorAt(step);
            camera = drag.follow(screenFromPixel(cursor, kSize), camera);
            worst = std::max(worst, missInPixels(drag, cursor, camera));
        }
        EXPECT_LE(worst, 1.5) << "zoom " << zoom;
    }
}

TEST(SphereDrag, CrossesTheSeamWithoutAJump)
{
    Camera camera{kPi - 0.05, kHalfPi, 1.0};
    ViewDrag drag;
    PixelPoint cursor{900, 465};
    drag.begin(screenFromPixel(cursor, kSize), camera);
    for (int i = 0; i < 800; ++i) {
        cursor.x -= 1.0;
        const Camera before = camera;
        camera = drag.follow(screenFromPixel(cursor, kSize), camera);
        ASSERT_LT(std::abs(camera.yaw - before.yaw), 0.01);
        ASSERT_LE(missInPixels(drag, cursor, camera), 1.5);
    }
    EXPECT_LT(camera.yaw, kPi - 0.5);
}

TEST(SphereDrag, YawGrowsOnOverSeveralTurns)
{
    Camera camera;
    for (int turn = 0; turn < 12; ++turn) {
        ViewDrag drag;
        drag.begin(screenFromPixel({100, 465}, kSize), camera);
        for (int x = 110; x <= 950; x += 10)
            camera = drag.follow(screenFromPixel({double(x), 465}, kSize), camera);
    }
    EXPECT_GT(camera.yaw, 4 * kPi);
    EXPECT_NEAR(camera.polar, kHalfPi, 0.01);
}

TEST(SphereDrag, NeverProposesAPolarAngleBeyondItsLimits)
{
    for (const double direction : {-1.0, 1.0}) {
        Camera camera;
        for (int stroke = 0; stroke < 20; ++stroke) {
            ViewDrag drag;
            drag.begin(screenFromPixel({528, 465 - direction * 400}, kSize), camera);
            for (int y = -400; y <= 400; y += 8) {
                camera = drag.follow(screenFromPixel({528, 465 + direction * y}, kSize), camera);
                ASSERT_GE(camera.polar, 0.001);
                ASSERT_LE(camera.polar, 3.1405926535897932);
            }
        }
        EXPECT_NEAR(camera.polar, direction > 0 ? 0.0 : kPi, 0.05);
    }
}

TEST(SphereDrag, ACursorAtRestTurnsNothing)
{
    const Camera camera{1.0, 1.2, 1.5};
    ViewDrag drag;
    drag.begin({0.2, 0.1}, camera);
    const Camera after = drag.follow({0.2, 0.1}, camera);
    EXPECT_EQ(after.yaw, camera.yaw);
    EXPECT_EQ(after.polar, camera.polar);
}
