// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Whole merges of scenes whose right cloud is known: storeys, exposures, people, far apart rooms.

#include "nexomap/src/merge/SurfaceMerge.h"
#include "tests/nexomap/MadeUpTour.h"
#include "tests/nexomap/merge/RayScene.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nexomap;

namespace {

struct Point
{
    Eigen::Vector3d at;
    int red, green, blue;
};

std::vector<Point> pointsOf(const SurfaceMerge& merge)
{
    std::vector<Point> points;
    merge.cloud().forEachBlock([&](const CloudPoint* block, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k)
            points.push_back(
                {worldOf(block[k], merge.cloud().grid()), block[k].red, block[k].green, block[k].blue});
    });
    return points;
}

std::vector<Point> merged(const RayScene& scene, bool indoor, int cell_cm)
{
    const TemporaryFolder folder;
    SurfaceMergeOptions options;
    options.indoor = indoor;
    options.cell_cm = cell_cm;
    return pointsOf(SurfaceMerge(scene.mergeStations(), scene.frontEnd(), folder.path(), options));
}

std::size_t countIf(const std::vector<Point>& points, const std::function<bool(const Eigen::Vector3d&)>& is)
{
    return std::size_t(std::count_if(points.begin(), points.end(), [&](const Point& p) { return is(p.at); }));
}

/// A house of 8 x 6 m: floor at 0, a slab from 2.6 to 2.9 with a stairwell of 2 x 2 m in it, roof at 5.4.
RayScene twoStoreys()
{
    RayScene scene;
    scene.addRoom({-4, -3, 0}, {4, 3, 5.4});
    for (const double z : {2.6, 2.9}) {
        scene.sides.push_back({2, z, {-4, -3}, {1, 3}});
        scene.sides.push_back({2, z, {3, -3}, {4, 3}});
        scene.sides.push_back({2, z, {1, -3}, {3, -1}});
        scene.sides.push_back({2, z, {1, 1}, {3, 3}});
    }
    for (const double x : {1.0, 3.0})
        scene.sides.push_back({0, x, {-1, 2.6}, {1, 2.9}});
    for (const double y : {-1.0, 1.0})
        scene.sides.push_back({1, y, {2.6, 1}, {2.9, 3}});
    scene.stations = {{-2.5, 0.3, 1.5}, {1.9, 0.2, 1.5}, {-2.3, 1.0, 4.4}, {0.2, -1.8, 4.4}};
    return scene;
}

bool inStairwell(const Eigen::Vector3d& p)
{
    return p.x() > 0.9 && p.x() < 3.1 && std::abs(p.y()) < 1.1;
}

bool nearWall(const Eigen::Vector3d& p)
{
    return std::abs(p.x()) > 3.9 || std::abs(p.y()) > 2.9;
}

} // namespace

TEST(MergedScene, OfTwoStoreysBothCeilingsGoAndTheUpperFloorStays)
{
    const RayScene scene = twoStoreys();
    const auto inner = [](double from, double to) {
        return [from, to](const Eigen::Vector3d& p) {
            return p.z() > from && p.z() < to && !nearWall(p) && !inStairwell(p);
        };
    };
    const std::vector<Point> outdoors = merged(scene, false, 5);
    EXPECT_GT(countIf(outdoors, inner(2.55, 2.65)), 5000u); // there is something to take away
    EXPECT_GT(countIf(outdoors, inner(5.3, 5.5)), 5000u);
    const std::vector<Point> points = merged(scene, true, 5);
    EXPECT_EQ(countIf(points, inner(2.3, 2.8)), 0u);
    EXPECT_EQ(countIf(points, [](const Eigen::Vector3d& p) { return p.z() > 5.35; }), 0u);
    // 48 and 44 square metres of cells of 25 square centimetres, less what no station sees.
    EXPECT_GT(countIf(points, inner(-0.05, 0.05)), 14000u);
    EXPECT_GT(countIf(points, inner(2.85, 2.95)), 13000u);
    // The walls of the lower storey end below its ceiling, those of the upper begin on its floor.
    const auto wall = [](double from, double to) {
        return [from, to](const Eigen::Vector3d& p) { return nearWall(p) && p.z() > from && p.z() < to; };
    };
    EXPECT_GT(countIf(points, wall(2.3, 2.5)), 1500u);
    EXPECT_GT(countIf(points, wall(2.95, 3.2)), 1500u);
    EXPECT_GT(countIf(points, wall(5.0, 5.3)), 1500u);
}

TEST(MergedScene, AStairwellIsOpenAndWhatIsSeenThroughItStays)
{
    RayScene scene = twoStoreys();
    scene.stations.resize(2); // both below
    const std::vector<Point> points = merged(scene, true, 5);
    EXPECT_GT(countIf(points, [](const Eigen::Vector3d& p) { return inStairwell(p) && p.z() < 0.05; }),
              1400u); // the floor below the well
    EXPECT_GT(countIf(points, [](const Eigen::Vector3d& p) { return nearWall(p) && p.z() > 3.0; }), 1000u);
    EXPECT_EQ(countIf(points, [](const Eigen::Vector3d& p) { return p.z() > 5.35; }), 0u);
    EXPECT_EQ(countIf(points,
                      [](const Eigen::Vector3d& p) {
                          return p.z() > 2.57 && p.z() < 2.65 && !inStairwell(p) && !nearWall(p);
                      }),
              0u);
}

TEST(MergedScene, ExposuresAStopApartGiveOneColour)
{
    RayScene scene;
    scene.addRoom({-4, -3, 0}, {4, 3, 2.8});
    scene.stations = {{-2, 0.5, 1.5}, {2, -0.5, 1.5}};
    scene.exposures = {1.4, 0.7};
    const std::vector<Point> points = merged(scene, true, 5);
    ASSERT_GT(points.size(), 20000u);
    // One colour everywhere, that between the two: a factor of 2 without evening out.
    for (const Point& point : points) {
        ASSERT_NEAR(point.red, RayScene::kRed * 0.99, 6);
        ASSERT_NEAR(point.green, RayScene::kGreen * 0.99, 6);
        ASSERT_NEAR(point.blue, RayScene::kBlue * 0.99, 6);
    }
}

TEST(MergedScene, APersonWhoMovesBetweenTheStationsLeavesNoGhost)
{
    RayScene scene;
    scene.addRoom({-4, -3, 0}, {4, 3, 2.8});
    scene.stations = {{-2, 0.5, 1.5}, {2, -0.5, 1.5}, {0.5, 1.8, 1.5}};
    const std::vector<Eigen::Vector2d> stands{{0.2, 0.0}, {-0.5, -1.5}, {2.2, 1.2}};
    // A post of 25 cm radius and 1.7 m height, elsewhere each time.
    const auto post = [&](int station, const Eigen::Vector3d& d) {
        const Eigen::Vector3d from = scene.stations[std::size_t(station)];
        const Eigen::Vector2d to = from.head<2>() - stands[std::size_t(station)];
        const double a = d.head<2>().squaredNorm(), b = to.dot(d.head<2>()), c = to.squaredNorm() - 0.0625;
        const double root = b * b - a * c;
        if (!(root > 0.0)) return 0.0;
        const double near = (-b - std::sqrt(root)) / a;
        return near > 0.0 && (from + near * d).z() < 1.7 ? near : 0.0;
    };
    const auto onAPost = [&](const Eigen::Vector3d& p) {
        return p.z() > 0.15 && std::any_of(stands.begin(), stands.end(), [&](const Eigen::Vector2d& stand) {
                   return (p.head<2>() - stand).norm() < 0.4;
               });
    };
    RayScene alone = scene;
    alone.stations.resize(1);
    scene.extra = alone.extra = post;
    const std::size_t unopposed = countIf(merged(alone, true, 2), onAPost);
    ASSERT_GT(unopposed, 800u);
    const std::vector<Point> points = merged(scene, true, 2);
    EXPECT_LT(20 * countIf(points, onAPost), unopposed);
    // And the floor where they stood is there.
    EXPECT_GT(countIf(points,
                      [&](const Eigen::Vector3d& p) {
                          return p.z() < 0.03 && (p.head<2>() - stands[0]).norm() < 0.25;
                      }),
              400u);
}

TEST(MergedScene, TooLargeForSixteenBitsItHasACoarserGridAndNothingWraps)
{
    RayScene scene;
    scene.addRoom({-4, -3, 0}, {4, 3, 2.8});
    scene.addRoom({896, -3, 0}, {904, 3, 2.8});
    scene.stations = {{-1, 0.5, 1.5}, {901, -0.5, 1.5}};
    const TemporaryFolder folder;
    SurfaceMergeOptions options;
    options.cell_cm = 1;
    const SurfaceMerge merge(scene.mergeStations(), scene.frontEnd(), folder.path(), options);
    EXPECT_EQ(merge.cloud().grid().stepsPerMetre(), 50.0);
    std::array<std::size_t, 2> in_room{};
    for (const Point& point : pointsOf(merge)) {
        const bool far = point.at.x() > 450.0;
        const Eigen::Vector3d p = point.at - Eigen::Vector3d(far ? 900.0 : 0.0, 0.0, 0.0);
        const double off = std::min({std::abs(std::abs(p.x()) - 4), std::abs(std::abs(p.y()) - 3),
                                     std::abs(p.z()), std::abs(p.z() - 2.8)});
        ASSERT_LT(off, 0.03) << point.at.transpose();
        ++in_room[far];
    }
    EXPECT_GT(in_room[0], 50000u);
    EXPECT_GT(in_room[1], 50000u);
}
