// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/PairPose.h"
#include "nexomap/src/pair/Sphere.h"
#include "tests/nexomap/pair/MadeUpRoom.h"

#include <gtest/gtest.h>

using namespace nexomap;

namespace {

RigidPose poseOf(const PairPose& pose)
{
    return {pose.R_0_from_1, pose.t_0_from_1};
}

double rotationError_deg(const RigidPose& found, const RigidPose& truth)
{
    return Eigen::AngleAxisd(found.R.transpose() * truth.R).angle() / kDegree;
}

/// Two cameras in one room.
struct TwoCameras
{
    MadeUpRoom room;
    RigidPose world_from_0 = standAt(1.5, 2.5, 1.5, 0.4, 0.004, -0.003);
    RigidPose world_from_1 = standAt(4.3, 1.6, 1.52, -1.9, -0.002, 0.005);

    RigidPose truth() const
    {
        const RigidPose inverse = world_from_0.inverse();
        return {inverse.R * world_from_1.R, inverse * world_from_1.t};
    }
    std::unique_ptr<Panorama> panorama(int which, bool with_range) const
    {
        return panoramaOf(which ? "BBBBBBBBBBBBBB" : "AAAAAAAAAAAAAA",
                          room.shoot(which ? world_from_1 : world_from_0, 2048, 0.006), with_range);
    }
};

} // namespace

TEST(PairPose, WithLidarIsMetricAndRight)
{
    const TwoCameras scene;
    const auto p0 = scene.panorama(0, true), p1 = scene.panorama(1, true);
    const auto pose = matchPair(*p0, *p1);
    ASSERT_TRUE(pose);
    EXPECT_TRUE(pose->metric);
    EXPECT_LT(rotationError_deg(poseOf(*pose), scene.truth()), 0.1);
    EXPECT_LT((pose->t_0_from_1 - scene.truth().t).norm(), 0.01);
    EXPECT_GT(pose->reliability, 0.9);
    EXPECT_NEAR(p0->camera_height_m, 1.5, 0.03);
}

TEST(PairPose, WithoutLidarHasDirectionAndNoScale)
{
    const TwoCameras scene;
    const auto p0 = scene.panorama(0, false), p1 = scene.panorama(1, false);
    const auto pose = matchPair(*p0, *p1);
    ASSERT_TRUE(pose);
    EXPECT_FALSE(pose->metric);
    EXPECT_FALSE(pose->rotation_only);
    EXPECT_NEAR(pose->t_0_from_1.norm(), 1.0, 1e-9);
    EXPECT_LT(rotationError_deg(poseOf(*pose), scene.truth()), 0.2);
    EXPECT_GT(pose->t_0_from_1.dot(scene.truth().t.normalized()), std::cos(1.0 * kDegree));
}
