// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/views/cloud/ProjectionAnew.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

using namespace cloud;

namespace {

std::vector<Camera> manyCameras()
{
    std::vector<Camera> cameras;
    for (const double rotation : {0.0, 0.7, kHalfPi, -2.5, 7.0}) {
        for (const double tilt : {0.0, kFirstTilt, 1.2, kHalfPi}) {
            for (const double zoom : {0.1, 0.6, 1.0})
                cameras.push_back({rotation, tilt, zoom, 3.5, -1.25, 66.0});
        }
    }
    return cameras;
}

} // namespace

TEST(CloudCamera, StartsAsTheViewDoes)
{
    const Camera camera;
    EXPECT_EQ(camera.rotation, 0.0);
    EXPECT_EQ(camera.tilt, 0.5235987755982988);
    EXPECT_EQ(camera.zoom, 1.0);
    EXPECT_EQ(camera.pan_x, 0.0);
    EXPECT_EQ(camera.pan_y, 0.0);
    EXPECT_EQ(camera.scale, 100.0);
    EXPECT_EQ(ViewSize().width, 542);
    EXPECT_EQ(ViewSize().height, 463);
}

TEST(CloudCamera, UnturnedTheScenesXPointsUpAndItsYToTheLeft)
{
    const Camera camera{0, 0, 1, 0, 0, 10};
    const PixelPlace origin = placeOf({0, 0, 0}, camera, {400, 300});
    EXPECT_NEAR(origin.x, 200.5, 1e-9);
    EXPECT_NEAR(origin.y, 150.5, 1e-9);
    EXPECT_NEAR(placeOf({1, 0, 0}, camera, {400, 300}).y, 140.5, 1e-9);
    EXPECT_NEAR(placeOf({0, 1, 0}, camera, {400, 300}).x, 190.5, 1e-9);
    EXPECT_NEAR(placeOf({0, 0, 5}, camera, {400, 300}).y, 150.5, 1e-9); // height shows only when tilted
}

TEST(CloudCamera, SeenHorizontallyOnlyHeightMovesAPointUp)
{
    const Camera camera{0, kHalfPi, 1, 0, 0, 10};
    EXPECT_NEAR(placeOf({9, 0, 2}, camera, {400, 300}).y, 130.5, 1e-9);
}

TEST(CloudCamera, PlacesAreThoseOfMatricesWrittenAnew)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> metres(-40, 40);
    for (const Camera& camera : manyCameras()) {
        for (const ViewSize size : {ViewSize{542, 463}, ViewSize{321, 241}, ViewSize{1001, 700}}) {
            const ScenePoint point{metres(random), metres(random), metres(random)};
            const PixelPlace found = placeOf(point, camera, size),
                             expected = anew::place(point, camera, size);
            EXPECT_NEAR(found.x, expected.x, 1e-8);
            EXPECT_NEAR(found.y, expected.y, 1e-8);
        }
    }
}

TEST(CloudCamera, ThePixelIsThePlaceCutTowardZero)
{
    const Camera camera{0, 0, 1, 0, 0, 1};
    EXPECT_EQ(pixelOf({0.25, 0, 0}, camera, {400, 300}).y, 150); // 150.25
    EXPECT_EQ(pixelOf({0, 200.75, 0}, camera, {400, 300}).x, 0); // -0.25
    EXPECT_EQ(pixelOf({0, 202, 0}, camera, {400, 300}).x, -1);   // -1.5
    EXPECT_EQ(pixelOf({1e30, -1e30, 0}, camera, {400, 300}).x, INT_MAX);
    EXPECT_EQ(pixelOf({1e30, -1e30, 0}, camera, {400, 300}).y, INT_MIN);
}

TEST(CloudCamera, TheMatrixScalesFlattensTiltsTurnsAndMoves)
{
    for (const Camera& camera : manyCameras()) {
        const ViewSize size{777, 613};
        const auto found = cameraMatrix(camera, size);
        const auto expected = anew::matrix(camera, size, 0.5 / camera.scale);
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t column = 0; column < 4; ++column)
                EXPECT_NEAR(found[4 * column + row], expected[row][column], 2e-6)
                    << row << ',' << column << " rotation " << camera.rotation << " tilt " << camera.tilt;
        }
    }
}

TEST(CloudCamera, TheMatrixKnowsNoDepth)
{
    const auto matrix = cameraMatrix({0.4, 0.9, 1, 2, 3, 100}, {542, 463});
    for (const std::size_t element : {2u, 6u, 10u, 14u, 3u, 7u, 11u})
        EXPECT_EQ(matrix[element], 0.0f);
    EXPECT_EQ(matrix[15], 1.0f);
}
