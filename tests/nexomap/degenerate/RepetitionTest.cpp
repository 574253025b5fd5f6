// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Places that look like themselves elsewhere: symmetry, twins, rows of doors, mirrors, glass, stairs.

#include "tests/nexomap/degenerate/DegenerateFixture.h"

using namespace nexomap;

namespace {

class DegenerateRepetition : public Degenerate
{
protected:
    void takeAll(const BoxPlace& place, const std::vector<RigidPose>& stations, bool lidar, int width = 1024)
    {
        m_panoramas.clear();
        m_truth.clear();
        for (const RigidPose& station : stations)
            take(place, station, lidar, width);
        linkAll();
    }
};

TEST_F(DegenerateRepetition, AMirrorSymmetricRoomIsLinkedTheRightWayRound)
{
    BoxPlace place;
    place.fold = BoxPlace::Fold::MirrorX;
    place.room({-3, -2.2, 0}, {3, 2.2, 2.7}, 400);
    for (const double side : {-1.0, 1.0})
        place.box({side > 0 ? 1.2 : -2.2, -2.2, 0}, {side > 0 ? 2.2 : -1.2, -1.6, 1.6}, 410);
    for (const bool lidar : {true, false}) {
        takeAll(place, {standAt(-1.6, 0.3, 1.5, 0.4), standAt(1.3, -0.2, 1.5, 2.0)}, lidar);
        EXPECT_TRUE(linked(0, 1)) << lidar;
        EXPECT_LT(errorOf(0, 1).degrees, 0.5) << lidar;
        EXPECT_LT(errorOf(0, 1).direction_deg, 3.0) << lidar;
    }
}

TEST_F(DegenerateRepetition, ARoomThatIsTheSameTurnedRoundGivesOneOfItsTwoPlacesOrNone)
{
    BoxPlace place;
    place.fold = BoxPlace::Fold::HalfTurn;
    place.room({-3, -2.2, 0}, {3, 2.2, 2.7}, 450);
    place.box({1.2, -2.2, 0}, {2.2, -1.6, 1.6}, 460);
    place.box({-2.2, 1.6, 0}, {-1.2, 2.2, 1.6}, 460);
    const RigidPose turned{headingRotation(kPi), {0, 0, 0}};
    takeAll(place, {standAt(-1.6, 0.3, 1.5, 0.4), standAt(1.2, -0.5, 1.5, 2.0)}, true);
    if (!linked(0, 1)) return;
    const RigidPose twin{turned.R * m_truth[1].R, turned.R * m_truth[1].t};
    const RigidPose is = between(found(0), found(1)), other = between(m_truth[0], twin);
    EXPECT_TRUE(errorOf(0, 1).metres < 0.05 || (is.t - other.t).norm() < 0.05) << "a third place";
}

/// Two closed rooms with the same paint and furniture, 20 m apart.
/// @param longer_m  the second's length less the first's
BoxPlace twinRooms(double longer_m = 0.0)
{
    BoxPlace place;
    for (int k = 0; k < 2; ++k) {
        const Eigen::Vector3d at(20.0 * k, 0, 0);
        place.origin = at;
        place.room(at, at + Eigen::Vector3d(6 + k * longer_m, 4.5, 2.7), 500);
        place.box(at + Eigen::Vector3d(4.0, 3.6, 0), at + Eigen::Vector3d(5.5, 4.5, 0.8), 511);
        place.box(at + Eigen::Vector3d(0.6, 0, 0), at + Eigen::Vector3d(2.0, 0.6, 2.0), 512);
    }
    return place;
}

const std::vector<RigidPose> kInTwins = {standAt(1.5, 2.8, 1.5, 0.4), standAt(4.3, 1.6, 1.5, -1.9),
                                         standAt(21.9, 2.2, 1.5, 0.9), standAt(24.6, 2.4, 1.5, 2.9)};

TEST_F(DegenerateRepetition, ClosedTwinRoomsAlikeInEverythingKeepTheirOwnLinksRight)
{
    // Nothing that can be measured tells these two rooms apart: folding one onto the other is beyond help,
    // but what was taken within one of them must stay as it is.
    takeAll(twinRooms(), kInTwins, true);
    EXPECT_LT(errorOf(0, 1).metres, 0.05);
    EXPECT_LT(errorOf(2, 3).metres, 0.05);
}

TEST_F(DegenerateRepetition, TwinRoomsOfWhichOneIsLongerStayApart)
{
    // The far wall stands elsewhere; all else agrees, and matches.
    for (const double longer_m : {0.8, 0.3, -0.5}) {
        takeAll(twinRooms(longer_m), kInTwins, true);
        EXPECT_TRUE(linked(0, 1)) << longer_m;
        EXPECT_TRUE(linked(2, 3)) << longer_m;
        EXPECT_EQ(wrongLinks(0.5, 0.05), 0) << longer_m;
        EXPECT_EQ(NexomapGetPanoGroupNum(), 2) << longer_m;
    }
}

/// Twin rooms, each with a door to a lobby of its own: one 1.2 m deep, the other 3 m.
BoxPlace twinRoomsWithLobbies()
{
    BoxPlace place;
    for (int k = 0; k < 2; ++k) {
        const Eigen::Vector3d at(20.0 * k, 0, 0);
        const auto put = [&](const Eigen::Vector3d& low, const Eigen::Vector3d& high, std::uint32_t key) {
            place.box(at + low, at + high, key);
        };
        place.origin = at;
        put({0, -4, -0.1}, {6, 4.5, 0}, 520);
        put({0, -4, 2.7}, {6, 4.5, 2.8}, 521);
        put({-0.1, -4, 0}, {0, 4.5, 2.7}, 522);
        put({6, -4, 0}, {6.1, 4.5, 2.7}, 523);
        put({0, 4.5, 0}, {6, 4.6, 2.7}, 524);
        put({0, -0.1, 0}, {2.6, 0, 2.7}, 525);
        put({3.5, -0.1, 0}, {6, 0, 2.7}, 526);
        put({2.6, -0.1, 2.1}, {3.5, 0, 2.7}, 527);
        put({4.0, 3.6, 0}, {5.5, 4.5, 0.8}, 528);
        put({0.6, 0, 0}, {2.0, 0.6, 2.0}, 529);
        const double depth = k ? 3.0 : 1.2;
        put({0, -depth - 0.1, 0}, {6, -depth, 2.7}, 530 + std::uint32_t(k));
    }
    return place;
}

TEST_F(DegenerateRepetition, TwinRoomsThatDifferInTheViewThroughTheirDoorsStayApart)
{
    // All four see some of the same part of what is behind the door.
    takeAll(twinRoomsWithLobbies(),
            {standAt(2.5, 3.0, 1.5, 0.4), standAt(3.5, 1.8, 1.5, -1.9), standAt(22.9, 2.3, 1.5, 0.9),
             standAt(23.3, 3.4, 1.5, 2.9)},
            true);
    EXPECT_TRUE(linked(0, 1));
    EXPECT_TRUE(linked(2, 3));
    EXPECT_EQ(wrongLinks(0.5, 0.05), 0);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 2);
}

/// 40 m with ten equal doors on either side.
/// @param period_m  after so many metres the walls, floor and ceiling between the doors repeat, too
BoxPlace doorCorridor(double period_m)
{
    BoxPlace place;
    for (double x = 0.0; x < 40.0; x += period_m) {
        place.origin = {x, 0, 0};
        place.box({x, -1.1, 0}, {x + period_m, -1.0, 2.6}, 600);
        place.box({x, 1.0, 0}, {x + period_m, 1.1, 2.6}, 601);
        place.box({x, -1.1, -0.1}, {x + period_m, 1.1, 0}, 602);
        place.box({x, -1.1, 2.6}, {x + period_m, 1.1, 2.7}, 603);
    }
    for (int k = 0; k < 10; ++k) {
        const double x = 4.0 * k + 1.5;
        place.origin = {x, 0, 0};
        place.box({x, -1.0, 0}, {x + 0.9, -0.9, 2.0}, 604);
        place.box({x, 0.9, 0}, {x + 0.9, 1.0, 2.0}, 604);
    }
    place.box({-0.1, -1, 0}, {0, 1, 2.6}, 610);
    place.box({40, -1, 0}, {40.1, 1, 2.6}, 620);
    return place;
}

const std::vector<RigidPose> kAlongCorridor = {standAt(4.0, 0.1, 1.5, 0.2), standAt(9.0, 0.0, 1.5, 1.5),
                                               standAt(14.5, -0.1, 1.5, 2.5)};

TEST_F(DegenerateRepetition, ACorridorOfTwentyEqualDoorsGivesNoWrongLinkWithLidar)
{
    // One door further everything is where it should be, but between the doors nothing matches.
    takeAll(doorCorridor(40.0), kAlongCorridor, true);
    EXPECT_EQ(wrongLinks(0.5, 0.05), 0);
}

TEST_F(DegenerateRepetition, ACorridorOfTwentyEqualDoorsGivesNoTurnedLinkWithoutLidar)
{
    takeAll(doorCorridor(40.0), kAlongCorridor, false);
    EXPECT_EQ(wrongLinks(3.0, 1e9), 0);
}

TEST_F(DegenerateRepetition, ACorridorThatRepeatsToTheLastStainIsAtMostSomePeriodsOff)
{
    // Nothing but the far ends tells one stretch from the next.
    constexpr double kPeriod_m = 4.0;
    takeAll(doorCorridor(kPeriod_m), {standAt(4.0, 0.1, 1.5, 0.2), standAt(21.0, -0.1, 1.5, 2.5)}, true);
    for (const MatchReport& m : matches()) {
        EXPECT_LT(errorOf(m).degrees, 0.5);
        const RigidPose is = between(found(0), found(1)), truth = between(m_truth[0], m_truth[1]);
        const Eigen::Vector3d off = m_truth[0].R * (is.t - truth.t);
        EXPECT_LT(std::hypot(off.y(), off.z()), 0.05);
        EXPECT_LT(std::abs(std::remainder(off.x(), kPeriod_m)), 0.05);
    }
}

TEST_F(DegenerateRepetition, ACircularCorridorClosesItsLoop)
{
    BoxPlace place;
    place.room({-6, -6, 0}, {6, 6, 2.7}, 700);
    place.box({-4, -4, 0}, {4, 4, 2.7}, 710);
    std::vector<RigidPose> stations;
    const Eigen::Vector2d around[] = {{-5, -5}, {0, -5}, {5, -5}, {5, 0}, {5, 5}, {0, 5}, {-5, 5}, {-5, 0}};
    for (const Eigen::Vector2d& at : around)
        stations.push_back(standAt(at.x(), at.y(), 1.5, 0.7 * double(stations.size())));
    takeAll(place, stations, true);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    EXPECT_EQ(wrongLinks(0.5, 0.03), 0);
    for (int k = 0; k < 8; ++k)
        EXPECT_LT(errorOf(0, k).metres, 0.03) << k;
}

/// A lower and an upper room, 3 m apart in height, over a shaft with eight steps.
BoxPlace stairHouse()
{
    BoxPlace place;
    place.room({0, 0, 0}, {9, 4, 5.7}, 800);
    place.box({5, 0, 0}, {9, 4, 3}, 810);     // what carries the upper floor
    place.box({0, 0, 2.7}, {2.4, 4, 3}, 811); // and a gallery above the lower one
    for (int k = 0; k < 8; ++k)
        place.box({2.6 + 0.3 * k, 1.2, 0}, {2.9 + 0.3 * k, 2.8, 0.375 * (k + 1)}, 820 + std::uint32_t(k));
    return place;
}

TEST_F(DegenerateRepetition, TwoFloorsJoinedByAStairStandAboveEachOther)
{
    takeAll(stairHouse(),
            {standAt(1.2, 2.0, 1.5, 0.3), standAt(3.8, 3.3, 1.5, 1.0), standAt(6.2, 2.2, 4.5, 2.5),
             standAt(7.8, 1.2, 4.5, -2.0)},
            true);
    EXPECT_TRUE(linked(0, 1));
    EXPECT_TRUE(linked(2, 3));
    EXPECT_EQ(wrongLinks(0.5, 0.05), 0);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    EXPECT_NEAR((found(2).t - found(0).t).z(), 3.0, 0.05);
}

TEST_F(DegenerateRepetition, AGlassWallIsSeenThroughWithoutAWrongPlace)
{
    BoxPlace place = furnishedRoom(900);
    place.box({3.0, 0, 0}, {3.02, 4.5, 2.7}, 0, BoxPlace::Kind::Glass);
    for (const bool lidar : {true, false}) {
        takeAll(place, {standAt(1.4, 2.6, 1.5, 0.4), standAt(4.6, 2.2, 1.5, -1.2)}, lidar);
        EXPECT_TRUE(linked(0, 1)) << lidar;
        EXPECT_LT(errorOf(0, 1).degrees, 0.5) << lidar;
        EXPECT_LT(errorOf(0, 1).direction_deg, 2.0) << lidar;
    }
}

TEST_F(DegenerateRepetition, ABigMirrorDoesNotPutAStationBehindIt)
{
    BoxPlace place = furnishedRoom(1000);
    place.box({5.98, 0.3, 0.2}, {6.0, 4.2, 2.4}, 0, BoxPlace::Kind::Mirror);
    for (const bool lidar : {true, false}) {
        takeAll(place, {standAt(1.6, 2.8, 1.5, 0.4), standAt(4.4, 1.6, 1.5, -1.2)}, lidar);
        EXPECT_TRUE(linked(0, 1)) << lidar;
        EXPECT_LT(errorOf(0, 1).degrees, 0.5) << lidar;
        EXPECT_LT(errorOf(0, 1).direction_deg, 2.0) << lidar;
    }
}

} // namespace
