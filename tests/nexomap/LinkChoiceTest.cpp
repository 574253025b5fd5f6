// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which pairs become links: sight lines, bridges, links added by the poses.

#include "nexomap/src/model/LinkChoice.h"
#include "nexomap/src/links/SightLine.h"
#include "nexomap/src/model/PoseSupport.h"
#include "tests/nexomap/LibraryFixture.h"

using namespace nexomap;

namespace {

/// Rooms side by side along x, joined by doors around y = 0; two stations each.
MadeUpTour flat()
{
    MadeUpTour tour;
    tour.half_width_m = 9;
    tour.half_depth_m = 3;
    tour.walls = {{-3, -0.5, 0.5}, {3, -0.5, 0.5}};
    for (const double x : {-6.0, 0.0, 6.0}) {
        tour.add(x, 0.0, 0.5 * x);
        tour.add(x + 1, 2.0, 1.0 - x);
    }
    return tour;
}

bool truth(const MadeUpTour& tour, int a, int b)
{
    const Eigen::Vector3d ray = tour.stations[a].pose.inverse() * tour.stations[b].pose.t;
    return tour.rayRange(tour.stations[a].pose, ray) > ray.norm();
}

class LinkChoice : public LibraryTest
{};

TEST_F(LinkChoice, EveryLinkIsASightLineAndAllNearSightLinesAreLinks)
{
    const MadeUpTour tour = flat();
    link(tour);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    std::set<std::pair<int, int>> linked;
    for (const MatchReport& m : matches()) {
        const int a = indexOf(tour, m.name_0), b = indexOf(tour, m.name_1);
        EXPECT_TRUE(truth(tour, a, b)) << m.name_0 << " " << m.name_1;
        EXPECT_EQ(m.mode, 0);
        linked.insert({std::min(a, b), std::max(a, b)});
    }
    for (int a = 0; a < 6; ++a)
        for (int b = a + 1; b < 6; ++b)
            if (truth(tour, a, b) && (tour.stations[a].pose.t - tour.stations[b].pose.t).norm() < 6.0) {
                EXPECT_TRUE(linked.count({a, b})) << a << " " << b;
            }
}

TEST_F(LinkChoice, LinkValuesPointAtTheOtherStationsFloor)
{
    const MadeUpTour tour = flat();
    link(tour);
    for (const MatchReport& m : matches()) {
        const Pose &p = tour.stations[indexOf(tour, m.name_0)].pose,
                   &q = tour.stations[indexOf(tour, m.name_1)].pose;
        const auto off = [&](const Pose& from, const Pose& to, double azimuth, double polar) {
            const Eigen::Vector3d floor =
                from.inverse() * Eigen::Vector3d(to.t.x(), to.t.y(), -tour.camera_height_m);
            return std::acos(floor.normalized().dot(directionFromAngles(azimuth, polar))) / kDegree;
        };
        EXPECT_LT(off(p, q, -m.rot_0, m.icon_y1), 0.5);
        EXPECT_LT(off(q, p, -m.rot_1 - kPi, m.icon_y0), 0.5);
    }
}

TEST_F(LinkChoice, PartsThatOnlyAHiddenPairJoinsStayOneGroup)
{
    MadeUpTour tour;
    tour.half_width_m = 6;
    tour.half_depth_m = 3;
    tour.walls = {{0, 2.8, 2.9}}; // a slit that no pair sees through
    tour.add(-3, 0, 0);
    tour.add(3, 0, 1);
    link(tour);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    ASSERT_EQ(NexomapGetPanoMatchNum(), 1);
    EXPECT_EQ(match(0).mode, 0);
}

TEST_F(LinkChoice, AutoCreateAddsSightLinesThatWereNotMatchedAsModeTwoWithoutFiles)
{
    MadeUpTour tour; // the corners of a square: its sides match, its diagonals do not
    tour.half_width_m = tour.half_depth_m = 8;
    tour.reach_m = 7.1;
    for (const auto& [x, y] : {std::pair{-3.5, -3.5}, {3.5, -3.5}, {3.5, 3.5}, {-3.5, 3.5}})
        tour.add(x, y, x - y);
    link(tour);
    const int before = NexomapGetPanoMatchNum();
    const auto files = folder.names();
    const auto poses = nodes();
    ASSERT_EQ(NexomapAutoCreatePanoMatch(), NEXOMAP_OK);
    EXPECT_EQ(before, 4);
    EXPECT_EQ(NexomapGetPanoMatchNum(), 6);
    for (int k = before; k < NexomapGetPanoMatchNum(); ++k) {
        EXPECT_EQ(match(k).mode, 2);
        EXPECT_GE(match(k).reliability, 0.5);
    }
    EXPECT_EQ(folder.names(), files);
    EXPECT_EQ(nodes(), poses);
    const int after = NexomapGetPanoMatchNum();
    ASSERT_EQ(NexomapAutoCreatePanoMatch(), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoMatchNum(), after) << "nothing is left to add";
    // Links by pose do not pull at the poses.
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    for (std::size_t k = 0; k < poses.size(); ++k)
        EXPECT_LT((node(int(k)).position - poses[k].position).norm(), 1e-6);
}

TEST_F(LinkChoice, NeighboursThatDidNotMatchButSeeEachOtherAreLinkedByPose)
{
    MadeUpTour tour;
    tour.half_width_m = tour.half_depth_m = 5;
    tour.reach_m = 3.5;
    for (const auto& [x, y] : {std::pair{-1.5, -1.5}, {1.5, -1.5}, {1.5, 1.5}, {-1.5, 1.5}})
        tour.add(x, y, x - y);
    link(tour);
    const auto all = matches();
    ASSERT_EQ(all.size(), 6u);
    for (std::size_t k = 0; k < all.size(); ++k) {
        EXPECT_EQ(all[k].mode, k < 4 ? 0 : 2);
        const Pose &a = tour.stations[indexOf(tour, all[k].name_0)].pose,
                   &b = tour.stations[indexOf(tour, all[k].name_1)].pose;
        EXPECT_NEAR(all[k].spacing, (a.t - b.t).norm(), 0.02);
    }
}

TEST_F(LinkChoice, TwoRunsGiveTheSameBits)
{
    const MadeUpTour tour = flat();
    link(tour);
    const auto first_nodes = nodes();
    const auto first_matches = matches();
    NexomapClean();
    link(tour);
    EXPECT_EQ(nodes(), first_nodes);
    EXPECT_EQ(matches(), first_matches);
}

TEST_F(LinkChoice, WrongPairsAreNotLinked)
{
    MadeUpTour tour = flat();
    PairPose wrong = tour.pairPose(0, 3);
    wrong.t_0_from_1 += Eigen::Vector3d(1.0, 0.5, 0);
    wrong.reliability = 0.6;
    tour.overrides[{MadeUpTour::nameOf(0), MadeUpTour::nameOf(2)}] = wrong;
    link(tour);
    for (const NodeReport& n : nodes()) {
        const int k = indexOf(tour, n.name);
        const Pose truth = tour.stations[0].pose.inverse() * tour.stations[k].pose;
        EXPECT_LT((n.position - truth.t).norm(), 0.05) << k;
    }
}

TEST_F(LinkChoice, WithoutLidarEveryBelievedPairIsALink)
{
    MadeUpTour tour = flat();
    tour.lidar = false;
    link(tour);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    EXPECT_GE(NexomapGetPanoMatchNum(), 5);
    for (const MatchReport& m : matches())
        EXPECT_GT(m.spacing, 0.1);
}

TEST(SightLine, AWallBlocksAndADoorDoesNot)
{
    MadeUpTour tour = flat();
    const auto see = [&](int a, int b) {
        return seeEachOther(tour.panorama(a), tour.stations[a].pose, tour.panorama(b), tour.stations[b].pose,
                            Eigen::Vector3d::UnitZ());
    };
    EXPECT_TRUE(see(0, 1));  // the same room
    EXPECT_TRUE(see(0, 2));  // through the door
    EXPECT_FALSE(see(1, 3)); // through the wall
}

TEST(PoseSupport, AChainIsAsGoodAsItsWeakestEdgeAndTheStrongestChainCounts)
{
    Model model;
    model.nodes.resize(5);
    const auto join = [&](int a, int b, double reliability) {
        Edge edge;
        edge.node_0 = a;
        edge.node_1 = b;
        edge.reliability = reliability;
        model.edges.push_back(edge);
    };
    join(0, 1, 0.99);
    join(2, 1, 0.6);
    join(2, 3, 0.98);
    join(0, 2, 0.3);
    const PoseSupport support(model);
    EXPECT_EQ(support.between(0, 1), 0.99);
    EXPECT_EQ(support.between(0, 2), 0.6);
    EXPECT_EQ(support.between(3, 0), 0.6);
    EXPECT_EQ(support.between(3, 2), 0.98);
    EXPECT_EQ(support.between(0, 4), 0.0);
}

TEST(LinkChoiceRule, OnlyALongLinkPastAStationOnTheWayIsNeedless)
{
    const std::vector<Eigen::Vector3d> stations = {{0, 0, 0}, {8, 0, 0}, {4, 0.5, 0}, {4, 3, 0}, {5, 0, 0}};
    LinkedPairs linked(stations.size());
    EXPECT_FALSE(isNeedless(stations, linked, 0, 1)) << "nothing is linked yet";
    linked.add(0, 3), linked.add(3, 1);
    EXPECT_FALSE(isNeedless(stations, linked, 0, 1)) << "37 degrees aside";
    linked.add(0, 2);
    EXPECT_FALSE(isNeedless(stations, linked, 0, 1)) << "linked to one end only";
    linked.add(2, 1);
    EXPECT_TRUE(isNeedless(stations, linked, 0, 1));
    linked.add(2, 4);
    EXPECT_FALSE(isNeedless(stations, linked, 0, 4)) << "5 m are near";
}

} // namespace
