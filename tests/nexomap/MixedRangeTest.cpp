// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Tours in which only some panoramas carry lidar.

#include "tests/nexomap/LibraryFixture.h"

using namespace nexomap;

namespace {

class MixedRange : public LibraryTest
{};

TEST_F(MixedRange, PanoramasWithoutLidarStandInMetresAmongThoseWithIt)
{
    MadeUpTour tour;
    tour.half_width_m = 7;
    tour.half_depth_m = 5;
    tour.reach_m = 6.0;
    for (int k = 0; k < 8; ++k)
        tour.add(-4.5 + 1.4 * k, k % 2 ? 1.5 : -1.2, 0.8 * k);
    link(tour, everySecondRanged(tour));
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    const Pose& first = tour.stations[0].pose;
    for (int k = 0; k < 8; ++k) {
        const Pose& truth = tour.stations[std::size_t(k)].pose;
        EXPECT_LT((first * node(k).position - truth.t).norm(), 0.05) << k;
        EXPECT_LT(rotationAngle(first.R * node(k).rotation, truth.R), 0.2 * kDegree) << k;
    }
}

TEST_F(MixedRange, AHandMadeLinkToAPanoramaWithoutLidarIsMade)
{
    MadeUpTour tour;
    tour.half_width_m = 4;
    tour.half_depth_m = 3;
    tour.reach_m = 0.0;
    tour.add(-1.5, 0.5, 0.4);
    tour.add(1.5, -0.8, -2.2);
    link(tour, everySecondRanged(tour));
    const std::string a = MadeUpTour::nameOf(0), b = MadeUpTour::nameOf(1);
    ASSERT_EQ(NexomapAddPanoMatch(a.c_str(), b.c_str()), NEXOMAP_OK);
    for (int k = 0; k < 7; ++k) {
        const Eigen::Vector3d u = directionFromAngles(0.3 + 0.9 * k, 1.1 + 0.13 * k);
        const Pose &from = tour.stations[0].pose, &to = tour.stations[1].pose;
        const Eigen::Vector3d v = to.inverse() * (from * (tour.rayRange(from, u) * u));
        ASSERT_EQ(
            NexomapAddPanoLinkPair(a.c_str(), b.c_str(), azimuthOf(u), polarOf(u), azimuthOf(v), polarOf(v)),
            NEXOMAP_OK);
    }
    ASSERT_EQ(NexomapAnalyzePanoMatchParas(a.c_str(), b.c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    const Eigen::Matrix3d turn = tour.stations[0].pose.R.transpose() * tour.stations[1].pose.R;
    EXPECT_LT(rotationAngle(node(0).rotation.transpose() * node(1).rotation, turn), 1.0 * kDegree);
    EXPECT_NEAR(match(0).spacing, (tour.stations[0].pose.t - tour.stations[1].pose.t).norm(), 0.1);
}

} // namespace
