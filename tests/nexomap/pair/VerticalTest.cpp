// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/pair/Vertical.h"

#include "nexomap/src/pair/RangeReduction.h"
#include "nexomap/src/pair/Sphere.h"
#include "tests/nexomap/pair/MadeUpRoom.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nexomap;

namespace {

RangeMap mapOf(const RigidPose& world_from_pano)
{
    return panoramaOf("VERTICAL", MadeUpRoom().shoot(world_from_pano, 2048, 0.006), true)->range;
}

double angle_deg(const Eigen::Vector3d& a, const Eigen::Vector3d& b)
{
    return std::atan2(a.cross(b).norm(), a.dot(b)) / kDegree;
}

} // namespace

TEST(Vertical, IsToldByTheRoomWhereTheScannerLeans)
{
    for (const double lean_deg : {0.0, 3.0, 8.0}) {
        const RigidPose pose = standAt(2.0, 2.9, 1.5, 0.7, lean_deg * kDegree, -0.5 * lean_deg * kDegree);
        const Eigen::Vector3d truth = pose.R.transpose() * Eigen::Vector3d::UnitZ();
        EXPECT_LT(angle_deg(verticalOf(mapOf(pose)), truth), 1.0) << lean_deg;
    }
}

TEST(Vertical, OfAnEmptyMapIsTheFramesOwn)
{
    EXPECT_EQ(verticalOf(RangeMap()), Eigen::Vector3d(Eigen::Vector3d::UnitZ()));
}

TEST(Vertical, OfAMapOfNoiseIsTheFramesOwn)
{
    RangeMap map{cv::Mat1f(kRangeHeight, kRangeWidth), cv::Mat1b(kRangeHeight, kRangeWidth, uchar(0)), 0.001f,
                 nullptr};
    cv::randu(map.range_m, 0.5, 20.0);
    EXPECT_EQ(verticalOf(map), Eigen::Vector3d(Eigen::Vector3d::UnitZ()));
}

TEST(Vertical, TheHeightOfALeaningScannerIsFound)
{
    const auto panorama = panoramaOf(
        "LEANING",
        MadeUpRoom().shoot(standAt(2.0, 2.9, 1.55, 0.7, 6.0 * kDegree, 4.0 * kDegree), 2048, 0.006), true);
    EXPECT_NEAR(panorama->camera_height_m, 1.55, 0.03);
}

TEST(Vertical, LevellingTurnsItOntoZ)
{
    const Eigen::Vector3d up = Eigen::Vector3d(0.1, -0.05, 1.0).normalized();
    EXPECT_LT((levelling(up) * up - Eigen::Vector3d::UnitZ()).norm(), 1e-12);
}
