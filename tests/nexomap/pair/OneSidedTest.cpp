// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Pairs of which only one panorama carries range.

#include "nexomap/src/pair/OneSidedPair.h"
#include "nexomap/src/pair/OneSidedRansac.h"
#include "nexomap/src/pair/PairSolver.h"
#include "nexomap/src/pair/Sphere.h"
#include "tests/nexomap/pair/MadeUpRoom.h"

#include <gtest/gtest.h>

#include <random>

using namespace nexomap;

namespace {

struct Made
{
    RigidPose pose; ///< 0 (no range) from 1
    std::vector<Correspondence> matches;
};

/// Points on the walls of a hall, seen from both; a share of the matches is false. Bearings are off by 0.03
/// degrees, ranges by 6 mm.
Made made(int count, double outliers, double lean, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> x(-3.0, 3.0), z(-1.4, 1.2), turn(-kPi, kPi), range(1.0, 6.0);
    std::normal_distribution<double> gauss;
    Made result;
    result.pose.R = headingRotation(turn(random)) * rotationFromVector({lean, -0.5 * lean, 0.0});
    result.pose.t = {1.4, -0.9, 0.05};
    const auto noisy = [&](const Eigen::Vector3d& p) {
        const Eigen::Vector3d noise(gauss(random), gauss(random), gauss(random));
        return Eigen::Vector3d(p.normalized() + 0.03 * kDegree * noise).normalized();
    };
    for (int i = 0; i < count; ++i) {
        Eigen::Vector3d p0(x(random), x(random), z(random));
        p0[i % 2] = i % 4 < 2 ? 4.0 : -4.0;
        const Eigen::Vector3d p1 = result.pose.inverse() * p0;
        Correspondence match{noisy(p0), noisy(p1), 0.0, p1.norm() + 0.006 * gauss(random), 0};
        if (i < outliers * count) {
            match.bearing_0 = directionFromAngles(turn(random), 1.57 + 0.25 * gauss(random));
            match.range_1 = range(random);
        }
        result.matches.push_back(match);
    }
    std::shuffle(result.matches.begin(), result.matches.end(), random);
    return result;
}

double turned_deg(const Eigen::Matrix3d& a, const Eigen::Matrix3d& b)
{
    return Eigen::AngleAxisd(a.transpose() * b).angle() / kDegree;
}

/// The room of the other tests, seen from two places; the second without its range.
struct Shots
{
    RigidPose ranged = standAt(1.6, 1.5, 1.5, 0.4), bare = standAt(4.4, 2.9, 1.55, 2.1, 0.006, -0.004);
    std::unique_ptr<Panorama> with, without;

    Shots()
    {
        const MadeUpRoom room;
        with = panoramaOf("1A", room.shoot(ranged, 2048, 0.004), true);
        without = panoramaOf("2B", room.shoot(bare, 2048), false);
    }
    RigidPose truth() const ///< bare from ranged
    {
        const RigidPose from_world = bare.inverse();
        return {from_world.R * ranged.R, from_world * ranged.t};
    }
};

} // namespace

TEST(UprightAbsolute, RecoversThePoseFromTwoPoints)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> unit(-3.0, 3.0);
        const RigidPose pose{headingRotation(unit(random)), {unit(random), unit(random), 0.1 * unit(random)}};
        const std::array<Eigen::Vector3d, 2> points{Eigen::Vector3d(4.0, unit(random), 0.4 * unit(random)),
                                                    Eigen::Vector3d(unit(random), -5.0, 1.0)};
        const auto poses =
            solveUprightAbsolute({(pose * points[0]).normalized(), (pose * points[1]).normalized()}, points);
        double nearest = 1e9;
        for (const RigidPose& found : poses)
            nearest = std::min(nearest, (found.t - pose.t).norm() + (found.R - pose.R).norm());
        EXPECT_LT(nearest, 1e-6) << seed;
    }
}

TEST(UprightAbsolute, PointsAboveEachOtherAndBearingsAlongTheHorizonGiveNone)
{
    const Eigen::Vector3d a(2.0, 1.0, 0.0), b(2.0, 1.0, 1.5);
    EXPECT_TRUE(solveUprightAbsolute({a.normalized(), b.normalized()}, {a, b}).empty());
    const Eigen::Vector3d c(1.0, 3.0, 0.0);
    EXPECT_TRUE(solveUprightAbsolute({a.normalized(), c.normalized()}, {a, c}).empty());
}

TEST(OneSidedPair, WithHalfOfTheMatchesFalseThePoseIsRightWithinThreeCentimetres)
{
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const Made set = made(100, 0.5, 0.0, seed);
        PairRandom random("a", "b");
        const auto found = estimateOneSidedPose(set.matches, {}, random);
        ASSERT_TRUE(found) << seed;
        EXPECT_LT(turned_deg(found->pose.R, set.pose.R), 0.2) << seed;
        EXPECT_LT((found->pose.t - set.pose.t).norm(), 0.03) << seed;
        EXPECT_GE(found->inliers.size(), 45u) << seed;
        EXPECT_LE(found->inliers.size(), 52u) << seed;
    }
}

TEST(OneSidedPair, ACameraThatLeansByThreeDegreesIsFoundToo)
{
    for (unsigned seed = 1; seed <= 5; ++seed) {
        const Made set = made(100, 0.5, 3.0 * kDegree, seed);
        PairRandom random("a", "b");
        const auto found = estimateOneSidedPose(set.matches, {}, random);
        ASSERT_TRUE(found) << seed;
        EXPECT_LT(turned_deg(found->pose.R, set.pose.R), 0.2) << seed;
        EXPECT_LT((found->pose.t - set.pose.t).norm(), 0.03) << seed;
    }
}

TEST(OneSidedPair, NoiseGivesNoPose)
{
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const Made set = made(150, 1.0, 0.0, seed);
        PairRandom random("a", "b");
        EXPECT_FALSE(estimateOneSidedPose(set.matches, {}, random)) << seed;
    }
}

TEST(OneSidedPair, RangesOnOneSideGiveAPoseInMetres)
{
    const Shots shots;
    const auto pose = matchPair(*shots.without, *shots.with);
    ASSERT_TRUE(pose);
    EXPECT_TRUE(pose->metric);
    const RigidPose truth = shots.truth();
    EXPECT_LT(turned_deg(pose->R_0_from_1, truth.R), 0.2);
    EXPECT_LT((pose->t_0_from_1 - truth.t).norm(), 0.03);
    EXPECT_GT(pose->reliability, 0.8);
    // What it says of itself is not far from what it is: 6 degrees of freedom, each within four deviations.
    const Eigen::Matrix3d covariance = pose->information.inverse().bottomRightCorner<3, 3>();
    const Eigen::Vector3d error = pose->R_0_from_1.transpose() * (truth.t - pose->t_0_from_1);
    EXPECT_LT(error.dot(covariance.inverse() * error), 48.0);
    EXPECT_LT(covariance.trace(), 0.03 * 0.03);
}

TEST(OneSidedPair, BothOrdersSayTheSame)
{
    const Shots shots;
    const auto there = matchPair(*shots.without, *shots.with), back = matchPair(*shots.with, *shots.without);
    ASSERT_TRUE(there && back);
    EXPECT_EQ(there->reliability, back->reliability);
    EXPECT_LT((there->R_0_from_1 * back->R_0_from_1 - Eigen::Matrix3d::Identity()).norm(), 1e-12);
    EXPECT_LT((there->R_0_from_1 * back->t_0_from_1 + there->t_0_from_1).norm(), 1e-12);
    ASSERT_EQ(there->inliers.size(), back->inliers.size());
    for (const PairInlier& inlier : there->inliers)
        EXPECT_TRUE(inlier.range_0_m == 0.f && inlier.range_1_m > 0.f);
}

TEST(OneSidedSight, ACameraBehindAWallSeesThroughIt)
{
    const Shots shots;
    std::vector<Correspondence> seen;
    for (int k = 0; k < 40; ++k) {
        const Eigen::Vector3f ray =
            directionFromAngles(-2.6 + 0.13 * k, 1.35 + 0.01 * k).cast<float>(); // at the room's walls
        seen.push_back({ray.cast<double>(), ray.cast<double>(), 0.0, shots.with->range.at(ray), 0});
    }
    const OneSidedSight right = oneSidedSight(*shots.with, shots.truth(), seen);
    EXPECT_LT(right.crossed, 0.15);
    RigidPose outside = shots.truth().inverse(); // where the camera stands, in the frame of the ranges
    outside.t = shots.ranged.inverse() * Eigen::Vector3d(7.2, 2.2, 1.5);
    EXPECT_GT(oneSidedSight(*shots.with, outside.inverse(), seen).crossed, 0.5);
}
