// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/pair/BearingRansac.h"
#include "nexomap/src/pair/BearingRefinement.h"
#include "nexomap/src/pair/MetricRansac.h"
#include "nexomap/src/pair/PairSolver.h"
#include "nexomap/src/pair/Sphere.h"
#include "nexomap/src/pair/UprightSolver.h"

#include <gtest/gtest.h>

#include <random>

using namespace nexomap;

namespace {

struct Made
{
    RigidPose pose; ///< 0 from 1
    std::vector<Correspondence> matches;
};

/// Points of a room seen from both panoramas; a share of the matches is false.
Made made(int count, double outliers, double lean, unsigned seed, double bearing_noise = 0.0)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> x(-3.0, 3.0), z(-1.4, 1.2), turn(-kPi, kPi);
    std::normal_distribution<double> gauss;
    Made result;
    result.pose.R = headingRotation(turn(random)) * rotationFromVector({lean, -0.5 * lean, 0.0});
    result.pose.t = {1.4, -0.9, 0.05};
    for (int i = 0; i < count; ++i) {
        // Points stand on walls around, not between the cameras.
        Eigen::Vector3d p0(x(random), x(random), z(random));
        p0[i % 2] = i % 4 < 2 ? 4.0 : -4.0;
        Eigen::Vector3d p1 = result.pose.inverse() * p0;
        if (i < outliers * count)
            p1 = Eigen::Vector3d(x(random), x(random), z(random)) + Eigen::Vector3d(0, 4, 0);
        const auto noisy = [&](const Eigen::Vector3d& p) {
            return Eigen::Vector3d(p.normalized() + bearing_noise * Eigen::Vector3d(gauss(random),
                                                                                    gauss(random),
                                                                                    gauss(random)))
                .normalized();
        };
        result.matches.push_back({noisy(p0), noisy(p1), p0.norm(), p1.norm(), 0});
    }
    std::shuffle(result.matches.begin(), result.matches.end(), random);
    return result;
}

double turned_deg(const Eigen::Matrix3d& a, const Eigen::Matrix3d& b)
{
    return Eigen::AngleAxisd(a.transpose() * b).angle() / kDegree;
}

} // namespace

TEST(UprightSolver, RecoversThePoseFromThreePairsOfBearings)
{
    int found = 0;
    for (unsigned seed = 1; seed <= 200; ++seed) {
        const Made scene = made(3, 0.0, 0.0, seed);
        const auto& m = scene.matches;
        for (const RigidPose& pose : solveUpright({m[0].bearing_0, m[1].bearing_0, m[2].bearing_0},
                                                  {m[0].bearing_1, m[1].bearing_1, m[2].bearing_1})) {
            // Whatever it returns satisfies the three constraints.
            for (const Correspondence& match : m)
                EXPECT_NEAR(match.bearing_0.dot(pose.t.cross(pose.R * match.bearing_1)), 0.0, 1e-5) << seed;
            if (turned_deg(pose.R, scene.pose.R) < 0.05) {
                EXPECT_GT(std::abs(pose.t.dot(scene.pose.t.normalized())), std::cos(0.3 * kDegree)) << seed;
                ++found;
            }
        }
    }
    // Two roots that all but coincide may be missed.
    EXPECT_GE(found, 180);
}

TEST(MetricRansac, RecoversTheExactPose)
{
    const Made scene = made(40, 0.0, 0.0, 1);
    PairRandom random("A", "B");
    const auto found = estimateMetricPose(scene.matches, {}, random);
    ASSERT_TRUE(found);
    EXPECT_LT(turned_deg(found->pose.R, scene.pose.R), 1e-5);
    EXPECT_LT((found->pose.t - scene.pose.t).norm(), 1e-6);
    EXPECT_EQ(found->inliers.size(), 40u);
}

TEST(MetricRansac, StandsSeventyPercentOfFalseMatchesAndALean)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const Made scene = made(120, 0.7, 2.0 * kDegree, seed);
        PairRandom random("A", "B");
        const auto found = estimateMetricPose(scene.matches, {}, random);
        ASSERT_TRUE(found) << seed;
        EXPECT_LT(turned_deg(found->pose.R, scene.pose.R), 0.1) << seed;
        EXPECT_LT((found->pose.t - scene.pose.t).norm(), 0.01) << seed;
    }
}

TEST(MetricRansac, DeclinesTooFewAndPointsOnOneLine)
{
    PairRandom random("A", "B");
    Made scene = made(4, 0.0, 0.0, 1);
    EXPECT_FALSE(estimateMetricPose(scene.matches, {}, random));
    EXPECT_FALSE(estimateMetricPose({}, {}, random));
    std::vector<Eigen::Vector3d> line;
    for (int i = 0; i < 10; ++i)
        line.push_back(Eigen::Vector3d(1.0, 2.0, 0.1) * i);
    EXPECT_FALSE(alignPoints(line, line));
    EXPECT_FALSE(alignPoints({line[0], line[1]}, {line[0], line[1]}));
}

TEST(BearingRansac, RecoversTheExactPoseUpToScale)
{
    const Made scene = made(60, 0.0, 0.0, 2);
    PairRandom random("A", "B");
    const auto found = estimateBearingPose(scene.matches, {}, {}, random);
    ASSERT_TRUE(found);
    EXPECT_LT(turned_deg(found->pose.R, scene.pose.R), 1e-3);
    EXPECT_LT((found->pose.t - scene.pose.t.normalized()).norm(), 1e-4);
}

TEST(BearingRansac, StandsSeventyPercentOfFalseMatchesALeanAndNoise)
{
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const Made scene = made(300, 0.7, 1.0 * kDegree, seed, 0.04 * kDegree);
        PairRandom random("A", "B");
        const auto found = estimateBearingPose(scene.matches, {}, {}, random);
        ASSERT_TRUE(found) << seed;
        const auto refined = refineBearingPose(scene.matches, found->inliers, found->pose, 10);
        EXPECT_LT(turned_deg(refined.pose.R, scene.pose.R), 0.3) << seed;
        EXPECT_GT(refined.pose.t.dot(scene.pose.t.normalized()), std::cos(1.5 * kDegree)) << seed;
    }
}

TEST(BearingRansac, WallsThatAreToldFindAPoseAmongNineTenthsOfFalseMatches)
{
    const auto found = [](const Made& scene, std::optional<double> walls_turn) {
        PairRandom random("A", "B");
        const auto pose = estimateBearingPose(scene.matches, {}, walls_turn, random);
        return pose && turned_deg(pose->pose.R, scene.pose.R) < 1.0 &&
               (pose->pose.t - scene.pose.t.normalized()).norm() < 0.05;
    };
    int with = 0, without = 0;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const Made scene = made(200, 0.91, 0.0, seed, 0.04 * kDegree);
        const double heading = std::atan2(scene.pose.R(1, 0), scene.pose.R(0, 0));
        with += found(scene, heading + 0.5 * kPi + 0.8 * kDegree); // quarter turns aside, not told exactly
        without += found(scene, {});
    }
    std::printf("  found of 20: %d with walls, %d without\n", with, without);
    EXPECT_GT(with, without);
    EXPECT_GE(with, 12);
}

TEST(Reliability, APoseThatLaysTheWallsOntoEachOtherIsBelievedMore)
{
    Evidence evidence;
    evidence.inliers = 30;
    evidence.inlier_share = 0.2;
    evidence.direction_sigma = 0.15 * kDegree;
    const double unknown = bearingReliability(evidence);
    evidence.skew = 0.3 * kDegree;
    const double along = bearingReliability(evidence);
    evidence.skew = 5.0 * kDegree; // a wall that stands askew
    const double askew = bearingReliability(evidence);
    evidence.skew = 30.0 * kDegree;
    const double across = bearingReliability(evidence);
    EXPECT_GT(along, unknown + 0.2);
    EXPECT_GT(unknown, across);
    EXPECT_GT(askew, across);
    EXPECT_LT(across, 0.1);
}

TEST(Reliability, WherePicturesShowNoWallsAGoodPoseIsBelievedAllTheSame)
{
    Evidence evidence;
    evidence.inliers = 60;
    evidence.inlier_share = 0.4;
    evidence.direction_sigma = 0.15 * kDegree;
    EXPECT_GT(bearingReliability(evidence), 0.8);
    evidence.inlier_share = 0.1;
    EXPECT_LT(bearingReliability(evidence), 0.5);
}

TEST(Reliability, WithRangesFewMatchesExcuseLittleThatIsSeenThrough)
{
    Evidence evidence;
    evidence.inliers = 11;
    evidence.guided = 59;
    evidence.cells = 5;
    evidence.rms = 1.0;
    evidence.ranges.samples = 4000;
    evidence.ranges.agree = 0.77;
    evidence.walls.agree_m2 = 60.0;
    const auto reliability = [&](double share, double violation) {
        evidence.inlier_share = share;
        evidence.ranges.violation = violation;
        return metricReliability(evidence);
    };
    EXPECT_GT(reliability(0.08, 0.02), 0.9);
    EXPECT_LT(reliability(0.08, 0.11), 0.5); // a plain room on another of its size
    EXPECT_GT(reliability(0.3, 0.08), 0.9);  // panes and people
}

TEST(BearingRansac, BearingsOfOnePointOrOneLineEndWithoutACrash)
{
    PairRandom random("A", "B");
    std::vector<Correspondence> same(50, {Eigen::Vector3d::UnitX(), Eigen::Vector3d::UnitX(), 0.0, 0.0, 0});
    (void)estimateBearingPose(same, {}, {}, random);
    (void)estimateRotation(same);
    std::vector<Correspondence> line;
    for (int i = 0; i < 50; ++i) {
        const Eigen::Vector3d p(3.0, 0.05 * i, 0.0);
        line.push_back({p.normalized(), (p - Eigen::Vector3d(1, 0, 0)).normalized(), 0.0, 0.0, 0});
    }
    const auto found = estimateBearingPose(line, {}, {}, random);
    EXPECT_TRUE(!found || found->pose.R.allFinite());
}

TEST(BearingRansac, PureRotationIsFoundAsRotation)
{
    Made scene = made(100, 0.3, 0.5 * kDegree, 4);
    for (Correspondence& match : scene.matches)
        if (&match - scene.matches.data() < 70) match.bearing_0 = scene.pose.R * match.bearing_1;
    const auto found = estimateRotation(scene.matches);
    ASSERT_TRUE(found);
    EXPECT_LT(turned_deg(found->pose.R, scene.pose.R), 0.02);
    EXPECT_GE(found->inliers.size(), 70u);
}

TEST(BearingRefinement, InformationKnowsNothingAlongTheBaseline)
{
    const Made scene = made(60, 0.0, 0.0, 5);
    std::vector<int> all;
    for (int i = 0; i < 60; ++i)
        all.push_back(i);
    RigidPose start = scene.pose;
    start.t.normalize();
    const auto refined = refineBearingPose(scene.matches, all, start, 10);
    Eigen::Matrix<double, 6, 1> along = Eigen::Matrix<double, 6, 1>::Zero();
    along.tail<3>() = refined.pose.R.transpose() * refined.pose.t;
    EXPECT_NEAR(along.dot(refined.information * along), 0.0, 1e-6 * refined.information.norm());
}

TEST(PairSolver, APersonBesideTheCameraDoesNotSetThePose)
{
    Made scene = made(80, 0.25, 0.0, 11);
    // Behind the camera in both pictures, a step aside and turned a little, with more features than the room.
    std::mt19937 random(5);
    std::uniform_real_distribution<double> width(-0.25, 0.25), height(-1.4, 0.15);
    const RigidPose sway{headingRotation(0.14), {0.06, -0.04, 0.0}};
    for (int i = 0; i < 110; ++i) {
        const Eigen::Vector3d p1 =
            headingRotation(2.7) * Eigen::Vector3d(0.9 + 0.3 * width(random), width(random), height(random));
        const Eigen::Vector3d p0 = sway * p1;
        scene.matches.push_back({p0.normalized(), p1.normalized(), 0.0, 0.0, 0});
    }
    for (Correspondence& match : scene.matches)
        match.range_0 = match.range_1 = 0.0;
    Panorama first, second;
    first.id = "A";
    second.id = "B";
    Evidence evidence;
    const auto pose = solvePair(first, second, scene.matches, &evidence);
    ASSERT_TRUE(pose);
    EXPECT_LT(turned_deg(pose->R_0_from_1, scene.pose.R), 0.5);
    EXPECT_GT(pose->t_0_from_1.dot(scene.pose.t.normalized()), 0.999);
}
