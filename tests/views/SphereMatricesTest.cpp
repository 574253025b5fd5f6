// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/SphereMatrices.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

using namespace sphere;

namespace {

std::array<double, 3> rotated(const std::array<float, 16>& m, const std::array<double, 3>& p)
{
    std::array<double, 3> out{};
    for (std::size_t row = 0; row < 3; ++row)
        out[row] = m[row] * p[0] + m[4 + row] * p[1] + m[8 + row] * p[2];
    return out;
}

} // namespace

TEST(SphereMatrices, TheModelTurnsTheViewedDirectionOntoX)
{
    for (const double yaw : {-2.0, 0.0, 0.4, 3.0}) {
        for (const double polar : {0.01, 1.0, kHalfPi, 2.5}) {
            const auto m = modelMatrix(yaw, polar);
            const auto x = rotated(
                m, {std::cos(yaw) * std::sin(polar), std::sin(yaw) * std::sin(polar), std::cos(polar)});
            EXPECT_NEAR(x[0], 1.0, 1e-6);
            EXPECT_NEAR(x[1], 0.0, 1e-6);
            EXPECT_NEAR(x[2], 0.0, 1e-6);
            // The horizon on the left stays on the left: no roll.
            const auto y = rotated(m, {-std::sin(yaw), std::cos(yaw), 0.0});
            EXPECT_NEAR(y[1], 1.0, 1e-6);
        }
    }
}

TEST(SphereMatrices, ThePerspectiveHasTheWrittenEntriesAndZerosElsewhere)
{
    const auto m = perspectiveMatrix({1000, 500}, 1.25);
    EXPECT_NEAR(m[0], 1.25, 1e-5);
    EXPECT_NEAR(m[5], 2.5, 1e-5);
    EXPECT_EQ(m[10], -1.0001999139785767f);
    EXPECT_EQ(m[11], -1.0f);
    EXPECT_EQ(m[14], -0.20002000033855438f);
    for (const std::size_t i : {1, 2, 3, 4, 6, 7, 8, 9, 12, 13, 15})
        EXPECT_EQ(m[i], 0.0f) << i;
}

TEST(SphereMatrices, TheLargerSideSpansNinetyDegreesInBothFormats)
{
    const auto wide = perspectiveMatrix({1200, 600}, 1.0);
    EXPECT_NEAR(wide[0], 1.0, 1e-5);
    const auto tall = perspectiveMatrix({600, 1200}, 1.0);
    EXPECT_NEAR(tall[5], 1.0, 1e-5);
}
