// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What people do to a linked tour: contradict it, cut it, take that back, stop half-way, all at once.

#include "tests/nexomap/LibraryFixture.h"

#include <atomic>
#include <thread>

using namespace nexomap;

namespace {

class DegenerateByHand : public LibraryTest
{
protected:
    static std::string name(int k) { return MadeUpTour::nameOf(k); }

    /// Pairs of directions to points of the hall, as if the second station stood `shift` elsewhere.
    static int linkByHand(const MadeUpTour& tour, int a, int b, const Eigen::Vector3d& shift, int count = 6)
    {
        Pose moved = tour.stations[std::size_t(b)].pose;
        moved.t += shift;
        if (const int status = NexomapAddPanoMatch(name(a).c_str(), name(b).c_str())) return status;
        for (int k = 0; k < count; ++k) {
            const double turn = 2.0 * kPi * k / count + 0.3;
            const Eigen::Vector3d ray(std::cos(turn), std::sin(turn), k % 2 ? -0.35 : 0.2);
            const Pose& from = tour.stations[std::size_t(a)].pose;
            const Eigen::Vector3d point =
                from * (ray.normalized() * tour.rayRange(from, from.R.transpose() * (from.R * ray)));
            const Eigen::Vector3d u = from.inverse() * point, v = moved.inverse() * point;
            if (const int status = NexomapAddPanoLinkPair(name(a).c_str(), name(b).c_str(), azimuthOf(u),
                                                          polarOf(u), azimuthOf(v), polarOf(v)))
                return status;
        }
        return NexomapAnalyzePanoMatchParas(name(a).c_str(), name(b).c_str());
    }
    static MadeUpTour hall()
    {
        MadeUpTour tour;
        tour.half_width_m = 7;
        tour.half_depth_m = 4;
        return tour;
    }
};

TEST_F(DegenerateByHand, ALinkThatContradictsFiveOthersIsListedButDoesNotBendTheTour)
{
    MadeUpTour tour = hall();
    for (const Eigen::Vector2d& at : {Eigen::Vector2d(-4, -2), {-4, 2}, {0, -2}, {0, 2}, {4, 0}})
        tour.add(at.x(), at.y(), 0.5 * at.x());
    tour.reach_m = 5.0;
    link(tour);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 1);
    const std::vector<NodeReport> before = nodes();
    const int links = NexomapGetPanoMatchNum();
    ASSERT_GE(links, 5);
    // 0 and 4 are not linked; a person picks the wrong corners: 1.5 m off.
    const int status = linkByHand(tour, 0, 4, {-1.5, 0.4, 0.0});
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    const std::vector<NodeReport> after = nodes();
    for (std::size_t k = 0; k < before.size(); ++k)
        EXPECT_LT((after[k].position - before[k].position).norm(), 0.03) << k;
    if (status == NEXOMAP_CANNOT_SOLVE) return; // refused at once: the ranges deny such a place
    ASSERT_EQ(status, NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoMatchNum(), links + 1) << "the author's own link stays in the list";
}

TEST_F(DegenerateByHand, ADeletedBridgeSplitsTheGroupAndMakingItAgainJoinsItInTheSamePlace)
{
    MadeUpTour tour = hall();
    for (const double x : {-5.0, -2.0, 2.0, 5.0})
        tour.add(x, 0.3 * x, 0.2 * x);
    tour.reach_m = 4.5;
    link(tour);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 1);
    const std::vector<NodeReport> before = nodes();
    for (const MatchReport& m : matches())
        if ((m.name_0 <= name(1)) != (m.name_1 <= name(1))) {
            ASSERT_EQ(NexomapDeletePanoMatch(m.name_0.c_str(), m.name_1.c_str()), NEXOMAP_OK);
        }
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 2);
    EXPECT_EQ(NexomapGetPanoNodeNumInOneGroup(0), 2);
    EXPECT_EQ(NexomapGetPanoNodeNumInOneGroup(1), 2);

    ASSERT_EQ(linkByHand(tour, 1, 2, {0, 0, 0}), NEXOMAP_OK);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 1);
    const std::vector<NodeReport> after = nodes();
    for (std::size_t k = 0; k < before.size(); ++k) {
        EXPECT_LT((after[k].position - before[k].position).norm(), 0.05) << k;
        EXPECT_LT(rotationAngle(after[k].rotation, before[k].rotation), 0.5 * kDegree) << k;
    }
}

TEST_F(DegenerateByHand, DirectionsThatAreNoNumbersAreRefusedAndLeaveTheAnnouncedMatchUsable)
{
    MadeUpTour tour = hall();
    tour.add(-2, 0, 0.3);
    tour.add(2, 0.5, -1.0);
    tour.reach_m = 1.0;
    link(tour);
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    const double no_number = std::nan(""), endless = std::numeric_limits<double>::infinity();
    for (const double bad : {no_number, endless, -endless})
        for (int at = 0; at < 4; ++at) {
            double v[4] = {0.1, 1.5, 0.2, 1.5};
            v[at] = bad;
            EXPECT_EQ(NexomapAddPanoLinkPair(name(0).c_str(), name(1).c_str(), v[0], v[1], v[2], v[3]),
                      NEXOMAP_BAD_ARGUMENT);
        }
    EXPECT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_CANNOT_SOLVE);
    EXPECT_EQ(NexomapGetPanoMatchNum(), 0);
    EXPECT_EQ(linkByHand(tour, 0, 1, {0, 0, 0}), NEXOMAP_OK);
}

TEST_F(DegenerateByHand, ThreePicksOnOneLineAndThreeWithinFiveDegreesCannotBeSolvedWithOrWithoutLidar)
{
    for (const bool lidar : {true, false}) {
        MadeUpTour tour = hall();
        tour.lidar = lidar;
        tour.add(-2, 0, 0.3);
        tour.add(2, 0.5, -1.0);
        tour.reach_m = 1.0;
        link(tour);
        const auto pick = [&](const std::vector<Eigen::Vector3d>& points) {
            EXPECT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
            for (const Eigen::Vector3d& point : points) {
                const Eigen::Vector3d u = tour.stations[0].pose.inverse() * point,
                                      v = tour.stations[1].pose.inverse() * point;
                EXPECT_EQ(NexomapAddPanoLinkPair(name(0).c_str(), name(1).c_str(), azimuthOf(u), polarOf(u),
                                                 azimuthOf(v), polarOf(v)),
                          NEXOMAP_OK);
            }
            return NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str());
        };
        EXPECT_EQ(pick({{7, 4, -1.0}, {7, 4, 0.0}, {7, 4, 1.0}}), NEXOMAP_CANNOT_SOLVE) << "up a corner";
        EXPECT_EQ(pick({{7, 3.0, 0.0}, {7, 3.3, 0.1}, {7, 3.1, 0.3}}), NEXOMAP_CANNOT_SOLVE)
            << "within five degrees";
        EXPECT_EQ(NexomapGetPanoMatchNum(), 0);
        ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
        EXPECT_EQ(NexomapGetPanoGroupNum(), 2);
    }
}

TEST_F(DegenerateByHand, StoppingAfterAnyStageLeavesALibraryThatStartsAfresh)
{
    MadeUpTour tour = hall();
    for (const double x : {-3.0, 0.0, 3.0})
        tour.add(x, 0.2 * x, x);
    const std::vector<std::function<int()>> stages = {
        [] { return NexomapAddNode(MadeUpTour::pathOf(0).c_str()); },
        [] { return NexomapAddNode(MadeUpTour::pathOf(1).c_str()); },
        [] { return NexomapFinishAddNode(); },
        [] { return NexomapDeletePanoMatch(name(0).c_str(), name(1).c_str()); },
        [] { return NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()); },
        [] { return NexomapAddPanoLinkPair(name(0).c_str(), name(1).c_str(), 0.1, 1.5, 0.2, 1.5); },
        [] { return NexomapRelocateAll(); },
        [] { return NexomapAutoCreatePanoMatch(); }};
    startWith(tour.frontEnd());
    for (std::size_t last = 0; last < stages.size(); ++last) {
        ASSERT_EQ(NexomapReset(), NEXOMAP_OK);
        for (std::size_t k = 0; k <= last; ++k)
            EXPECT_EQ(stages[k](), NEXOMAP_OK) << k;
        // The window is closed, or another tour is opened.
        ASSERT_EQ(last % 2 ? NexomapClean() : NexomapReset(), NEXOMAP_OK);
        link(tour);
        EXPECT_EQ(NexomapGetPanoNodeNum(), 3);
        EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
        EXPECT_LT((node(2).position - node(0).position).norm(), 7.0);
    }
}

TEST_F(DegenerateByHand, CallsFromManyThreadsAtOnceTakeTurns)
{
    MadeUpTour tour = hall();
    for (int k = 0; k < 8; ++k)
        tour.add(1.5 * k - 6.0, 0.4 * (k % 3), 0.3 * k);
    startWith(tour.frontEnd());
    ASSERT_EQ(NexomapReset(), NEXOMAP_OK);
    std::atomic<int> added{0}, refused{0};
    const auto each = [&](int thread) {
        for (int k = 0; k < 8; ++k) {
            const int status = NexomapAddNode(MadeUpTour::pathOf((k + thread) % 8).c_str());
            status == NEXOMAP_OK ? ++added : ++refused;
            const int count = NexomapGetPanoNodeNum();
            EXPECT_TRUE(count == NEXOMAP_NOT_READY || count >= 0);
        }
    };
    std::thread threads[] = {std::thread(each, 0), std::thread(each, 3), std::thread(each, 5)};
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(added, 8);
    EXPECT_EQ(refused, 16) << "a panorama that another thread had added";
    std::atomic<int> finished{0};
    std::thread first([&] { finished += NexomapFinishAddNode() == NEXOMAP_OK; });
    std::thread second([&] { finished += NexomapFinishAddNode() == NEXOMAP_OK; });
    first.join();
    second.join();
    EXPECT_EQ(finished, 2) << "finishing twice is no fault";
    EXPECT_EQ(NexomapGetPanoNodeNum(), 8);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
}

} // namespace
