// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/SphereZoom.h"

#include <gtest/gtest.h>

using namespace sphere;

TEST(SphereZoom, TenStepsInEndAtTheMaximum)
{
    const double limit = maxZoom(8192, 1056);
    EXPECT_DOUBLE_EQ(limit, 8192 / (1056 * 3.141592653589793));
    double zoom = 1.0;
    for (int i = 0; i < 10; ++i)
        zoom = zoomAfterWheel(zoom, 120, limit);
    EXPECT_DOUBLE_EQ(zoom, limit);
}

TEST(SphereZoom, TheMaximumIsNeverBelowOne)
{
    EXPECT_EQ(maxZoom(1024, 1920), 1.0);
    EXPECT_EQ(maxZoom(0, 1056), 1.0);
    EXPECT_EQ(zoomAfterWheel(1.0, 120, maxZoom(1024, 1920)), 1.0);
}

TEST(SphereZoom, StepsOutStopAtAHalf)
{
    double zoom = 1.0;
    for (int i = 0; i < 7; ++i) {
        const double before = zoom;
        zoom = zoomAfterWheel(zoom, -120, 2.0);
        EXPECT_DOUBLE_EQ(zoom, before * 0.9090909090909091);
    }
    for (int i = 0; i < 10; ++i)
        zoom = zoomAfterWheel(zoom, -120, 2.0);
    EXPECT_EQ(zoom, 0.5);
}

TEST(SphereZoom, OneStepPerEventWhateverTheDelta)
{
    EXPECT_DOUBLE_EQ(zoomAfterWheel(1.0, 1, 2.0), 1.1);
    EXPECT_DOUBLE_EQ(zoomAfterWheel(1.0, 12000, 2.0), 1.1);
    EXPECT_EQ(zoomAfterWheel(1.3, 0, 1.2), 1.3);
}
