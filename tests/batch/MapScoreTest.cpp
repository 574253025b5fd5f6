// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What a merged cloud and a plan are said to be worth, on a room whose every point is known.

#include "tests/batch/support/MadeUpRoom.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace {

using Point = Eigen::Vector3f;

TEST(CloudScore, APerfectCloudIsWholeAndExact)
{
    const MadeUpRoom room;
    const CloudScore score = scoreCloud(room.cloud(), room.surfaces, room.storey, room.sight());
    EXPECT_EQ(score.exact.percent(), 100.0);
    EXPECT_LT(score.percentile95_m, 1e-5);
    EXPECT_GT(score.covered.whole, 50000);
    EXPECT_EQ(score.covered.percent(), 100.0);
    EXPECT_EQ(score.above5cm, 0);
    EXPECT_GT(score.wallTops.whole, 1000);
    EXPECT_EQ(score.wallTops.percent(), 100.0);
    EXPECT_GT(score.lamps.whole, 100);
    EXPECT_EQ(score.lamps.percent(), 100.0);
}

TEST(CloudScore, APointTwoCentimetresOffIsNotExact)
{
    const MadeUpRoom room;
    std::vector<Point> cloud = room.cloud();
    for (std::size_t i = 0; i < cloud.size(); i += 2)
        cloud[i] = (cloud[i] - Point(2, 1.5f, 1.3f)) * 0.98f + Point(2, 1.5f, 1.3f);
    const CloudScore score = scoreCloud(cloud, room.surfaces, room.storey, room.sight());
    EXPECT_LT(score.exact.percent(), 70.0);
    EXPECT_GE(score.exact.percent(), 50.0);
}

TEST(CloudScore, AWallThatLacksIsUncovered)
{
    const MadeUpRoom room;
    const auto cloud = room.cloud([](const Point& p) { return p.x() < 3.99f; });
    const CloudScore score = scoreCloud(cloud, room.surfaces, room.storey, room.sight());
    EXPECT_EQ(score.exact.percent(), 100.0);
    // 3 m x 2.55 m of about 12 + 35.7 m2, less what the pillar hides and the cone below the scanner
    EXPECT_NEAR(100.0 - score.covered.percent(), 100.0 * 7.65 / 47.0, 2.5);
    EXPECT_LT(score.wallTops.percent(), 100.0);
}

TEST(CloudScore, WhatNoStationSeesIsNotMissed)
{
    const MadeUpRoom room;
    // The pillar's far sides, the floor behind it, and the floor below the scanner.
    const auto cloud = room.cloud([](const Point& p) {
        const bool shadow = p.x() > 3.41f && p.y() > 2.41f && p.z() < 0.5f;
        const bool far = p.x() > 3.39f && p.x() < 3.41f && p.y() > 1.99f && p.y() < 2.41f;
        const bool below = p.z() < 0.01f && (p.head<2>() - Eigen::Vector2f(2, 1)).norm() < 0.5f;
        return !shadow && !far && !below;
    });
    EXPECT_EQ(scoreCloud(cloud, room.surfaces, room.storey, room.sight()).covered.percent(), 100.0);
}

TEST(CloudScore, PointsAtTheCeilingAreCounted)
{
    const MadeUpRoom room;
    std::vector<Point> cloud = room.cloud();
    cloud.push_back({1, 1, 2.6f});
    cloud.push_back({1, 1, 2.551f});
    cloud.push_back({1, 1, 2.549f});
    cloud.push_back({9, 1, 2.6f}); // not in the room
    const CloudScore score = scoreCloud(cloud, room.surfaces, room.storey, room.sight());
    EXPECT_EQ(score.above5cm, 2);
    EXPECT_EQ(score.above4cm, 1);
}

TEST(CloudScore, ALampThatWentWithTheCeilingIsMissed)
{
    const MadeUpRoom room;
    const auto cloud = room.cloud([](const Point& p) { return p.z() < 2.1f; });
    const CloudScore score = scoreCloud(cloud, room.surfaces, room.storey, room.sight());
    EXPECT_LT(score.lamps.percent(), 1.0);
    EXPECT_LT(score.wallTops.percent(), 1.0);
}

TEST(CloudScore, AnEmptyCloudCoversNothing)
{
    const MadeUpRoom room;
    const CloudScore score = scoreCloud({}, room.surfaces, room.storey, room.sight());
    EXPECT_EQ(score.exact.whole, 0);
    EXPECT_EQ(score.covered.part, 0);
}

/// A plan of 1 cm pixels whose upper left corner is 0.5 m left of and above the walls.
class PlanOfARoom : public testing::Test
{
protected:
    static constexpr double kPixel_m = 0.01;

    PlanOfARoom()
        : plan(540, 440, QImage::Format_Grayscale8)
    {
        plan.fill(255);
        frame = planFrame({pixelOf({0, 0}), pixelOf({4, 3})}, {{0.005, -0.005}, {4.005, 2.995}});
    }

    static Eigen::Vector2i pixelOf(const Eigen::Vector2d& place)
    {
        return {int(std::lround((place.x() + 0.7) / kPixel_m)),
                int(std::lround((3.7 - place.y()) / kPixel_m))};
    }

    void fill(double x0, double y0, double x1, double y1)
    {
        QPainter painter(&plan);
        const Eigen::Vector2i from = pixelOf({x0, y1}), to = pixelOf({x1, y0});
        painter.fillRect(QRect(from.x(), from.y(), to.x() - from.x(), to.y() - from.y()), Qt::black);
    }

    void fillWalls()
    {
        fill(-0.2, -0.2, 4.2, 0);
        fill(-0.2, 3, 4.2, 3.2);
        fill(-0.2, 0, 0, 3);
        fill(4, 0, 4.2, 3);
    }

    PlanScore score() const { return scorePlan(plan, frame, room.storey, room.sight()); }

    MadeUpRoom room;
    QImage plan;
    PlanFrame frame;
};

TEST_F(PlanOfARoom, ThePixelSizeComesFromTheStations)
{
    EXPECT_NEAR(frame.pixel_m, kPixel_m, 1e-9);
    EXPECT_LT((frame.worldOf(70.5, 370.5) - Eigen::Vector2d(0.005, -0.005)).norm(), 1e-9);
}

TEST_F(PlanOfARoom, TheTrueWallsAreRightAndWhole)
{
    fillWalls();
    EXPECT_EQ(score().precision.percent(), 100.0);
    EXPECT_EQ(score().recall.percent(), 100.0);
    EXPECT_GT(score().recall.whole, 1200); // 14 m of faces, one place a centimetre
}

TEST_F(PlanOfARoom, WallsDrawnAsTheLinesOfTheirFacesAreRightAndWholeToo)
{
    fill(-0.02, -0.02, 4.02, 0);
    fill(-0.02, 3, 4.02, 3.02);
    fill(-0.02, 0, 0, 3);
    fill(4, 0, 4.02, 3);
    EXPECT_EQ(score().precision.percent(), 100.0);
    EXPECT_EQ(score().recall.percent(), 100.0);
}

TEST_F(PlanOfARoom, AWallThatLacksLowersTheRecall)
{
    fillWalls();
    const Eigen::Vector2i from = pixelOf({3.95, 3}), to = pixelOf({4.3, 0});
    QPainter(&plan).fillRect(from.x(), from.y(), to.x() - from.x(), to.y() - from.y(), Qt::white);
    EXPECT_NEAR(score().recall.percent(), 100.0 * 11 / 14, 1.5);
    EXPECT_EQ(score().precision.percent(), 100.0);
}

TEST_F(PlanOfARoom, FurnitureOnThePlanLowersThePrecision)
{
    fillWalls();
    const long long walls = score().precision.whole;
    fill(3, 2, 3.4, 2.4);
    EXPECT_EQ(score().precision.whole, walls + 1600);
    EXPECT_EQ(score().precision.part, walls);
    EXPECT_EQ(score().onFurniture, 1600);
}

TEST_F(PlanOfARoom, TheScaleBarOutsideAndDoorsCountNeitherWay)
{
    fillWalls();
    const long long walls = score().precision.whole;
    room.storey.openings = {{{1, 1}, {1.5, 1}, {1.5, 1.1}, {1, 1.1}}};
    fill(1, 1, 1.5, 1.1);
    plan = plan.copy(0, 0, 540, 500);
    QPainter(&plan).fillRect(QRect(20, 470, 200, 10), Qt::black);
    EXPECT_EQ(score().precision.whole, walls);
    EXPECT_EQ(score().precision.part, walls);
}

TEST_F(PlanOfARoom, AnEmptyPlanHasNoRecall)
{
    EXPECT_EQ(score().recall.part, 0);
    EXPECT_EQ(score().precision.whole, 0);
}

TEST(TriangleTree, NearestAgreesWithLookingAtEveryTriangle)
{
    const MadeUpRoom room;
    const TriangleTree all(room.surfaces, [](TruePart) { return true; });
    for (std::size_t t = 0; t < room.surfaces.triangles.size(); ++t) {
        const Point middle = (room.surfaces.at(t, 0) + room.surfaces.at(t, 1) + room.surfaces.at(t, 2)) / 3;
        const Point normal = room.surfaces.areaNormal(t).normalized();
        EXPECT_NEAR(all.nearest(middle + 0.03f * normal, 1.0f).distance, 0.03f, 1e-5f) << t;
    }
    EXPECT_EQ(all.nearest({10, 10, 10}, 1.0f).triangle, -1);
    EXPECT_EQ(all.nearest({10, 10, 10}, 1.0f).distance, 1.0f);
}

TEST(TriangleTree, AWallBlocksAndTheAirDoesNot)
{
    const MadeUpRoom room;
    const TriangleTree tree(room.surfaces, [](TruePart) { return true; });
    EXPECT_TRUE(tree.blocked({2, 1, 1.5f}, {6, 1, 1.5f}, 0.001f));
    EXPECT_FALSE(tree.blocked({2, 1, 1.5f}, {3.9f, 1, 1.5f}, 0.001f));
    EXPECT_TRUE(tree.blocked({2.5f, 2.2f, 1}, {3.9f, 2.2f, 1}, 0.001f)); // the pillar
    EXPECT_FALSE(tree.blocked({2.5f, 2.2f, 1}, {3, 2.2f, 1}, 0.001f));   // its face is the end of the way
    EXPECT_FALSE(tree.blocked({2.5f, 2.2f, 1.6f}, {3.9f, 2.2f, 1.6f}, 0.001f)); // above it
}

TEST(TriangleTree, WithoutTrianglesNothingIsNearAndNothingBlocks)
{
    const MadeUpRoom room;
    const TriangleTree none(room.surfaces, [](TruePart) { return false; });
    EXPECT_EQ(none.nearest({0, 0, 0}, 1.0f).triangle, -1);
    EXPECT_FALSE(none.blocked({2, 1, 1.5f}, {6, 1, 1.5f}, 0.001f));
}

TEST(PointCells, APointIsFoundWithinReachAcrossCellsAndBelowZero)
{
    const PointCells cells({{0.0f, 0.0f, 0.0f}, {-1.0f, 2.0f, -3.0f}}, 0.03f);
    for (const Point& way : {Point(1, 0, 0), Point(0, -1, 0), Point(0, 0, 1), Point(0, 0, -1)}) {
        EXPECT_TRUE(cells.hasPointNear(0.029f * way));
        EXPECT_FALSE(cells.hasPointNear(0.031f * way));
        EXPECT_TRUE(cells.hasPointNear(Point(-1, 2, -3) + 0.029f * way));
        EXPECT_FALSE(cells.hasPointNear(Point(-1, 2, -3) + 0.031f * way));
    }
}

} // namespace
