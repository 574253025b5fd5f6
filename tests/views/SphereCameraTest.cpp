// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The projection against an independent one by rotation matrices, and against its own inverse.

#include "views/sphere/SphereCamera.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

using namespace sphere;

namespace {

using Vec = std::array<double, 3>;

Vec directionOf(SpherePoint p)
{
    return {std::cos(p.azimuth) * std::sin(p.polar), std::sin(p.azimuth) * std::sin(p.polar),
            std::cos(p.polar)};
}

double dot(const Vec& a, const Vec& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

double angleBetween(SpherePoint a, SpherePoint b)
{
    return std::acos(std::min(1.0, dot(directionOf(a), directionOf(b))));
}

/// The pinhole projection written with the camera's axes: forward, left, up.
ScreenPoint byAxes(SpherePoint point, const Camera& camera)
{
    const Vec forward = directionOf({camera.yaw, camera.polar});
    const Vec left = directionOf({camera.yaw + kHalfPi, kHalfPi});
    const Vec up = directionOf({camera.yaw, camera.polar - kHalfPi});
    const Vec ray = directionOf(point);
    const double depth = dot(ray, forward);
    return {-dot(ray, left) / depth * camera.zoom, dot(ray, up) / depth * camera.zoom};
}

} // namespace

TEST(SphereCamera, TheViewedDirectionStandsInTheMiddleOfTheScreen)
{
    for (const double yaw : {-9.0, -3.0, 0.0, 1.0, 3.1}) {
        for (const double polar : {0.01, 0.7, kHalfPi, 3.0}) {
            const PixelPoint pixel = pixelFromSphere({yaw, polar}, {yaw, polar, 1.7}, {1056, 930});
            EXPECT_NEAR(pixel.x, (1056 - 1) / 2.0, 1e-9);
            EXPECT_NEAR(pixel.y, (930 - 1) / 2.0, 1e-9);
        }
    }
}

TEST(SphereCamera, AzimuthGrowsToTheLeftAndPolarAngleDownward)
{
    const Camera camera;
    const ScreenPoint left = screenFromSphere({0.1, kHalfPi}, camera);
    EXPECT_LT(left.u, 0.0);
    EXPECT_NEAR(left.u, -std::tan(0.1), 1e-15);
    const ScreenPoint below = screenFromSphere({0.0, kHalfPi + 0.1}, camera);
    EXPECT_LT(below.v, 0.0);
    EXPECT_GT(pixelFromScreen(below, {800, 600}).y, 300.0);
}

TEST(SphereCamera, AtZoomOneTheLargerSideSpansNinetyDegrees)
{
    for (const ViewSize size : {ViewSize{1056, 930}, ViewSize{600, 1200}}) {
        const double half = std::max(size.width, size.height) / 2.0;
        const bool wide = size.width > size.height;
        const SpherePoint edge = wide ? SpherePoint{kPi / 4, kHalfPi} : SpherePoint{0.0, kHalfPi + kPi / 4};
        const PixelPoint pixel = pixelFromSphere(edge, Camera{}, size);
        const double reached = wide ? (size.width - 1) / 2.0 - pixel.x : pixel.y - (size.height - 1) / 2.0;
        EXPECT_NEAR(reached, half, 1e-9);
    }
}

TEST(SphereCamera, AgreesWithAPinholeWrittenWithAxes)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> angle(-kPi, kPi), polar(0.01, kPi - 0.01), zoom(0.5, 3.0);
    int inFront = 0;
    for (int i = 0; i < 2000; ++i) {
        const Camera camera{3.0 * angle(random), polar(random), zoom(random)};
        const SpherePoint point{angle(random), polar(random)};
        const double depth = dot(directionOf(point), directionOf({camera.yaw, camera.polar}));
        const ScreenPoint screen = screenFromSphere(point, camera);
        if (depth > 0.01) {
            const ScreenPoint expected = byAxes(point, camera);
            EXPECT_NEAR(screen.u, expected.u, 1e-9);
            EXPECT_NEAR(screen.v, expected.v, 1e-9);
            ++inFront;
        } else if (depth < 0.0) {
            EXPECT_EQ(screen.u, kBehindViewer);
            EXPECT_EQ(screen.v, kBehindViewer);
        }
    }
    EXPECT_GT(inFront, 500);
}

TEST(SphereCamera, TheInverseLeadsBackToThePoint)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> angle(-kPi, kPi), polar(0.01, kPi - 0.01), zoom(0.5, 3.0);
    std::uniform_real_distribution<double> pixel(0.0, 900.0);
    for (int i = 0; i < 2000; ++i) {
        const Camera camera{angle(random), polar(random), zoom(random)};
        const PixelPoint there{pixel(random), pixel(random)};
        const SpherePoint point = sphereFromPixel(there, camera, {1056, 930});
        const PixelPoint back = pixelFromSphere(point, camera, {1056, 930});
        EXPECT_NEAR(back.x, there.x, 1e-6);
        EXPECT_NEAR(back.y, there.y, 1e-6);
        EXPECT_LE(angleBetween(point, {camera.yaw, camera.polar}), kHalfPi);
    }
}

TEST(SphereCamera, TheSeamIsNoBorderForThePoints)
{
    const Camera towardSeam{kPi, kHalfPi, 1.0};
    const ScreenPoint onOneSide = screenFromSphere({kPi - 0.05, kHalfPi}, towardSeam);
    const ScreenPoint onTheOther = screenFromSphere({-kPi + 0.05, kHalfPi}, towardSeam);
    EXPECT_NEAR(onOneSide.u, std::tan(0.05), 1e-12);
    EXPECT_NEAR(onTheOther.u, -std::tan(0.05), 1e-12);
}

TEST(SphereCamera, APointDirectlyBehindTheViewerLiesFarOffScreen)
{
    const ScreenPoint screen = screenFromSphere({0.3 + kPi, kHalfPi}, {0.3, kHalfPi, 1.0});
    EXPECT_EQ(screen.u, 100000.0);
    EXPECT_EQ(screen.v, 100000.0);
    const PixelPoint pixel = pixelFromScreen(screen, {1056, 930});
    EXPECT_GT(pixel.x, 1e7);
    EXPECT_LT(pixel.y, -1e7);
}

TEST(SphereCamera, ACoordinateThatIsNoNumberCountsAsBehindTheViewer)
{
    EXPECT_EQ(screenFromSphere({std::nan(""), 1.0}, {}).u, kBehindViewer);
    EXPECT_EQ(screenFromSphere({0.0, INFINITY}, {}).v, kBehindViewer);
}

TEST(SphereCamera, LookingStraightUpOrDownStaysAHundredthOfARadianFromThePoles)
{
    EXPECT_DOUBLE_EQ(drawablePolar(-5.0), 0.01);
    EXPECT_DOUBLE_EQ(drawablePolar(0.001), 0.01);
    EXPECT_DOUBLE_EQ(drawablePolar(3.1405926535897932), 3.1315926535897933);
    EXPECT_DOUBLE_EQ(drawablePolar(1.0), 1.0);
}
