// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Tours in which only some panoramas carry range, solved together, against their truth.

#include "nexomap/src/graph/JointRefinement.h"
#include "nexomap/src/graph/GraphOptimizer.h"
#include "nexomap/src/graph/PoseGraph.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

using namespace nexomap;

namespace {

/// Nine stations in a grid; the odd ones have no range. A pair with range on either side is metric, others
/// have a direction only. Every feature is seen with 0.03 degrees of noise, the same in all pairs.
struct Mixed
{
    MadeUpTour tour;
    std::vector<PairPose> poses;
    std::vector<GraphEdge> edges;
    std::vector<char> kept;

    explicit Mixed(unsigned seed)
    {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> unit(-1.0, 1.0);
        for (int k = 0; k < 9; ++k)
            tour.add(2.6 * (k % 3) + 0.5 * unit(random) - 2.6, 2.6 * (k / 3) + 0.5 * unit(random) - 2.6,
                     3.0 * unit(random), 0.03 * unit(random), 0.004 * unit(random), 0.004 * unit(random));
        tour.seed = seed;
        tour.rotation_sigma = 0.1 * kDegree;
        tour.translation_sigma = 0.01;
        tour.inliers = 80;
        MadeUpTour bare = tour;
        bare.lidar = false;
        std::map<std::array<float, 4>, Eigen::Vector3f> seen;
        std::normal_distribution<double> gauss;
        const auto noisy = [&](int node, const Eigen::Vector3f& bearing) {
            const std::array<float, 4> key{float(node), bearing.x(), bearing.y(), bearing.z()};
            const auto [place, fresh] = seen.emplace(key, bearing);
            if (fresh) {
                const Eigen::Vector3d noise(gauss(random), gauss(random), gauss(random));
                place->second = (bearing.cast<double>() + 0.03 * kDegree * noise).normalized().cast<float>();
            }
            return place->second;
        };
        std::vector<std::pair<int, int>> ends;
        for (int a = 0; a < 9; ++a)
            for (int b = a + 1; b < 9; ++b) {
                if ((tour.stations[a].pose.t - tour.stations[b].pose.t).norm() > 4.4) continue;
                const bool open = a % 2 == 1 && b % 2 == 1;
                poses.push_back((open ? bare : tour).pairPose(a, b));
                for (PairInlier& inlier : poses.back().inliers) {
                    inlier.bearing_0 = noisy(a, inlier.bearing_0);
                    inlier.bearing_1 = noisy(b, inlier.bearing_1);
                    if (a % 2 == 1) inlier.range_0_m = 0.f;
                    if (b % 2 == 1) inlier.range_1_m = 0.f;
                }
                ends.emplace_back(a, b);
            }
        for (std::size_t k = 0; k < ends.size(); ++k)
            edges.push_back({ends[k].first, ends[k].second, &poses[k], false});
        kept.assign(edges.size(), 1);
    }
    Mixed(const Mixed&) = delete;

    /// By the relative poses alone.
    std::vector<Pose> graphPoses() const
    {
        std::vector<Pose> found;
        for (const MadeUpTour::Station& station : tour.stations)
            found.push_back(tour.stations[0].pose.inverse() * station.pose);
        optimizePoses(edges, information(), std::vector<double>(edges.size(), 1.0), std::vector<int>(9, 0),
                      {}, found);
        return found;
    }
    std::vector<Matrix6d> information() const
    {
        std::vector<Matrix6d> all;
        for (const PairPose& pose : poses)
            all.push_back(graphInformation(pose));
        return all;
    }
    double squaresOf(const std::vector<Pose>& found) const
    {
        double sum = 0.0;
        for (std::size_t n = 1; n < found.size(); ++n) {
            const Pose truth = tour.stations[0].pose.inverse() * tour.stations[n].pose;
            sum += ((found[0].inverse() * found[n]).t - truth.t).squaredNorm();
        }
        return sum / double(found.size() - 1);
    }
};

} // namespace

TEST(JointRefinement, BringsPosesNearerToTheTruthThanRelativePosesAlone)
{
    double before = 0.0, after = 0.0;
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const Mixed mixed(seed);
        std::vector<Pose> poses = mixed.graphPoses();
        before += mixed.squaresOf(poses);
        refineJointly(mixed.edges, mixed.information(), mixed.kept, std::vector<int>(9, 0), 0.3 * kDegree,
                      poses);
        after += mixed.squaresOf(poses);
    }
    EXPECT_LT(std::sqrt(after / 10.0), 0.7 * std::sqrt(before / 10.0));
}

TEST(JointRefinement, AMixedTourStandsInMetres)
{
    for (unsigned seed = 1; seed <= 5; ++seed) {
        const Mixed mixed(seed);
        const GraphSolution solution =
            solvePoseGraph(9, mixed.edges, std::vector<char>(mixed.edges.size(), 0));
        EXPECT_EQ(solution.component, std::vector<int>(9, 0));
        EXPECT_LT(std::sqrt(mixed.squaresOf(solution.poses)), 0.012) << seed;
    }
}

TEST(JointRefinement, AWrongPairDoesNotBendIt)
{
    for (unsigned seed = 1; seed <= 5; ++seed) {
        Mixed mixed(seed);
        const std::size_t wrong = seed % mixed.poses.size();
        PairPose& pose = mixed.poses[wrong];
        pose.R_0_from_1 = rotationAboutZ(0.7) * pose.R_0_from_1;
        pose.t_0_from_1 = rotationAboutZ(-1.1) * pose.t_0_from_1;
        pose.reliability = 0.8;
        const GraphSolution solution =
            solvePoseGraph(9, mixed.edges, std::vector<char>(mixed.edges.size(), 0));
        EXPECT_FALSE(solution.kept[wrong]) << seed;
        EXPECT_LT(std::sqrt(mixed.squaresOf(solution.poses)), 0.014) << seed;
    }
}

TEST(JointRefinement, TheSameEdgesGiveTheSameBits)
{
    const Mixed mixed(3);
    const std::vector<char> held(mixed.edges.size(), 0);
    const GraphSolution a = solvePoseGraph(9, mixed.edges, held), b = solvePoseGraph(9, mixed.edges, held);
    for (int n = 0; n < 9; ++n) {
        EXPECT_EQ(a.poses[n].R, b.poses[n].R);
        EXPECT_EQ(a.poses[n].t, b.poses[n].t);
    }
}

TEST(JointRefinement, LeavesGroupsAloneThatAreNotMixed)
{
    const Mixed mixed(2);
    std::vector<char> kept = mixed.kept;
    for (std::size_t e = 0; e < kept.size(); ++e)
        kept[e] = mixed.poses[e].metric;
    std::vector<Pose> poses = mixed.graphPoses();
    const std::vector<Pose> before = poses;
    refineJointly(mixed.edges, mixed.information(), kept, std::vector<int>(9, 0), 0.3 * kDegree, poses);
    for (int n = 0; n < 9; ++n)
        EXPECT_EQ(poses[n].t, before[n].t);
}

TEST(JointRefinement, ADoubtfulPairWithRangeOnOneSideDoesNotJoinParts)
{
    MadeUpTour tour;
    for (const double x : {0.0, 2.5, 5.0})
        tour.add(x, 0.1 * x, x);
    for (const double reliability : {0.65, 0.75}) {
        std::vector<PairPose> poses{tour.pairPose(0, 1), tour.pairPose(1, 2)};
        poses[1].reliability = reliability;
        for (PairInlier& inlier : poses[1].inliers)
            inlier.range_1_m = 0.f;
        const std::vector<GraphEdge> edges{{0, 1, &poses[0], false}, {1, 2, &poses[1], false}};
        const GraphSolution solution = solvePoseGraph(3, edges, {0, 0});
        EXPECT_EQ(solution.component[2], reliability > 0.7 ? 0 : 1);
    }
}
