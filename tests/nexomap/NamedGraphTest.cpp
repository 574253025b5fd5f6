// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The order in which panoramas come, and the way round in which they were measured, change nothing.

#include "nexomap/src/graph/NamedGraph.h"
#include "nexomap/src/pair/PairSolver.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

using namespace nexomap;

namespace {

/// Ten stations of a hall with noisy measurements, three of them nonsense, so that the solution has to
/// choose.
struct DoubtfulTour
{
    explicit DoubtfulTour(bool lidar)
    {
        tour.lidar = lidar;
        tour.rotation_sigma = 0.3 * kDegree;
        tour.translation_sigma = 0.03;
        std::mt19937 random(5);
        std::uniform_real_distribution<double> unit(-1.0, 1.0);
        for (int k = 0; k < 10; ++k)
            tour.add(6.0 * unit(random), 6.0 * unit(random), 3.0 * unit(random));
        for (int a = 0; a < 10; ++a)
            for (int b = a + 1; b < 10; ++b)
                if ((tour.stations[std::size_t(a)].pose.t - tour.stations[std::size_t(b)].pose.t).norm() <
                    5.0)
                    pairs.emplace_back(a, b);
        for (const auto& [a, b] : pairs)
            poses.push_back(tour.pairPose(a, b));
        for (std::size_t k = 1; k < poses.size(); k += poses.size() / 3) {
            poses[k].R_0_from_1 = rotationAboutZ(1.0) * poses[k].R_0_from_1;
            poses[k].reliability = 0.75;
        }
    }

    /// @param order    the stations in the order in which they come
    /// @param flipped  measured from the larger name to the smaller
    GraphSolution solve(const std::vector<int>& order, bool flipped) const
    {
        std::vector<std::string> names;
        std::vector<int> place(order.size());
        for (std::size_t k = 0; k < order.size(); ++k) {
            names.push_back(MadeUpTour::nameOf(order[k]));
            place[std::size_t(order[k])] = int(k);
        }
        std::vector<PairPose> measured;
        for (const PairPose& pose : poses)
            measured.push_back(flipped ? inverted(pose) : pose);
        std::vector<GraphEdge> edges;
        for (std::size_t k = 0; k < pairs.size(); ++k) {
            int a = place[std::size_t(pairs[k].first)], b = place[std::size_t(pairs[k].second)];
            if (flipped) std::swap(a, b);
            edges.push_back({a, b, &measured[k], false});
        }
        GraphSolution solution = NamedGraph(names, edges).solve(std::vector<char>(edges.size(), 0));
        GraphSolution by_station = solution;
        for (std::size_t n = 0; n < order.size(); ++n) {
            by_station.poses[n] = solution.poses[std::size_t(place[n])];
            by_station.up[n] = solution.up[std::size_t(place[n])];
            by_station.component[n] = solution.component[std::size_t(place[n])];
        }
        return by_station;
    }

    MadeUpTour tour;
    std::vector<std::pair<int, int>> pairs;
    std::vector<PairPose> poses;
};

void expectSameInAnyOrder(bool lidar)
{
    const DoubtfulTour doubtful(lidar);
    std::vector<int> order(10);
    std::iota(order.begin(), order.end(), 0);
    const GraphSolution first = doubtful.solve(order, false);
    EXPECT_LT(std::count(first.kept.begin(), first.kept.end(), char(1)), std::ptrdiff_t(first.kept.size()));
    std::mt19937 random(3);
    for (int round = 0; round < 6; ++round) {
        std::shuffle(order.begin(), order.end(), random);
        const GraphSolution other = doubtful.solve(order, round % 2 == 1);
        EXPECT_EQ(other.kept, first.kept) << round;
        for (std::size_t a = 0; a < 10; ++a)
            for (std::size_t b = a + 1; b < 10; ++b) {
                ASSERT_EQ(first.component[a] == first.component[b], other.component[a] == other.component[b]);
                if (first.component[a] != first.component[b]) continue;
                const Pose was = first.poses[a].inverse() * first.poses[b],
                           is = other.poses[a].inverse() * other.poses[b];
                EXPECT_LT(rotationAngle(was.R, is.R), 1e-9);
                EXPECT_LT((was.t - is.t).norm(), 1e-9);
                EXPECT_LT(
                    (first.poses[a].R.transpose() * first.up[a] - other.poses[a].R.transpose() * other.up[a])
                        .norm(),
                    1e-9);
            }
    }
}

TEST(NamedGraph, AnyOrderGivesTheSameSolutionWithLidar)
{
    expectSameInAnyOrder(true);
}

TEST(NamedGraph, AnyOrderGivesTheSameSolutionWithoutLidar)
{
    expectSameInAnyOrder(false);
}

TEST(NamedGraph, TheFirstToComeOfAGroupStandsAtHeadingZero)
{
    const DoubtfulTour doubtful(true);
    const GraphSolution solution = doubtful.solve({4, 7, 1, 0, 9, 2, 3, 8, 5, 6}, false);
    ASSERT_EQ(solution.component[4], 0);
    EXPECT_EQ(solution.poses[4].t.tail<2>().norm(), 0.0);
    EXPECT_EQ((solution.poses[4].R - Eigen::Matrix3d::Identity()).norm(), 0.0);
}

} // namespace
