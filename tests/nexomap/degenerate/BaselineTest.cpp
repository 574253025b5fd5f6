// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// How far apart stations stand: not at all, a hand's breadth, a hall's length, out of each other's sight.

#include "tests/nexomap/degenerate/DegenerateFixture.h"

using namespace nexomap;

namespace {

class DegenerateBaseline : public Degenerate
{};

TEST_F(DegenerateBaseline, TwoPanoramasMakeOneLinkAndOneGroup)
{
    const BoxPlace place = furnishedRoom();
    take(place, standAt(1.5, 2.8, 1.5, 0.4), true);
    take(place, standAt(4.3, 1.6, 1.52, -1.9), true);
    linkAll();
    ASSERT_EQ(NexomapGetPanoMatchNum(), 1);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    EXPECT_LT(errorOf(0, 1).degrees, 0.2);
    EXPECT_LT(errorOf(0, 1).metres, 0.02);
    EXPECT_GT(reliability(0, 1), 0.9);
}

TEST_F(DegenerateBaseline, TheSamePictureUnderTwoNamesIsALinkOfNoLength)
{
    const BoxPlace place = furnishedRoom();
    const MadeUpRoom::Shot shot = place.shoot(standAt(1.5, 2.8, 1.5, 0.4));
    for (const bool lidar : {true, false}) {
        m_panoramas.clear();
        m_truth.clear();
        add(shot, standAt(1.5, 2.8, 1.5, 0.4), lidar);
        add(shot, standAt(1.5, 2.8, 1.5, 0.4), lidar);
        linkAll();
        ASSERT_EQ(NexomapGetPanoMatchNum(), 1) << lidar;
        EXPECT_LT(match(0).spacing, 0.01);
        EXPECT_LT(errorOf(0, 1).degrees, 0.02);
        EXPECT_GT(match(0).reliability, 0.9);
        EXPECT_TRUE(std::isfinite(match(0).rot_0 + match(0).rot_1 + match(0).icon_y0 + match(0).icon_y1));
        ASSERT_EQ(NexomapDrawPanoMatchPng(match(0).name_0.c_str(), match(0).name_1.c_str()), NEXOMAP_OK);
    }
}

TEST_F(DegenerateBaseline, APureTurnIsALinkOfNoLengthWithTheRightHeading)
{
    const BoxPlace place = furnishedRoom();
    for (const bool lidar : {true, false}) {
        m_panoramas.clear();
        m_truth.clear();
        take(place, standAt(1.5, 2.8, 1.5, 0.4), lidar);
        take(place, standAt(1.5, 2.8, 1.5, -1.7, 0.01, -0.005), lidar);
        linkAll();
        ASSERT_EQ(NexomapGetPanoMatchNum(), 1) << lidar;
        EXPECT_LT(errorOf(0, 1).degrees, 0.2);
        EXPECT_LT(match(0).spacing, 0.02);
    }
}

TEST_F(DegenerateBaseline, FiveCentimetresApartTheHeadingIsRightAndWithLidarThePlaceToo)
{
    const BoxPlace place = furnishedRoom();
    for (const bool lidar : {true, false}) {
        m_panoramas.clear();
        m_truth.clear();
        take(place, standAt(1.5, 2.8, 1.5, 0.4), lidar);
        take(place, standAt(1.54, 2.83, 1.5, 1.3), lidar);
        linkAll();
        // Without lidar the way from one to the other is hardly seen: declined, or with the right heading.
        ASSERT_EQ(NexomapGetPanoGroupNum(), 2 - NexomapGetPanoMatchNum());
        if (lidar) {
            ASSERT_TRUE(linked(0, 1));
            EXPECT_LT(errorOf(0, 1).metres, 0.02);
        }
        if (linked(0, 1)) {
            EXPECT_LT(errorOf(0, 1).degrees, 0.3);
        }
    }
}

TEST_F(DegenerateBaseline, ThirtyMetresApartInAHallIsRightOrNoLink)
{
    BoxPlace place;
    place.room({0, 0, 0}, {36, 9, 5}, 200);
    for (int k = 0; k < 6; ++k)
        place.box({5.0 * k + 2.0, k % 2 ? 0.0 : 7.5, 0}, {5.0 * k + 4.0, k % 2 ? 1.5 : 9.0, 2.2},
                  210 + std::uint32_t(k));
    for (const bool lidar : {true, false}) {
        m_panoramas.clear();
        m_truth.clear();
        take(place, standAt(3.0, 4.5, 1.5, 0.4), lidar, 2048);
        take(place, standAt(33.0, 4.0, 1.5, 2.0), lidar, 2048);
        linkAll();
        for (const MatchReport& m : matches()) {
            EXPECT_LT(errorOf(m).degrees, 1.0);
            EXPECT_LT(errorOf(m).direction_deg, 5.0);
            if (lidar) {
                EXPECT_LT(errorOf(m).metres, 0.2);
            }
        }
        EXPECT_EQ(NexomapGetPanoGroupNum(), 2 - NexomapGetPanoMatchNum());
    }
}

TEST_F(DegenerateBaseline, WithoutAnyOverlapEveryPanoramaIsAGroupOfItsOwn)
{
    const BoxPlace places[] = {furnishedRoom(100), furnishedRoom(300), furnishedRoom(500)};
    for (const bool lidar : {true, false}) {
        m_panoramas.clear();
        m_truth.clear();
        for (int k = 0; k < 3; ++k) {
            BoxPlace place = places[k];
            for (BoxPlace::Solid& solid : place.solids) // rooms of other sizes, too
                for (Eigen::Vector3d* corner : {&solid.low, &solid.high})
                    *corner = corner->cwiseProduct(Eigen::Vector3d(1.0 + 0.2 * k, 1.0 - 0.1 * k, 1.0));
            take(place, standAt(1.5 + 0.8 * k, 2.4, 1.5, 0.4 * k), lidar);
        }
        linkAll();
        EXPECT_EQ(NexomapGetPanoMatchNum(), 0) << lidar;
        EXPECT_EQ(NexomapGetPanoGroupNum(), 3) << lidar;
    }
}

} // namespace
