// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The visitor as plain numbers: headings, markers, walks.

#include "companions/lumiscope/scene/Visitor.h"
#include "companions/lumiscope/scene/Walk.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace lumiscope;
using sphere::kHalfPi;
using sphere::kPi;

namespace {

constexpr sphere::ViewSize kSize{1280, 800};

WalkTour twoStations(double direction_0, double direction_1)
{
    WalkTour tour;
    tour.stations.resize(2);
    tour.stations[0].node.direction = direction_0;
    tour.stations[1].node.direction = direction_1;
    tour.stations[0].neighbours.push_back({1, {0.2, 1.9}, 4.0});
    tour.stations[1].neighbours.push_back({0, {3.0, 1.9}, 4.0});
    return tour;
}

TEST(Visitor, KeepsItsHeadingFromStationToStation)
{
    for (const double turned : {0.0, 1.0, -2.5, 3.1}) {
        const WalkTour tour = twoStations(0.7, 0.7 + turned);
        Visitor visitor(&tour);
        visitor.turn(5, 2);
        const Look before = visitor.look();
        const double yaw = visitor.camera().yaw;
        visitor.goTo(1);
        EXPECT_EQ(visitor.look().heading, before.heading);
        EXPECT_EQ(visitor.look().polar, before.polar);
        EXPECT_NEAR(visitor.camera().yaw, yaw - turned, 1e-12);
    }
}

TEST(Visitor, ADragKeepsTheGrabbedPointUnderTheCursorAtAnyStation)
{
    const WalkTour tour = twoStations(2.0, -1.0);
    Visitor visitor(&tour);
    visitor.resize(kSize);
    visitor.goTo(1);
    const sphere::PixelPoint from{500, 420};
    const auto grabbed = sphere::sphereFromPixel(from, visitor.camera(), kSize);
    visitor.beginDrag(from);
    sphere::PixelPoint to = from;
    for (int i = 0; i < 20; ++i) {
        to = {to.x + 9, to.y - 4};
        visitor.drag(to);
    }
    const auto seen = sphere::pixelFromSphere(grabbed, visitor.camera(), kSize);
    EXPECT_NEAR(seen.x, to.x, 1.5);
    EXPECT_NEAR(seen.y, to.y, 1.5);
}

TEST(Visitor, LooksTowardsTheMarkerNearestToTheMiddle)
{
    WalkTour tour = twoStations(0, 0);
    tour.stations[0].neighbours.push_back({1, {-0.1, 2.9}, 5.0}); // far below the view, but ahead
    tour.stations[0].neighbours.push_back({1, {kPi, 1.9}, 6.0});
    Visitor visitor(&tour);
    visitor.resize(kSize);
    EXPECT_EQ(visitor.markerInView(), 1);
    visitor.turn(4, 0);
    EXPECT_EQ(visitor.markerInView(), 0);
    visitor.turn(-22, 0);
    EXPECT_FALSE(visitor.markerInView());
    visitor.turn(18 + 53, 0); // half a turn: azimuth and yaw lie on both sides of the seam
    EXPECT_EQ(visitor.markerInView(), 2);
}

TEST(Visitor, TakesTheMarkerUnderThePixelTheNearestOfSeveral)
{
    WalkTour tour = twoStations(0, 0);
    tour.stations[0].neighbours.push_back({1, {0.22, 1.9}, 4.2});
    Visitor visitor(&tour);
    visitor.resize(kSize);
    const MarkerSpot second = visitor.spot(tour.stations[0].neighbours[1]);
    EXPECT_EQ(visitor.markerAt(second.centre), 1);
    EXPECT_FALSE(visitor.markerAt({second.centre.x, second.centre.y - 100}));
    EXPECT_FALSE(visitor.markerAt({1e6, 1e6}));
}

TEST(FloorMarker, StandsWhereTheFloorPointIsSeen)
{
    const sphere::Camera camera{0.3, 1.7, 1.0};
    for (const sphere::SpherePoint point : {sphere::SpherePoint{0.3, 1.9}, {0.1, 1.8}, {0.7, 2.0}}) {
        const MarkerSpot spot = markerSpot(point, camera, kSize);
        const auto pixel = sphere::pixelFromSphere(point, camera, kSize);
        EXPECT_FALSE(spot.atEdge);
        EXPECT_NEAR(spot.centre.x, pixel.x, 1e-9);
        EXPECT_NEAR(spot.centre.y, pixel.y, 1e-9);
        EXPECT_TRUE(spot.target.contains(qRound(pixel.x), qRound(pixel.y)));
    }
}

TEST(FloorMarker, ItsCornersLieOnTheFloorAroundIt)
{
    const FloorMarker marker = floorMarker({1.1, 2.2});
    double x = 0, y = 0;
    for (const Vector3& corner : marker.corners()) {
        EXPECT_EQ(corner[2], -1.0f);
        EXPECT_NEAR(std::hypot(corner[0] - marker.x, corner[1] - marker.y), marker.radius * std::sqrt(2.0),
                    1e-5);
        x += corner[0] / 4.0;
        y += corner[1] / 4.0;
    }
    EXPECT_NEAR(std::atan2(y, x), 1.1, 1e-5);
    EXPECT_NEAR(std::atan2(std::hypot(x, y), -1.0), 2.2, 1e-5);
}

TEST(FloorMarker, FarMarksAreAsEasyToTakeAsNearOnes)
{
    const MarkerSpot far = markerSpot({0.0, kHalfPi + 0.07}, {}, kSize);
    EXPECT_GE(far.target.width(), kTargetWidth);
    EXPECT_GE(far.target.height(), kTargetHeight);
}

TEST(FloorMarker, PointsAboveTheHorizonCountAsFarAwayOnTheFloor)
{
    for (const double polar : {kHalfPi, 1.0, 0.0, -3.0}) {
        const MarkerSpot spot = markerSpot({0.0, polar}, {}, kSize);
        EXPECT_GT(spot.centre.y, kSize.height / 2.0) << polar;
        EXPECT_LT(spot.centre.y, kSize.height / 2.0 + 60) << polar;
        EXPECT_TRUE(std::isfinite(floorMarker({0.0, polar}).x));
    }
}

TEST(FloorMarker, AMarkBelowTheViewStandsAtItsEdgeAboveItsPlace)
{
    const MarkerSpot spot = markerSpot({0.1, 2.6}, {}, kSize);
    EXPECT_TRUE(spot.atEdge);
    EXPECT_LT(spot.centre.y, kSize.height);
    EXPECT_GT(spot.centre.y, kSize.height - 60);
    EXPECT_LT(spot.centre.x, kSize.width / 2.0); // azimuth grows to the left
    EXPECT_FALSE(spot.target.isNull());
}

TEST(FloorMarker, AMarkBehindIsNotThere)
{
    EXPECT_TRUE(markerSpot({kPi, 1.9}, {}, kSize).target.isNull());
    EXPECT_TRUE(markerSpot({2.0, 2.6}, {}, kSize).target.isNull());
}

TEST(FloorMarker, LookingStraightDownShowsTheMarkBelow)
{
    const sphere::Camera down{0.0, kPi - 0.01, 1.0};
    const MarkerSpot spot = markerSpot({1.0, kPi - 0.05}, down, kSize);
    EXPECT_FALSE(spot.atEdge);
    EXPECT_FALSE(spot.target.isNull());
}

TEST(WalkFrame, FadesFromTheOneStationToTheOther)
{
    EXPECT_EQ(walkFrame(0.0).leftBehindOpacity, 1.0f);
    EXPECT_EQ(walkFrame(0.0).leftBehindShift, 0.0);
    EXPECT_EQ(walkFrame(kWalk_s).leftBehindOpacity, 0.0f);
    EXPECT_EQ(walkFrame(kWalk_s).reachedShift, 0.0);
    EXPECT_EQ(walkFrame(100.0).leftBehindOpacity, 0.0f);
    float last = 1.1f;
    for (double t = 0.0; t <= kWalk_s; t += 0.02) {
        EXPECT_LT(walkFrame(t).leftBehindOpacity, last);
        EXPECT_LE(walkFrame(t).reachedShift, 0.0);
        last = walkFrame(t).leftBehindOpacity;
    }
}

TEST(WalkFrame, TheWayAheadKeepsItsPlaceOnTheScreenWhileTheVisitorMoves)
{
    const sphere::Camera camera{0.4, kHalfPi, 1.0};
    const auto clip_x = [&](double shift) {
        const Matrix4 m = spherePlacement(camera, kSize, 0.4, shift);
        const double x = 100 * std::cos(0.4), y = 100 * std::sin(0.4);
        return (m[0] * x + m[4] * y + m[12]) / (m[3] * x + m[7] * y + m[15]);
    };
    for (const double shift : {-0.3, -0.1, 0.0, 0.2, 0.3})
        EXPECT_NEAR(clip_x(shift), 0.0, 1e-5) << shift;
}

} // namespace
