// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What ties lengths when features are not shared: the floor, few features pooled, and the heights of things.
#include "nexomap/src/graph/LengthTies.h"
#include "nexomap/src/graph/HeightLevels.h"
#include "tests/nexomap/LengthScene.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nexomap;

namespace {

TEST(LengthTies, ATableTopIsNoFloor)
{
    std::vector<double> drops;
    for (int k = 0; k < 8; ++k)
        drops.push_back(0.64 + 0.001 * k);
    for (int k = 0; k < 20; ++k)
        drops.push_back(0.8 + 0.045 * k); // legs, chairs, the wall below the window
    for (int k = 0; k < 160; ++k)
        drops.push_back(-0.5 + 0.005 * k);
    EXPECT_EQ(floorDrop(drops), 0.0);
    for (int k = 0; k < 30; ++k)
        drops.push_back(1.7 + 0.001 * k);
    EXPECT_NEAR(floorDrop(drops), 1.715, 0.01);
}

TEST(LengthTies, AStationOfItsOwnHeightKeepsItsEdgesInProportion)
{
    // The middle tripod stands 6 % higher than the others: both its edges see the floor as far below it.
    Scene scene;
    scene.stations = {{0, 0, 1.5}, {2.5, 0, 1.59}, {6.5, 0.5, 1.5}};
    scene.link(0, 1, scene.box(60, {-1, -2, 0}, {3, 2, 0}));
    scene.link(1, 2, scene.box(60, {2, -2, 0}, {7, 2, 0}));
    EXPECT_NEAR(scene.error(0, 1), 1.0, 0.005);
}

TEST(LengthTies, ThreeSharedFeaturesOfTwoPairsOfEdgesTieTheirSets)
{
    // The first two edges, and the last two, share plenty; between the sets no two edges share more than two.
    Scene scene;
    scene.stations = {{0, 0, 1.5}, {2.5, 0, 1.5}, {2.0, 2.0, 1.5}, {6.5, 0.5, 1.5}, {6.0, 3.0, 1.5}};
    const auto left = scene.box(40, {-1, -2, 1.7}, {2, 3, 2.6}),
               right = scene.box(40, {4, -2, 1.7}, {8, 3, 2.6});
    const auto door = scene.box(4, {2.2, 2.5, 0.8}, {4.5, 4.0, 2.4});
    const auto with = [](std::vector<Eigen::Vector3d> points, const Eigen::Vector3d& a,
                         const Eigen::Vector3d& b) {
        points.push_back(a);
        points.push_back(b);
        return points;
    };
    scene.link(0, 1, with(left, door[0], door[1]));
    scene.link(1, 2, with(left, door[2], door[3]));
    scene.link(1, 3, with(right, door[0], door[1]));
    scene.link(1, 4, with(right, door[2], door[3]));
    EXPECT_NEAR(scene.error(0, 2), 1.0, 0.01);
    EXPECT_NEAR(scene.error(0, 3), 1.0, 0.01);
}

TEST(LengthTies, SharedFeaturesOnOneLevelLineTieNothing)
{
    Scene scene;
    scene.stations = {{0, 0, 1.5}, {2.5, 0, 1.5}, {6.5, 0.5, 1.5}};
    const auto left = scene.box(40, {-1, -2, 1.7}, {2, 3, 2.6}),
               right = scene.box(40, {4, -2, 1.7}, {8, 3, 2.6});
    auto first = left, second = right;
    for (const Eigen::Vector3d& point : scene.box(3, {2.8, 1.0, 1.49}, {4.0, 2.0, 1.51}))
        first.push_back(point), second.push_back(point);
    scene.link(0, 1, first);
    scene.link(1, 2, second);
    int sets = 0;
    const std::vector<char> kept(2, 1);
    const std::vector<int> set = tiedSets(3, scene.edges, kept, featureTies(3, scene.edges, kept), &sets);
    EXPECT_NE(set[0], set[1]);
}

/// Three stations in a room whose lengths shared features tie, and a fourth next door.
void furnishFirstRoom(Scene* scene)
{
    scene->stations = {{0, 0, 1.5}, {2.5, 0, 1.5}, {2.0, 2.0, 1.5}, {8.0, 1.0, 1.5}};
    const auto room = scene->shelves(60, {-1, -2}, {2, 3});
    scene->link(0, 1, room);
    scene->link(1, 2, room);
}

TEST(LengthTies, ThingsAtTheSameHeightsTellALengthThatNothingElseTies)
{
    Scene scene;
    furnishFirstRoom(&scene);
    scene.link(1, 3, scene.shelves(60, {5, -2}, {9, 4}));
    EXPECT_NEAR(scene.error(0, 2), 1.0, 0.02);
}

TEST(LengthTies, PointsAtAnyHeightTellNothing)
{
    Scene scene;
    furnishFirstRoom(&scene);
    scene.link(1, 3, scene.box(60, {5, -2, 1.6}, {9, 4, 2.7}));
    LengthSets sets;
    sets.of = {1, 1, 2};
    sets.count = 3;
    sets.held = {0, 1, 0};
    sets.log_lengths = Eigen::Vector3d(std::log(scene.length(0)), std::log(scene.length(1)), 0.0);
    const std::vector<double> factors = factorsByHeights(scene.edges, {0, 0, 0, 0}, sets);
    ASSERT_EQ(factors.size(), 3u);
    EXPECT_EQ(factors[1], 0.0);
    EXPECT_TRUE(std::isnan(factors[2]));
}

TEST(LengthTies, HeightsOverruleFeaturesThatAgreeByChance)
{
    Scene scene;
    scene.stations = {{0, 0, 1.5},    {2.5, 0, 1.5},    {2.0, 2.0, 1.5}, {-0.5, 2.2, 1.5},
                      {1, -2.3, 1.5}, {-2.2, 0.4, 1.5}, {7.0, 1.0, 1.5}};
    const auto room = scene.shelves(60, {-1, -2}, {2, 3});
    for (const int j : {1, 2, 3, 4, 5})
        scene.link(0, j, room);
    // At station 0 six features of the room seem to be seen over there too, half as far again as they are.
    auto next = scene.shelves(50, {5, -2}, {9, 4});
    for (int k = 0; k < 6; ++k)
        next.push_back(scene.stations[0] + 1.5 * (room[std::size_t(k)] - scene.stations[0]));
    scene.link(0, 6, next);
    for (int k = 0; k < 6; ++k)
        scene.poses.back().inliers[std::size_t(50 + k)].bearing_0 = scene.poses.front().inliers[k].bearing_0;
    EXPECT_NEAR(scene.error(0, 5), 1.0, 0.03);
}

} // namespace
