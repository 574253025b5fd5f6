// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Pictures of the same place taken otherwise: light, season, colour, size, lean, furniture, bare walls.

#include "tests/nexomap/degenerate/DegenerateFixture.h"

#include <opencv2/imgproc.hpp>

using namespace nexomap;

namespace {

class DegenerateTaking : public Degenerate
{
protected:
    const RigidPose m_here = standAt(1.5, 2.8, 1.5, 0.4), m_there = standAt(4.3, 1.6, 1.52, -1.9);

    void restart()
    {
        m_panoramas.clear();
        m_truth.clear();
    }
    void expectRight(bool lidar)
    {
        ASSERT_TRUE(linked(0, 1)) << "lidar: " << lidar;
        EXPECT_LT(errorOf(0, 1).degrees, 0.5) << "lidar: " << lidar;
        EXPECT_LT(errorOf(0, 1).direction_deg, 2.0) << "lidar: " << lidar;
        if (lidar) {
            EXPECT_LT(errorOf(0, 1).metres, 0.03);
        }
    }
    /// The second of two pictures is altered.
    template <class Alter>
    void expectRightAfter(const Alter& alter, const std::vector<bool>& with_lidar = {true, false})
    {
        const BoxPlace place = furnishedRoom();
        const MadeUpRoom::Shot first = place.shoot(m_here);
        MadeUpRoom::Shot second = place.shoot(m_there);
        alter(second);
        for (const bool lidar : with_lidar) {
            restart();
            add(first, m_here, lidar);
            add(second, m_there, lidar);
            linkAll();
            expectRight(lidar);
        }
    }
};

TEST_F(DegenerateTaking, TwoStopsMoreLightIsLinkedRight)
{
    expectRightAfter([](MadeUpRoom::Shot& shot) { expose(shot, 2.0); });
}

TEST_F(DegenerateTaking, TwoStopsLessLightIsLinkedRight)
{
    expectRightAfter([](MadeUpRoom::Shot& shot) { expose(shot, -2.0); });
}

TEST_F(DegenerateTaking, DayAndNightAreLinkedRight)
{
    expectRightAfter(turnToNight);
}

TEST_F(DegenerateTaking, ABlackAndWhitePictureIsLinkedRight)
{
    expectRightAfter(takeColourAway, {false});
}

TEST_F(DegenerateTaking, SummerAndWinterAreLinkedByWhatStays)
{
    // A yard between four house fronts; ground, hedge and trees look different in winter, the fronts do not.
    const auto yard = [](bool winter) {
        const std::uint32_t season = winter ? 5000 : 0;
        BoxPlace place;
        place.box({-9, -8, -0.1}, {9, 8, 0}, 1100 + season);
        place.box({-9.1, -8, 0}, {-9, 8, 6}, 1101);
        place.box({9, -8, 0}, {9.1, 8, 6}, 1102);
        place.box({-9, -8.1, 0}, {9, -8, 5}, 1103);
        place.box({-9, 8, 0}, {9, 8.1, 7}, 1104);
        place.box({-9, -7.9, 0}, {3, -7.2, 1.6}, 1105 + season);
        place.box({4, 3, 0}, {6, 5, 4}, 1106 + season);
        return place;
    };
    for (const bool lidar : {true, false}) {
        restart();
        take(yard(false), standAt(-3.0, 1.0, 1.5, 0.4), lidar);
        take(yard(true), standAt(2.0, -1.5, 1.5, 2.4), lidar);
        linkAll();
        expectRight(lidar);
    }
}

TEST_F(DegenerateTaking, ThirtyPercentOfTheFurnitureMovedIsLinkedRight)
{
    const auto room = [](bool later) {
        BoxPlace place;
        place.room({0, 0, 0}, {6, 4.5, 2.7}, 1200);
        for (int k = 0; k < 10; ++k) {
            const double shift = later && k % 3 == 1 ? 0.35 : 0.0;
            const double x = 0.3 + 0.55 * k + shift, y = k % 2 ? 0.1 : 3.7;
            place.box({x, y, 0}, {x + 0.45, y + 0.7, 0.5 + 0.15 * k}, 1210 + std::uint32_t(k));
        }
        return place;
    };
    for (const bool lidar : {true, false}) {
        restart();
        take(room(false), m_here, lidar);
        take(room(true), m_there, lidar);
        linkAll();
        expectRight(lidar);
    }
}

TEST_F(DegenerateTaking, PicturesOfVeryDifferentSizeAreLinkedRight)
{
    const BoxPlace place = furnishedRoom();
    for (const bool lidar : {true, false}) {
        restart();
        take(place, m_here, lidar, 512);
        take(place, m_there, lidar, 3072);
        linkAll();
        expectRight(lidar);
    }
}

TEST_F(DegenerateTaking, PicturesWithoutTheirPolesAreLinkedRight)
{
    const BoxPlace place = furnishedRoom();
    const MadeUpRoom::Shot whole = place.shoot(m_here), other = place.shoot(m_there);
    add(whole, m_here, false);
    const int top = 60, bottom = 400; // of 512 rows
    std::string error;
    add(std::shared_ptr<Panorama>(buildPanorama("X", other.picture.rowRange(top, bottom).clone(),
                                                {kPi * top / 512, kPi * bottom / 512}, {}, &error)),
        m_there);
    linkAll();
    expectRight(false);
}

TEST_F(DegenerateTaking, LidarOnSomePanoramasOnlyPlacesTheOthersByTheirPictures)
{
    const BoxPlace place = furnishedRoom();
    take(place, m_here, true);
    take(place, m_there, true);
    take(place, standAt(2.6, 3.4, 1.5, 2.2), false);
    linkAll();
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    EXPECT_LT(errorOf(0, 1).metres, 0.03) << "lidar's own place is not bent by the other";
    EXPECT_LT(errorOf(0, 2).degrees, 0.5);
    EXPECT_LT(errorOf(0, 2).direction_deg, 3.0);
}

TEST_F(DegenerateTaking, TenDegreesOfLeanAreLinkedWithTheLeanOrNotAtAll)
{
    const BoxPlace place = furnishedRoom();
    for (const bool lidar : {true, false}) {
        restart();
        take(place, m_here, lidar);
        take(place, standAt(4.3, 1.6, 1.52, -1.9, 10.0 * kDegree, 0.0), lidar);
        linkAll();
        EXPECT_EQ(wrongLinks(2.0, lidar ? 0.1 : 1e9), 0) << lidar;
    }
}

TEST_F(DegenerateTaking, AnUpsideDownPictureIsNotLinkedWrong)
{
    const BoxPlace place = furnishedRoom();
    for (const bool lidar : {true, false}) {
        restart();
        take(place, m_here, lidar);
        take(place, standAt(2.9, 3.1, 1.5, 1.1), lidar);
        RigidPose hanging = m_there;
        hanging.R = hanging.R * Eigen::AngleAxisd(kPi, Eigen::Vector3d::UnitX()).toRotationMatrix();
        take(place, hanging, lidar);
        linkAll();
        EXPECT_TRUE(linked(0, 1)) << "the others do without it";
        EXPECT_EQ(wrongLinks(2.0, lidar ? 0.1 : 1e9), 0) << lidar;
    }
}

/// An angled room, so that no other place has the same walls.
BoxPlace whiteRoom()
{
    BoxPlace place;
    place.room({0, 0, 0}, {6, 4.5, 2.7}, 1300);
    place.box({0, 3.1, 0}, {2.4, 4.5, 2.7}, 1310);
    place.box({4.4, 0, 0}, {5.6, 0.6, 2.0}, 1311);
    place.blankness = 1.0;
    return place;
}

TEST_F(DegenerateTaking, AnAllWhiteRoomIsLinkedByItsShapeWithLidar)
{
    take(whiteRoom(), standAt(1.5, 2.2, 1.5, 0.4), true);
    take(whiteRoom(), standAt(4.3, 2.4, 1.52, -1.9), true);
    linkAll();
    ASSERT_TRUE(linked(0, 1));
    EXPECT_LT(errorOf(0, 1).degrees, 0.5);
    EXPECT_LT(errorOf(0, 1).metres, 0.03);
    EXPECT_LE(reliability(0, 1), 0.9) << "shape alone is never as sure as pictures";
}

TEST_F(DegenerateTaking, AnAllWhiteRoomWithoutLidarIsDeclined)
{
    take(whiteRoom(), standAt(1.5, 2.2, 1.5, 0.4), false);
    take(whiteRoom(), standAt(4.3, 2.4, 1.52, -1.9), false);
    linkAll();
    EXPECT_EQ(NexomapGetPanoMatchNum(), 0);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 2);
    EXPECT_EQ(NexomapDrawPanoMatchPng("AAAAAAAAAAAAAA", "AAAAAAAAAAAAAB"), NEXOMAP_UNKNOWN_NAME);
}

} // namespace
