// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The pose graph on made-up graphs whose truth is known.

#include "nexomap/src/graph/PoseGraph.h"
#include "nexomap/src/graph/CyclePruning.h"
#include "nexomap/src/graph/GraphOptimizer.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

using namespace nexomap;

namespace {

struct Graph
{
    std::vector<PairPose> poses;
    std::vector<GraphEdge> edges;
    GraphSolution solve(int nodes) const
    {
        return solvePoseGraph(nodes, edges, std::vector<char>(edges.size(), 0));
    }
};

/// All pairs within reach; `wrong` of them replaced by nonsense.
Graph graphOf(const MadeUpTour& tour, int wrong = 0)
{
    Graph graph;
    const int n = int(tour.stations.size());
    std::vector<std::pair<int, int>> pairs;
    for (int a = 0; a < n; ++a)
        for (int b = a + 1; b < n; ++b)
            if ((tour.stations[a].pose.t - tour.stations[b].pose.t).norm() <= tour.reach_m)
                pairs.emplace_back(a, b);
    std::mt19937 random(tour.seed);
    for (const auto& [a, b] : pairs)
        graph.poses.push_back(tour.pairPose(a, b));
    for (int k = 0; k < wrong; ++k) {
        PairPose& pose = graph.poses[(k * 5 + 3) % graph.poses.size()];
        std::uniform_real_distribution<double> unit(-1, 1);
        pose.R_0_from_1 = rotationAboutZ(3.0 * unit(random)) * pose.R_0_from_1;
        pose.t_0_from_1 += Eigen::Vector3d(2 * unit(random), 2 * unit(random), 0.1 * unit(random));
        if (!pose.metric) pose.t_0_from_1.normalize();
        pose.reliability = 0.7;
    }
    for (std::size_t k = 0; k < pairs.size(); ++k)
        graph.edges.push_back({pairs[k].first, pairs[k].second, &graph.poses[k], false});
    return graph;
}

/// Largest error of the poses against the truth, both seen from node `base`.
void expectPoses(const MadeUpTour& tour, const GraphSolution& solution, int base, double degrees,
                 double metres, double scale = 1.0)
{
    for (std::size_t n = 0; n < tour.stations.size(); ++n) {
        if (solution.component[n] != solution.component[base]) continue;
        const Pose truth = tour.stations[base].pose.inverse() * tour.stations[n].pose;
        const Pose found = solution.poses[base].inverse() * solution.poses[n];
        EXPECT_LT(rotationAngle(truth.R, found.R) / kDegree, degrees) << "node " << n;
        EXPECT_LT((truth.t - scale * found.t).norm(), metres) << "node " << n;
    }
}

MadeUpTour grid(int side)
{
    MadeUpTour tour;
    std::mt19937 random(5);
    std::uniform_real_distribution<double> unit(-1, 1);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            tour.add(3 * x + unit(random), 3 * y + unit(random), 3 * unit(random), 0.05 * unit(random),
                     0.005 * unit(random), 0.005 * unit(random));
    tour.reach_m = 5.0;
    return tour;
}

TEST(PoseGraph, NoNodesAndOneNodeAreSolved)
{
    EXPECT_TRUE(solvePoseGraph(0, {}, {}).poses.empty());
    const GraphSolution one = solvePoseGraph(1, {}, {});
    ASSERT_EQ(one.poses.size(), 1u);
    EXPECT_EQ(one.poses[0].R, Eigen::Matrix3d::Identity());
}

TEST(PoseGraph, ExactEdgesGiveTheExactPoses)
{
    MadeUpTour tour = grid(3);
    tour.rotation_sigma = tour.translation_sigma = 0.0;
    const GraphSolution solution = graphOf(tour).solve(9);
    expectPoses(tour, solution, 0, 0.02, 0.002);
    EXPECT_EQ(solution.poses[0].R, Eigen::Matrix3d::Identity());
    EXPECT_EQ(solution.poses[0].t, Eigen::Vector3d::Zero());
}

TEST(PoseGraph, NoisyEdgesAverageOut)
{
    MadeUpTour tour = grid(5);
    const Graph graph = graphOf(tour);
    const GraphSolution solution = graph.solve(25);
    expectPoses(tour, solution, 0, 0.2, 0.03);
    for (const char kept : solution.kept)
        EXPECT_TRUE(kept);
}

TEST(PoseGraph, WrongEdgesAreCutAndDoNotBendThePoses)
{
    for (unsigned seed = 1; seed <= 5; ++seed) {
        MadeUpTour tour = grid(5);
        tour.seed = seed;
        const int wrong = 8;
        const Graph graph = graphOf(tour, wrong);
        const GraphSolution solution = graph.solve(25);
        expectPoses(tour, solution, 0, 0.15, 0.03);
        for (int k = 0; k < wrong; ++k)
            EXPECT_FALSE(solution.kept[(k * 5 + 3) % graph.edges.size()]) << k;
    }
}

TEST(PoseGraph, PartsWithoutAnEdgeBecomeGroupsApart)
{
    MadeUpTour tour;
    for (const double x : {0.0, 2.0, 4.0, 30.0, 32.0})
        tour.add(x, 0.2 * x, x);
    const GraphSolution solution = graphOf(tour).solve(5);
    EXPECT_EQ(solution.component, (std::vector<int>{0, 0, 0, 1, 1}));
    expectPoses(tour, solution, 0, 0.2, 0.02);
    expectPoses(tour, solution, 3, 0.2, 0.02);
    EXPECT_EQ(solution.poses[3].R, Eigen::Matrix3d::Identity());
    double nearest = 1e9;
    for (const int a : {0, 1, 2})
        for (const int b : {3, 4})
            nearest = std::min(nearest, (solution.poses[a].t - solution.poses[b].t).norm());
    EXPECT_GE(nearest, 9.9);
}

TEST(PoseGraph, TheSameEdgesGiveTheSameBits)
{
    const MadeUpTour tour = grid(4);
    const GraphSolution a = graphOf(tour, 4).solve(16), b = graphOf(tour, 4).solve(16);
    for (int n = 0; n < 16; ++n) {
        EXPECT_EQ(a.poses[n].R, b.poses[n].R);
        EXPECT_EQ(a.poses[n].t, b.poses[n].t);
    }
}

TEST(PoseGraph, WithoutScaleTheSameEdgesGiveTheSameBitsWhereverTheHeapPutsThem)
{
    MadeUpTour tour = grid(3);
    tour.lidar = false;
    tour.inliers = 200;
    const GraphSolution first = graphOf(tour).solve(9);
    std::mt19937 random(5);
    std::vector<std::unique_ptr<char[]>> in_the_way;
    for (int round = 0; round < 20; ++round) {
        for (int k = 0; k < 200; ++k)
            in_the_way.push_back(std::make_unique<char[]>(300 + random() % 400));
        for (std::size_t k = 0; k < in_the_way.size(); k += 1 + random() % 2)
            in_the_way[k].reset();
        const GraphSolution again = graphOf(tour).solve(9);
        for (int n = 0; n < 9; ++n) {
            ASSERT_EQ(first.poses[n].R, again.poses[n].R) << round;
            ASSERT_EQ(first.poses[n].t, again.poses[n].t) << round;
        }
    }
}

TEST(PoseGraph, WithoutScaleTheFloorGivesTheSize)
{
    MadeUpTour tour = grid(3);
    tour.lidar = false;
    tour.inliers = 200;
    tour.rotation_sigma = 0.05 * kDegree;
    tour.translation_sigma = 0.01;
    for (auto& station : tour.stations)
        station.pose.t -= Eigen::Vector3d(3, 3, 0);
    const GraphSolution solution = graphOf(tour).solve(9);
    double true_size = 0.0, found_size = 0.0;
    for (int n = 1; n < 9; ++n) {
        true_size += (tour.stations[n].pose.t - tour.stations[0].pose.t).norm();
        found_size += (solution.poses[n].t - solution.poses[0].t).norm();
    }
    // Stations stand 1.6 m above the floor in truth, each a few centimetres higher or lower, and 1.5 m by
    // convention; the shape is much better known than the size.
    EXPECT_NEAR(true_size / found_size, 1.6 / 1.5, 0.05);
    expectPoses(tour, solution, 0, 0.1, 0.02, true_size / found_size);
}

TEST(PoseGraph, WithoutScaleAndFloorTheMedianSpacingIsTwo)
{
    MadeUpTour tour = grid(3);
    tour.lidar = false;
    tour.inliers = 0;
    tour.rotation_sigma = 0.02 * kDegree;
    tour.translation_sigma = 0.002;
    const Graph graph = graphOf(tour);
    const GraphSolution solution = graph.solve(9);
    std::vector<double> spacings, truths;
    for (const GraphEdge& edge : graph.edges) {
        spacings.push_back((solution.poses[edge.i].t - solution.poses[edge.j].t).norm());
        truths.push_back((tour.stations[edge.i].pose.t - tour.stations[edge.j].pose.t).norm());
    }
    std::sort(spacings.begin(), spacings.end());
    std::sort(truths.begin(), truths.end());
    EXPECT_NEAR(spacings[spacings.size() / 2], 2.0, 1e-6);
    expectPoses(tour, solution, 0, 0.3, 0.3, truths[truths.size() / 2] / 2.0);
}

TEST(PoseGraph, WithoutScaleAnotherGroupDoesNotMoveTheLengthsOfThis)
{
    // A ring of stations, one that hangs on a single edge, and strangers that come before or not at all.
    const auto hanging = [](bool strangers) {
        MadeUpTour tour = grid(3);
        tour.lidar = false;
        tour.inliers = 0;
        tour.rotation_sigma = 0.02 * kDegree;
        tour.translation_sigma = 0.002;
        tour.add(-3.0, -3.0, 0.5);
        if (strangers) {
            tour.add(60.0, 60.0, 0.5);
            tour.add(63.0, 60.0, 1.5);
            std::rotate(tour.stations.begin(), tour.stations.end() - 2, tour.stations.end());
        }
        const GraphSolution solution = graphOf(tour).solve(int(tour.stations.size()));
        const std::size_t first = strangers ? 2 : 0;
        const auto& poses = solution.poses;
        return (poses[first + 9].t - poses[first].t).norm() / (poses[first + 4].t - poses[first].t).norm();
    };
    EXPECT_NEAR(hanging(true) / hanging(false), 1.0, 0.01);
}

TEST(PoseGraph, TwoWrongEdgesThatAgreeDoNotCutTheRightBridgeBetweenThem)
{
    // Station 3 stands in the twin of the room of 4 and 5, and matches them as if it stood there.
    MadeUpTour tour;
    const double places[][2] = {{0, 0}, {3, 0}, {6, 0}, {6, 3}, {0, 3}, {-3, 3}};
    for (const auto& place : places)
        tour.add(place[0], place[1], 0.4 * place[0]);
    MadeUpTour folded = tour;
    folded.stations[3].pose.t.x() -= 3.4;
    struct Seen
    {
        int a, b;
        double reliability;
        bool wrong;
    };
    const Seen seen[] = {{0, 1, 0.997, false}, {0, 4, 0.997, false}, {0, 5, 0.99, false},
                         {1, 2, 0.997, false}, {1, 3, 0.997, false}, {1, 4, 0.996, false},
                         {2, 3, 0.98, false},  {3, 4, 0.74, true},   {3, 5, 0.996, true},
                         {4, 5, 0.997, false}};
    Graph graph;
    for (const Seen& pair : seen) {
        graph.poses.push_back((pair.wrong ? folded : tour).pairPose(pair.a, pair.b));
        graph.poses.back().reliability = pair.reliability;
    }
    for (std::size_t k = 0; k < graph.poses.size(); ++k)
        graph.edges.push_back({seen[k].a, seen[k].b, &graph.poses[k], false});
    const GraphSolution solution = graph.solve(6);
    for (std::size_t k = 0; k < graph.poses.size(); ++k)
        EXPECT_EQ(solution.kept[k] != 0, !seen[k].wrong) << seen[k].a << "-" << seen[k].b;
    expectPoses(tour, solution, 0, 0.1, 0.02);
}

TEST(CyclePruning, WithoutScaleASideThatPointsElsewhereIsCutThoughItTurnsRightly)
{
    MadeUpTour tour = grid(3);
    tour.lidar = false;
    Graph graph = graphOf(tour);
    const std::size_t wrong = 4;
    PairPose& pose = graph.poses[wrong];
    pose.t_0_from_1 = rotationAboutZ(1.2) * pose.t_0_from_1;
    pose.reliability = 0.9;
    std::vector<char> kept(graph.edges.size(), 1);
    pruneCycles(9, graph.edges, kept);
    for (std::size_t e = 0; e < kept.size(); ++e)
        EXPECT_EQ(kept[e] != 0, e != wrong) << graph.edges[e].i << "-" << graph.edges[e].j;
}

TEST(CyclePruning, ASideWithoutScaleMustPointWhereTheOthersEnd)
{
    // Three sides of a square with lengths; the fourth turns rightly but leads to a room's twin.
    MadeUpTour tour;
    const double places[][2] = {{0, 0}, {3, 0.4}, {3.5, 4}, {0.2, 3.6}};
    for (const auto& place : places)
        tour.add(place[0], place[1], 0.5 * place[0]);
    MadeUpTour bare = tour;
    bare.lidar = false;
    for (const bool wrong : {false, true}) {
        Graph graph;
        graph.poses = {tour.pairPose(0, 1), tour.pairPose(1, 2), tour.pairPose(2, 3), bare.pairPose(0, 3)};
        for (PairPose& pose : graph.poses)
            pose.reliability = pose.metric ? 0.95 : 0.6;
        if (wrong) graph.poses[3].t_0_from_1 = rotationAboutZ(0.9) * graph.poses[3].t_0_from_1;
        const int ends[][2] = {{0, 1}, {1, 2}, {2, 3}, {0, 3}};
        for (int k = 0; k < 4; ++k)
            graph.edges.push_back({ends[k][0], ends[k][1], &graph.poses[std::size_t(k)], false});
        std::vector<char> kept(4, 1);
        pruneCycles(4, graph.edges, kept);
        EXPECT_EQ(kept, (std::vector<char>{1, 1, 1, char(!wrong)}));
    }
}

TEST(PoseGraph, WithoutScaleADoubtfulEdgeStaysOnlyInATriangleWithTwoCertainOnes)
{
    MadeUpTour tour;
    tour.lidar = false;
    tour.add(0, 0, 0);
    tour.add(3, 0, 1);
    tour.add(1, 3, 2);
    const auto keepsTheFirst = [&](const std::vector<double>& reliabilities) {
        Graph graph;
        const std::pair<int, int> pairs[] = {{0, 1}, {0, 2}, {1, 2}};
        for (std::size_t k = 0; k < reliabilities.size(); ++k) {
            graph.poses.push_back(tour.pairPose(pairs[k].first, pairs[k].second));
            graph.poses.back().reliability = reliabilities[k];
        }
        for (std::size_t k = 0; k < graph.poses.size(); ++k)
            graph.edges.push_back({pairs[k].first, pairs[k].second, &graph.poses[k], false});
        return bool(graph.solve(3).kept[0]);
    };
    EXPECT_FALSE(keepsTheFirst({0.65}));
    EXPECT_TRUE(keepsTheFirst({0.9}));
    EXPECT_TRUE(keepsTheFirst({0.55, 0.9, 0.9}));
    // A room's twin: two doubtful edges that agree because both lead there.
    EXPECT_FALSE(keepsTheFirst({0.55, 0.55, 0.9}));
}

/// Four stations a few metres apart, and a fifth `away_m` from the second, whose pictures agree in this share
/// of their matches.
GraphSolution withAFifthStation(double away_m, double share, bool lidar = false, bool by_hand = false)
{
    MadeUpTour tour;
    tour.lidar = lidar;
    tour.inliers = 200;
    tour.rotation_sigma = 0.01 * kDegree;
    tour.translation_sigma = 0.001;
    tour.add(0, 0, 0);
    tour.add(3, 0, 1);
    tour.add(1, 3, 2);
    tour.add(5, 3, 0.5);
    tour.add(3 + away_m, 0, 2.5);
    Graph graph;
    const std::pair<int, int> pairs[] = {{0, 1}, {0, 2}, {1, 2}, {1, 3}, {2, 3}, {1, 4}, {2, 4}};
    for (const auto& [a, b] : pairs)
        graph.poses.push_back(tour.pairPose(a, b));
    for (PairPose& pose : graph.poses)
        pose.matches = 4 * int(pose.inliers.size());
    graph.poses[5].matches = int(double(graph.poses[5].inliers.size()) / share);
    for (std::size_t k = 0; k < graph.poses.size(); ++k)
        graph.edges.push_back({pairs[k].first, pairs[k].second, &graph.poses[k], false});
    return solvePoseGraph(5, graph.edges, std::vector<char>(graph.edges.size(), by_hand ? 1 : 0));
}

TEST(Crowding, TwoStationsThatPicturesPlaceInOneSpotWithOneViewStayByThemselves)
{
    const GraphSolution solution = withAFifthStation(0.8, 0.7);
    EXPECT_EQ(solution.component[0], solution.component[2]);
    EXPECT_EQ(solution.component[0], solution.component[3]);
    for (const int n : {1, 4})
        for (int other = 0; other < 5; ++other)
            EXPECT_TRUE(n == other || solution.component[n] != solution.component[other]) << n << other;
}

TEST(Crowding, StationsAtTheUsualDistanceOrWithAViewOfTheirOwnStayTogether)
{
    const auto together = [](const GraphSolution& solution) {
        return std::count(solution.component.begin(), solution.component.end(), 0) == 5;
    };
    EXPECT_TRUE(together(withAFifthStation(2.0, 0.7)));
    EXPECT_TRUE(together(withAFifthStation(0.8, 0.3))); // either side of a door
    EXPECT_TRUE(together(withAFifthStation(0.8, 0.7, true)));
    EXPECT_TRUE(together(withAFifthStation(0.8, 0.7, false, true)));
}

TEST(Crowding, ATourWhoseStationsAllStandInPairsStaysTogether)
{
    MadeUpTour tour;
    tour.lidar = false;
    tour.inliers = 200;
    tour.rotation_sigma = 0.01 * kDegree;
    tour.translation_sigma = 0.001;
    for (int k = 0; k < 4; ++k) {
        tour.add(3.5 * k, k % 2, 0.3 * k);
        tour.add(3.5 * k + 0.8, k % 2 + 0.1, 1.0);
    }
    tour.reach_m = 4.5;
    Graph graph = graphOf(tour);
    for (std::size_t k = 0; k < graph.poses.size(); ++k) {
        const bool pair = graph.edges[k].i / 2 == graph.edges[k].j / 2;
        graph.poses[k].matches = int(double(graph.poses[k].inliers.size()) / (pair ? 0.7 : 0.25));
    }
    const GraphSolution solution = graph.solve(8);
    EXPECT_EQ(std::count(solution.component.begin(), solution.component.end(), 0), 8);
}

TEST(PoseGraph, AContradictionBeyondAllNumbersEnds)
{
    std::vector<PairPose> measured(2);
    for (PairPose& pose : measured)
        pose.metric = true;
    measured[0].t_0_from_1 = {1e200, 0, 0}; // the square of the contradiction is infinite
    measured[1].t_0_from_1 = {-1e200, 0, 0};
    const std::vector<GraphEdge> edges{{0, 1, &measured[0], false}, {0, 1, &measured[1], false}};
    std::vector<Pose> poses{{}, {Eigen::Matrix3d::Identity(), measured[0].t_0_from_1}};
    const std::vector<double> weights =
        optimizeRobustly(edges, {Matrix6d::Identity(), Matrix6d::Identity()}, {1, 1}, {0, 0}, {}, poses);
    ASSERT_EQ(weights.size(), 2u);
    EXPECT_EQ(weights[1], 0.0);
}

} // namespace
