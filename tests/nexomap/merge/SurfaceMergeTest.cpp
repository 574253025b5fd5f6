// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What counts as a ceiling, what others see through, and lidar that cannot be read.

#include "nexomap/src/merge/SurfaceMerge.h"
#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/merge/CeilingMap.h"
#include "nexomap/src/merge/FloorHole.h"
#include "nexomap/src/RangeReading.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nexomap;

namespace {

void addUnderside(OverheadBuilder& to, double x0, double y0, double x1, double y1, double height)
{
    for (double y = y0 + 0.01; y < y1; y += 0.02)
        for (double x = x0 + 0.01; x < x1; x += 0.02)
            to.add(x, y, height);
}

/// Two rooms with ceilings of 2.6 m and 2.3 m, a door between them, a lamp and a shelf.
CeilingMap twoRooms()
{
    OverheadBuilder builder;
    addUnderside(builder, 0, 0, 4, 4, 2.6);
    addUnderside(builder, 4.14, 0, 8, 4, 2.3);
    addUnderside(builder, 4, 1, 4.14, 1.9, 2.05);   // lintel
    addUnderside(builder, 1.9, 1.9, 2.1, 2.1, 2.2); // lamp
    addUnderside(builder, 0, 3.7, 3, 4, 1.8);       // shelf, its ceiling seen too
    const Overhead overhead = builder.finish();
    return CeilingMap({&overhead}, {{2, 2}, {6, 2}});
}

std::vector<MergeStation> stationsOf(const MadeUpTour& tour, const std::vector<Panorama>& loaded)
{
    std::vector<MergeStation> stations;
    for (std::size_t k = 0; k < tour.stations.size(); ++k)
        stations.push_back({tour.stations[k].name, MadeUpTour::pathOf(int(k)), tour.stations[k].pose,
                            Eigen::Vector3d::UnitZ(), loaded.empty() ? nullptr : &loaded[k]});
    return stations;
}

/// A hall of 8 x 6 m whose ranges come as pictures; in one of them a person stands in the middle.
FrontEnd hallWithAPerson(const MadeUpTour& tour, int who_sees)
{
    FrontEnd front = tour.frontEnd();
    front.ranges = [tour, who_sees](const std::string&, const std::string& id, std::string*) {
        RangePicture picture;
        picture.unit_m = 0.001f;
        picture.steps.create(512, 1024);
        const EquirectGrid grid{1024, 512};
        for (std::size_t k = 0; k < tour.stations.size(); ++k) {
            if (tour.stations[k].name != id) continue;
            const Pose& pose = tour.stations[k].pose;
            for (int y = 0; y < 512; ++y)
                for (int x = 0; x < 1024; ++x) {
                    const Eigen::Vector3d u = grid.direction(x + 0.5, y + 0.5), d = pose.R * u;
                    double range = tour.rayRange(pose, u);
                    // A post of 25 cm radius at the origin, 1.7 m high.
                    const double a = d.head<2>().squaredNorm(), b = pose.t.head<2>().dot(d.head<2>());
                    const double c = pose.t.head<2>().squaredNorm() - 0.0625, root = b * b - a * c;
                    if (int(k) == who_sees && root > 0.0) {
                        const double near = (-b - std::sqrt(root)) / a;
                        if (near > 0.0 && (pose.t + near * d).z() < 1.7 - tour.camera_height_m)
                            range = std::min(range, near);
                    }
                    picture.steps(y, x) = std::uint16_t(range * 1000.0 + 0.5);
                }
        }
        return picture;
    };
    return front;
}

MadeUpTour hall()
{
    MadeUpTour tour;
    tour.half_width_m = 4;
    tour.half_depth_m = 3;
    tour.add(-2.0, 0.5, 0.0);
    tour.add(2.0, -0.5, 2.0);
    tour.add(0.5, 1.8, 1.0);
    return tour;
}

std::size_t pointsOnThePost(const SurfaceMerge& merge)
{
    std::size_t count = 0;
    merge.cloud().forEachBlock([&](const CloudPoint* points, std::size_t number) {
        for (std::size_t k = 0; k < number; ++k) {
            const Eigen::Vector3d p = worldOf(points[k], merge.cloud().grid());
            count += p.head<2>().norm() < 0.4 && p.z() > -1.3;
        }
    });
    return count;
}

SurfaceMergeOptions indoors()
{
    SurfaceMergeOptions options;
    options.indoor = true;
    options.cell_cm = 2;
    return options;
}

} // namespace

TEST(CeilingMap, EachRoomHasItsOwnCeiling)
{
    const CeilingMap map = twoRooms();
    EXPECT_NEAR(map.heightAt(1, 1), 2.6, 0.01);
    EXPECT_NEAR(map.heightAt(7, 1), 2.3, 0.01);
}

TEST(CeilingMap, LintelsLampsAndShelvesAreNoCeilings)
{
    const CeilingMap map = twoRooms();
    EXPECT_GT(map.heightAt(4.07, 1.5), 2.25);
    EXPECT_NEAR(map.heightAt(2, 2), 2.6, 0.01);
    EXPECT_NEAR(map.heightAt(1.5, 3.5), 2.6, 0.01);
}

TEST(CeilingMap, WhatIsSeenThroughWindowsIsOutside)
{
    const CeilingMap map = twoRooms();
    EXPECT_TRUE(map.isInside(4.07, 3.0)); // in the wall
    EXPECT_TRUE(map.isInside(-0.2, 2.0)); // window sill
    EXPECT_FALSE(map.isInside(-1.0, 2.0));
    EXPECT_FALSE(map.isInside(2.0, 9.0));
    EXPECT_TRUE(std::isinf(map.heightAt(2.0, 9.0)));
}

TEST(CeilingMap, WithoutUndersidesEverythingIsInsideAndNothingIsCut)
{
    const Overhead none;
    const CeilingMap map({&none}, {{0, 0}});
    EXPECT_TRUE(map.empty());
    EXPECT_TRUE(map.isInside(100, 100));
    EXPECT_TRUE(std::isinf(map.heightAt(0, 0)));
}

TEST(FloorHole, IsFilledLevelWithItsRimAndInItsColours)
{
    FloorHole hole(Eigen::Vector3f::UnitZ());
    for (float angle = -3.14f; angle < 3.14f; angle += 0.01f)
        for (float far = 0.55f; far < 0.8f; far += 0.02f)
            hole.add({{far * std::cos(angle), far * std::sin(angle), -1.5f}, {90.f, 80.f, 70.f}});
    const auto patches = hole.fill(0.02f);
    EXPECT_NEAR(double(patches.size()) * 0.0004, kPi * 0.55 * 0.55, 0.05);
    for (const FloorHole::Patch& patch : patches) {
        EXPECT_NEAR(double(patch.point.z()), -1.5, 1e-3);
        EXPECT_NEAR(double(patch.colour.x()), 90.0, 0.5);
    }
}

TEST(FloorHole, IsLeftOpenTowardsASideThatDoesNotAgree)
{
    FloorHole hole(Eigen::Vector3f::UnitZ());
    for (float angle = -3.14f; angle < 3.14f; angle += 0.01f)
        for (float far = 0.55f; far < 0.8f; far += 0.02f)
            hole.add({{far * std::cos(angle), far * std::sin(angle), std::cos(angle) > 0.5f ? -1.2f : -1.5f},
                      {90.f, 80.f, 70.f}});
    const auto patches = hole.fill(0.02f);
    EXPECT_FALSE(patches.empty());
    for (const FloorHole::Patch& patch : patches) // neither there nor opposite
        EXPECT_LT(std::abs(patch.point.x()), 0.6f * patch.point.head<2>().norm() + 0.05f);
}

TEST(SurfaceMerge, APersonWhomOthersLookThroughIsNotInTheCloud)
{
    const MadeUpTour tour = hall();
    const TemporaryFolder folder;
    const SurfaceMerge seen_by_one(stationsOf(tour, {}), hallWithAPerson(tour, 0), folder.path(), indoors());
    // Alone nobody contradicts.
    const std::vector<MergeStation> alone{stationsOf(tour, {}).front()};
    const SurfaceMerge unopposed(alone, hallWithAPerson(tour, 0), folder.path(), indoors());
    ASSERT_GT(pointsOnThePost(unopposed), 1000u);
    EXPECT_LT(20 * pointsOnThePost(seen_by_one), pointsOnThePost(unopposed));
}

TEST(SurfaceMerge, APanoramaWhoseLidarCannotBeReadIsLeftOutWithAReason)
{
    const MadeUpTour tour = hall();
    const TemporaryFolder folder;
    FrontEnd front = hallWithAPerson(tour, -1);
    const auto whole = front.ranges;
    front.ranges = [whole](const std::string& path, const std::string& id, std::string* error) {
        if (id != MadeUpTour::nameOf(1)) return whole(path, id, error);
        *error = path + ": 200 of 512 tiles of its lidar cannot be read";
        return RangePicture{};
    };
    const SurfaceMerge merge(stationsOf(tour, {}), front, folder.path(), indoors());
    ASSERT_EQ(merge.leftOut().size(), 1u);
    EXPECT_NE(merge.leftOut()[0].find("200 of 512"), std::string::npos);
    EXPECT_GT(merge.cloud().size(), 10000u);
}

TEST(SurfaceMerge, RangesOfNoiseAreLeftOutAndNothingStaysBehind)
{
    const MadeUpTour tour = hall();
    const TemporaryFolder folder;
    FrontEnd front = tour.frontEnd();
    front.ranges = [](const std::string&, const std::string&, std::string*) {
        RangePicture picture;
        picture.unit_m = 0.001f;
        picture.steps.create(512, 1024);
        cv::theRNG().state = 7;
        cv::randu(picture.steps, 0, 65536);
        return picture;
    };
    try {
        const SurfaceMerge merge(stationsOf(tour, {}), front, folder.path(), indoors());
        FAIL() << merge.cloud().size();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status(), NEXOMAP_CANNOT_SOLVE);
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST(RangeReading, FilesThatAreGoneOrNoPanoramasAreRefusedWithAReason)
{
    const TemporaryFolder folder;
    std::string error;
    EXPECT_TRUE(readRanges((folder / "gone.pno").string(), "AAAAAAAAAAAAAA", &error).empty());
    EXPECT_FALSE(error.empty());
    writeFile(folder / "no.pno", Bytes(5000, 0x55));
    error.clear();
    EXPECT_TRUE(readRanges((folder / "no.pno").string(), "AAAAAAAAAAAAAA", &error).empty());
    EXPECT_FALSE(error.empty());
}
