// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/PairPose.h"
#include "nexomap/src/pair/PairSolver.h"
#include "nexomap/src/pair/ScanAlignment.h"
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

TEST(PairPose, WhereACopyOfTheRoomHasMoreInCommonTheWallsDecide)
{
    const TwoCameras scene;
    const auto p0 = scene.panorama(0, true), p1 = scene.panorama(1, true);
    const RigidPose truth = scene.truth(), copy{truth.R, truth.t + Eigen::Vector3d(0.9, -0.6, 0.0)};
    const auto place = [](Correspondence& match, const RigidPose& pose) {
        const Eigen::Vector3d point = pose * match.point_1();
        match.bearing_0 = point.normalized();
        match.range_0 = point.norm();
    };
    std::vector<Correspondence> matches;
    for (const Correspondence& match : matchFeatures(*p0, *p1)) {
        if (!match.ranged()) continue;
        matches.push_back(match);
        place(matches.back(), matches.size() % 4 == 0 ? truth : copy);
    }
    ASSERT_GT(matches.size(), 80u);
    Evidence evidence;
    const auto pose = solvePair(*p0, *p1, matches, &evidence);
    ASSERT_TRUE(pose);
    EXPECT_LT(rotationError_deg(poseOf(*pose), truth), 0.2);
    EXPECT_LT((pose->t_0_from_1 - truth.t).norm(), 0.02);
    EXPECT_GT(pose->reliability, 0.9);
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

TEST(PairPose, TheOtherWayRoundIsTheInverse)
{
    const TwoCameras scene;
    const auto p0 = scene.panorama(0, true), p1 = scene.panorama(1, true);
    const auto there = matchPair(*p0, *p1), back = matchPair(*p1, *p0);
    ASSERT_TRUE(there && back);
    EXPECT_LT((there->R_0_from_1 * back->R_0_from_1 - Eigen::Matrix3d::Identity()).norm(), 1e-12);
    EXPECT_LT((there->R_0_from_1 * back->t_0_from_1 + there->t_0_from_1).norm(), 1e-12);
    EXPECT_EQ(there->inliers.size(), back->inliers.size());
    EXPECT_EQ(there->reliability, back->reliability);
    EXPECT_FLOAT_EQ(there->inliers[0].range_0_m, back->inliers[0].range_1_m);
}

TEST(PairPose, OneThreadAndTwoGiveTheSameToTheBit)
{
    const TwoCameras scene;
    const int threads = cv::getNumThreads();
    std::vector<std::optional<PairPose>> poses;
    std::vector<std::vector<std::uint8_t>> descriptors;
    for (const int count : {1, 2, 4}) {
        cv::setNumThreads(count);
        const auto p0 = scene.panorama(0, true), p1 = scene.panorama(1, true);
        descriptors.push_back(p0->features.descriptors);
        poses.push_back(matchPair(*p0, *p1));
        ASSERT_TRUE(poses.back());
    }
    cv::setNumThreads(threads);
    for (std::size_t i = 1; i < poses.size(); ++i) {
        EXPECT_EQ(descriptors[i], descriptors[0]);
        EXPECT_EQ(poses[i]->R_0_from_1, poses[0]->R_0_from_1);
        EXPECT_EQ(poses[i]->t_0_from_1, poses[0]->t_0_from_1);
        EXPECT_EQ(poses[i]->inliers.size(), poses[0]->inliers.size());
    }
}

TEST(PairPose, TheSamePictureTwiceIsNoMovement)
{
    const TwoCameras scene;
    const auto p0 = scene.panorama(0, false);
    auto copy = *p0;
    copy.id = "CCCCCCCCCCCCCC";
    const auto pose = matchPair(*p0, copy);
    ASSERT_TRUE(pose);
    EXPECT_TRUE(pose->rotation_only);
    EXPECT_LT(Eigen::AngleAxisd(pose->R_0_from_1).angle(), 1e-6);

    const auto with_range = scene.panorama(0, true);
    copy = *with_range;
    copy.id = "CCCCCCCCCCCCCC";
    const auto metric = matchPair(*with_range, copy);
    ASSERT_TRUE(metric);
    EXPECT_LT(metric->t_0_from_1.norm(), 1e-3);
    EXPECT_LT(Eigen::AngleAxisd(metric->R_0_from_1).angle(), 1e-4);
}

TEST(PairPose, APictureTurnedAboutTheVerticalIsAPureHeadingChange)
{
    const TwoCameras scene;
    MadeUpRoom::Shot shot = scene.room.shoot(scene.world_from_0, 2048);
    const auto p0 = panoramaOf("AAAAAAAAAAAAAA", shot, false);
    // 300 columns to the right: azimuth 0 of the turned one lies 300 columns further left in the first.
    MadeUpRoom::Shot turned{cv::Mat3b(shot.picture.size()), shot.range_mm};
    for (int x = 0; x < 2048; ++x)
        shot.picture.col(x).copyTo(turned.picture.col((x + 300) % 2048));
    const auto p1 = panoramaOf("BBBBBBBBBBBBBB", turned, false);
    const auto pose = matchPair(*p0, *p1);
    ASSERT_TRUE(pose);
    EXPECT_TRUE(pose->rotation_only);
    const Eigen::Matrix3d truth = headingRotation(2.0 * kPi * 300 / 2048);
    EXPECT_LT(Eigen::AngleAxisd(pose->R_0_from_1.transpose() * truth).angle() / kDegree, 0.02);
}

TEST(PairPose, RoomsThatHaveNothingInCommonAreRefused)
{
    const TwoCameras scene;
    TwoCameras elsewhere;
    elsewhere.room.seed = 77;
    elsewhere.room.walls = {{0, 0, 0}, {4.2, 7.0, 2.5}};
    elsewhere.room.furniture = {{{0.0, 3.0, 0.0}, {1.0, 4.0, 0.9}}};
    for (const bool with_range : {true, false}) {
        const auto p0 = scene.panorama(0, with_range), p1 = elsewhere.panorama(1, with_range);
        EXPECT_FALSE(matchPair(*p0, *p1)) << with_range;
    }
}

TEST(PairPose, BareWallsWithoutLidarAreRefused)
{
    TwoCameras scene;
    scene.room.blankness = 0.995;
    const auto p0 = scene.panorama(0, false), p1 = scene.panorama(1, false);
    EXPECT_FALSE(matchPair(*p0, *p1));
}

TEST(PairPose, NumbersThatAreNoneAndMissingFeaturesEndInRefusal)
{
    const TwoCameras scene;
    auto p0 = scene.panorama(0, true);
    const auto p1 = scene.panorama(1, true);
    for (auto& bearing : p0->features.bearings)
        bearing.x() = std::nanf("");
    EXPECT_FALSE(matchPair(*p0, *p1));
    Panorama empty;
    empty.id = "DDDDDDDDDDDDDD";
    EXPECT_FALSE(matchPair(empty, *p1));
    EXPECT_FALSE(matchPair(*p1, empty));
    EXPECT_FALSE(matchPair(empty, empty));
}

TEST(PairPose, AMapWithItsFarHalfMissingStillLinks)
{
    const TwoCameras scene;
    auto shot = scene.room.shoot(scene.world_from_0, 2048, 0.006);
    shot.range_mm.colRange(0, 900).setTo(0);
    const auto p0 = panoramaOf("AAAAAAAAAAAAAA", shot, true), p1 = scene.panorama(1, true);
    const auto pose = matchPair(*p0, *p1);
    ASSERT_TRUE(pose);
    EXPECT_LT((pose->t_0_from_1 - scene.truth().t).norm(), 0.02);
}

TEST(ScanAlignment, RangeAloneFindsThePlaceInARoomWithOneCornerCutOff)
{
    TwoCameras scene;
    scene.room.furniture.push_back(
        {{0.0, 3.1, 0.0}, {2.4, 4.5, 2.7}}); // a box room looks the same turned about
    const auto p0 = scene.panorama(0, true), p1 = scene.panorama(1, true);
    p0->features = p1->features = {}; // nothing but range
    ASSERT_FALSE(matchPair(*p0, *p1));
    const auto pose = alignScans(*p0, *p1);
    ASSERT_TRUE(pose);
    EXPECT_TRUE(pose->metric);
    EXPECT_LT(rotationError_deg(poseOf(*pose), scene.truth()), 0.3);
    EXPECT_LT((pose->t_0_from_1 - scene.truth().t).norm(), 0.02);
    const auto back = alignScans(*p1, *p0);
    ASSERT_TRUE(back);
    EXPECT_LT((poseOf(*back).inverse().t - pose->t_0_from_1).norm(), 1e-9);
}

TEST(ScanAlignment, RoomsOfOtherShapesAndPicturesWithoutRangeAreRefused)
{
    const TwoCameras scene;
    TwoCameras other;
    other.room.walls.high = {8.5, 3.1, 2.7};
    other.room.furniture = {{{6.0, 0.0, 0.0}, {7.5, 0.8, 1.4}}, {{0.4, 1.9, 0.0}, {1.2, 3.1, 2.0}}};
    const auto p0 = scene.panorama(0, true), p1 = other.panorama(1, true), bare = scene.panorama(1, false);
    EXPECT_FALSE(alignScans(*p0, *p1));
    EXPECT_FALSE(alignScans(*p0, *bare));
}
