// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A project as a visitor's tour, what is loaded when, and the map's numbers.

#include "companions/lumiscope/pictures/LoadPlan.h"
#include "companions/lumiscope/tour/MapSheet.h"
#include "companions/lumiscope/tour/PlanarFit.h"
#include "tests/linking/support/Projects.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace lumiscope;

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Three : testing::Test
{
    Three()
    {
        for (const char* identity : {"AAAAAAAAAAAAAB", "AAAAAAAAAAAAAC", "AAAAAAAAAAAAAD"})
            addPanorama(project, identity);
    }

    WalkTour tour() { return walkTour(project, {}); }

    RoamProject project;
};

TEST_F(Three, EachEndOfALinkShowsTheFloorBelowTheOther)
{
    PanoLink* link = addLink(project, "AAAAAAAAAAAAAB", "AAAAAAAAAAAAAC");
    link->rot_0 = 0.5;
    link->rot_1 = -0.25;
    link->icon_y0 = 2.1;
    link->icon_y1 = 2.2;
    link->spacing = 3.5;
    const WalkTour made = tour();
    ASSERT_EQ(made.stations[0].neighbours.size(), 1u);
    const Neighbour& second = made.stations[0].neighbours[0];
    EXPECT_EQ(second.station, 1);
    EXPECT_EQ(second.marker.azimuth, -0.5);
    EXPECT_EQ(second.marker.polar, 2.2);
    EXPECT_EQ(second.distance_m, 3.5);
    const Neighbour& first = made.stations[1].neighbours.at(0);
    EXPECT_EQ(first.station, 0);
    EXPECT_NEAR(first.marker.azimuth, 0.25 - kPi, 1e-12);
    EXPECT_EQ(first.marker.polar, 2.1);
}

TEST_F(Three, LinksToNowhereToItselfAndTwiceAreLeftOut)
{
    addLink(project, "AAAAAAAAAAAAAB", "ZZZZZZZZZZZZZZ");
    addLink(project, "AAAAAAAAAAAAAB", "AAAAAAAAAAAAAB");
    addLink(project, "AAAAAAAAAAAAAB", "AAAAAAAAAAAAAC");
    addLink(project, "AAAAAAAAAAAAAC", "AAAAAAAAAAAAAB");
    EXPECT_EQ(tour().links.size(), 1u);
    EXPECT_EQ(tour().stations[0].neighbours.size(), 1u);
    EXPECT_EQ(tour().stations[1].neighbours.size(), 1u);
}

TEST_F(Three, AnEntryOutsideTheListIsTheFirst)
{
    for (const int entry : {-1, 3, 1000000}) {
        project.entry_index = entry;
        EXPECT_EQ(tour().entry, 0);
    }
    project.entry_index = 2;
    EXPECT_EQ(tour().entry, 2);
}

TEST_F(Three, AViewAngleThatNoWindowSpansCountsAsARightAngle)
{
    for (const double angle : {0.0, -1.0, kPi, 100.0})
        EXPECT_EQ(walkTour(project, {0, 1.5, angle}).entryView.zoom, 1.0);
    EXPECT_NEAR(walkTour(project, {0, 9.0, kPi / 2}).entryView.polar, kPi, 1e-12);
}

/// Station 0 linked to ten others.
WalkTour star()
{
    WalkTour tour;
    tour.stations.resize(12);
    for (int i = 0; i < 12; ++i)
        tour.stations[static_cast<std::size_t>(i)].node.file_path = QStringLiteral("/p%1.pno").arg(i);
    for (int i = 1; i <= 10; ++i) {
        tour.stations[0].neighbours.push_back({i, {}, double(i)});
        tour.stations[static_cast<std::size_t>(i)].neighbours.push_back({0, {}, double(i)});
    }
    return tour;
}

TEST(LoadPlan, ThePlaceToBeSeenComesFirstThenItsNearestNeighbours)
{
    const auto plan = loadPlan(star(), {0, -1, true});
    ASSERT_EQ(plan.size(), std::size_t(2 + kSharpNeighbours + kCoarseNeighbours));
    EXPECT_EQ(plan[0], (PictureOrder{0, kCoarseWidth, {}}));
    EXPECT_EQ(plan[1], (PictureOrder{0, kSharpWidth, {}}));
    for (int i = 1; i <= kSharpNeighbours; ++i)
        EXPECT_EQ(plan[std::size_t(i) + 1], (PictureOrder{i, kSharpWidth, {}}));
    EXPECT_EQ(plan.back(), (PictureOrder{kSharpNeighbours + kCoarseNeighbours, kCoarseWidth, {}}));
}

TEST(LoadPlan, AWaitingWalkGoesBeforeEverything)
{
    const auto plan = loadPlan(star(), {0, 11, true});
    EXPECT_EQ(plan[0], (PictureOrder{11, kCoarseWidth, {}}));
    EXPECT_NE(std::find(plan.begin(), plan.end(), PictureOrder{0, kSharpWidth, {}}), plan.end());
}

TEST(LoadPlan, WithoutRoomForSharpPicturesAllAreCoarse)
{
    for (const PictureOrder& order : loadPlan(star(), {0, -1, false}))
        EXPECT_EQ(order.width, kCoarseWidth);
}

TEST(LoadPlan, StationsThatAreNotUnpackedYetAreLeftOut)
{
    WalkTour tour = star();
    tour.stations[0].node.file_path.clear();
    tour.stations[1].node.file_path.clear();
    for (const PictureOrder& order : loadPlan(tour, {0, -1, true}))
        EXPECT_GE(order.station, 2);
}

TEST(PlanarFit, FindsTurnScaleAndShiftOfAPlan)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> any(-5.0, 5.0);
    for (int round = 0; round < 50; ++round) {
        PlanarFit truth;
        truth.a = any(random) * 20;
        truth.b = any(random) * 20;
        truth.shift = {any(random) * 100, any(random) * 100};
        std::vector<std::pair<QPointF, QPointF>> pairs;
        for (int i = 0; i < 2 + round % 4; ++i) {
            const QPointF world(any(random), any(random));
            pairs.emplace_back(world, truth.pixel(world));
        }
        const auto fit = fitPlan(pairs);
        ASSERT_TRUE(fit);
        EXPECT_NEAR(fit->a, truth.a, 1e-6);
        EXPECT_NEAR(fit->b, truth.b, 1e-6);
        EXPECT_NEAR(fit->shift.x(), truth.shift.x(), 1e-6);
        EXPECT_NEAR(fit->shift.y(), truth.shift.y(), 1e-6);
    }
}

TEST(PlanarFit, OnePlaceAloneSaysNothing)
{
    EXPECT_FALSE(fitPlan({}));
    EXPECT_FALSE(fitPlan({{{1, 2}, {3, 4}}}));
    EXPECT_FALSE(fitPlan({{{1, 2}, {3, 4}}, {{1, 2}, {9, 9}}})); // one place in the world
    EXPECT_FALSE(fitPlan({{{1, 2}, {3, 4}}, {{5, 6}, {3, 4}}})); // one on the plan
}

TEST(PlanarFit, HeadingsTurnWithThePlan)
{
    PlanarFit upright;
    EXPECT_NEAR(upright.pictureAngle(kPi / 2), -kPi / 2, 1e-12); // the world's y is up on the picture
    PlanarFit turned;
    turned.a = 0.0;
    turned.b = 3.0; // the world's x points down on the picture
    EXPECT_NEAR(turned.pictureAngle(0.0), kPi / 2, 1e-12);
    const QPointF step = turned.pixel({1, 0}) - turned.pixel({0, 0});
    EXPECT_NEAR(std::atan2(step.y(), step.x()), turned.pictureAngle(0.0), 1e-12);
}

TEST_F(Three, StationsOfAnotherPlanAreNotOnTheSheet)
{
    project.panoramas[0]->plan_src = project.panoramas[1]->plan_src = QStringLiteral("ground.png");
    project.panoramas[2]->plan_src = QStringLiteral("upper.png");
    project.panoramas[1]->plan_center_x = 40;
    MapPicture map;
    map.plan = QStringLiteral("ground.png");
    map.size = {100, 100};
    const MapSheet sheet = mapSheet(tour(), map);
    EXPECT_EQ(sheet.places.at(1), QPointF(40, 0));
    EXPECT_FALSE(sheet.places.at(2));
}

TEST_F(Three, StationsWithoutPositionsStandSideBySide)
{
    const MapSheet sheet = stationSheet(tour());
    ASSERT_TRUE(sheet.places[0] && sheet.places[1] && sheet.places[2]);
    EXPECT_NE(*sheet.places[0], *sheet.places[1]);
    EXPECT_NE(*sheet.places[1], *sheet.places[2]);
    EXPECT_NE(*sheet.places[0], *sheet.places[2]);
}

} // namespace
