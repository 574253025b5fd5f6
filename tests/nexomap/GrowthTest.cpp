// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Tours too large to compare every pair in full.

#include "tests/nexomap/LibraryFixture.h"

#include <mutex>

using namespace nexomap;

namespace {

/// Stations in rows, 2.9 m apart; every pair nearer than 7 m matches.
MadeUpTour largeTour(int count)
{
    MadeUpTour tour;
    tour.half_width_m = 25;
    tour.half_depth_m = 25;
    for (int k = 0; k < count; ++k)
        tour.add(-18.0 + 2.9 * (k % 12), -18.0 + 2.9 * (k / 12) + 0.02 * (k % 5), 0.7 * k);
    return tour;
}

/// A front end whose first sight tells how near two stations are, and which writes down what it is asked.
class Watched
{
public:
    explicit Watched(const MadeUpTour& made_up)
        : tour(made_up)
        , front(made_up.frontEnd())
    {
        front.load = [load = front.load](const std::string& path, std::string* error) {
            const auto panorama = load(path, error);
            if (!panorama) return panorama;
            auto featured = std::make_shared<Panorama>(*panorama);
            int index = 0;
            for (const char c : featured->id)
                index = index * 26 + (c - 'A');
            featured->features.descriptors.assign(128, 0);
            featured->features.bearings = {Eigen::Vector3f::UnitX()};
            featured->features.ranges_m = {1.f};
            featured->features.scales = {float(index)};
            featured->features.angles_rad = {0.f};
            return std::shared_ptr<const Panorama>(featured);
        };
        front.match = [this, match = front.match](const Panorama& p, const Panorama& q) {
            const std::lock_guard<std::mutex> guard(m_lock);
            compared.insert({std::min(p.id, q.id), std::max(p.id, q.id)});
            awake = awake && !p.range.range_m.empty() && !q.range.range_m.empty();
            return match(p, q);
        };
        front.likeness = [this](const Features& p, const Features& q) {
            const int a = int(p.scales.front()), b = int(q.scales.front());
            const std::lock_guard<std::mutex> guard(m_lock);
            ++sights;
            if (blind.count({std::min(a, b), std::max(a, b)})) return 0;
            return int(1000.0 / (1.0 + (tour.stations[a].pose.t - tour.stations[b].pose.t).norm()));
        };
    }

    MadeUpTour tour;
    FrontEnd front;
    std::set<std::pair<std::string, std::string>> compared;
    std::set<std::pair<int, int>> blind; ///< pairs whose likeness the first sight does not see
    int sights = 0;
    bool awake = true;

private:
    std::mutex m_lock;
};

class Growth : public LibraryTest
{
protected:
    /// The worst error of positions after bringing the first station to its place, metres.
    static double worstPosition(const MadeUpTour& tour)
    {
        const std::vector<NodeReport> all = nodes();
        const Pose& first = tour.stations[std::size_t(indexOf(tour, all.front().name))].pose;
        double worst = 0.0;
        for (const NodeReport& n : all) {
            const Pose& truth = tour.stations[std::size_t(indexOf(tour, n.name))].pose;
            worst = std::max(worst, (first * n.position - truth.t).norm());
        }
        return worst;
    }
};

TEST_F(Growth, ASmallTourComparesAllPairsInFull)
{
    Watched watched(largeTour(30));
    link(watched.tour, watched.front);
    EXPECT_EQ(watched.compared.size(), 30u * 29u / 2u);
    EXPECT_EQ(watched.sights, 0);
}

TEST_F(Growth, ALargeTourComparesTheMostAlikeInFullAndStaysInOnePiece)
{
    Watched watched(largeTour(112));
    link(watched.tour, watched.front);
    // The first hundred among themselves, and of each of the others a couple of dozen.
    EXPECT_LT(watched.compared.size(), 100u * 99u / 2u + 12u * 30u + 100u * 16u);
    EXPECT_GT(watched.sights, 12 * 100);
    EXPECT_TRUE(watched.awake);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    EXPECT_LT(worstPosition(watched.tour), 0.05);
}

TEST_F(Growth, APairThatTheFirstSightMissedIsComparedOnceThePosesSayThatItSharesAView)
{
    Watched watched(largeTour(110));
    // The last station does not look like its neighbours, but the three before it hold it in place.
    for (int k = 0; k < 106; ++k)
        watched.blind.insert({k, 109});
    link(watched.tour, watched.front);
    EXPECT_TRUE(watched.compared.count({MadeUpTour::nameOf(97), MadeUpTour::nameOf(109)}));
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
}

TEST_F(Growth, TheOrderOfAddingChangesNeitherLinksNorPoses)
{
    const auto linksOf = [] {
        std::set<std::pair<std::string, std::string>> names;
        for (const MatchReport& m : matches())
            names.insert({std::min(m.name_0, m.name_1), std::max(m.name_0, m.name_1)});
        return names;
    };
    Watched watched(largeTour(103));
    link(watched.tour, watched.front);
    const auto links = linksOf();
    EXPECT_LT(worstPosition(watched.tour), 0.03);
    NexomapClean();
    Watched again(largeTour(103));
    startWith(again.front);
    for (int k = 102; k >= 0; --k)
        ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(k).c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
    EXPECT_LT(worstPosition(again.tour), 0.03);
    const auto other = linksOf();
    std::vector<std::pair<std::string, std::string>> different;
    std::set_symmetric_difference(links.begin(), links.end(), other.begin(), other.end(),
                                  std::back_inserter(different));
    EXPECT_LT(different.size(), links.size() / 50);
}

TEST_F(Growth, ALinkDeletedInOneGroupLeavesTheOthersToTheLastBit)
{
    MadeUpTour tour;
    tour.reach_m = 5.0;
    for (const double x : {-12.0, 12.0})
        for (int k = 0; k < (x < 0 ? 4 : 5); ++k)
            tour.add(x + k % 2 * 2.0, -4.0 + 2.0 * k, 0.4 * k);
    link(tour);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 2);
    const std::vector<NodeReport> before = nodes();
    for (const MatchReport& m : matches())
        if (indexOf(tour, m.name_0) < 4) {
            ASSERT_EQ(NexomapDeletePanoMatch(m.name_0.c_str(), m.name_1.c_str()), NEXOMAP_OK);
            break;
        }
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    for (int k = 4; k < 9; ++k)
        EXPECT_TRUE(node(k) == before[std::size_t(k)]) << k;
}

TEST(PanoramaAtRest, ComesBackAsItWas)
{
    MadeUpTour tour;
    tour.add(1, 2, 0.3);
    auto panorama = std::make_shared<Panorama>(tour.panorama(0));
    panorama->range.unit_m = 0.001f;
    for (float& range : panorama->range.range_m)
        range = float(std::lround(range * 2000.f)) * 0.5f * 0.001f; // medians of millimetres
    panorama->range.edge(7, 9) = 255;
    PanoramaSource source(panorama);
    EXPECT_TRUE(source.awake());
    source.rest();
    EXPECT_FALSE(source.awake());
    EXPECT_TRUE(source.loaded()->metric());
    EXPECT_EQ(source.loaded()->range.cell(100, 200), panorama->range.range_m(100, 200));
    const Panorama& again = source.get(tour.frontEnd());
    EXPECT_EQ(cv::norm(again.range.range_m, panorama->range.range_m, cv::NORM_INF), 0.0);
    EXPECT_EQ(cv::norm(again.range.edge, panorama->range.edge, cv::NORM_INF), 0.0);
    EXPECT_EQ(again.range.unit_m, 0.001f);
}

TEST(PanoramaAtRest, RangesOfUnknownUnitAreRoundedToHalfAMillimetre)
{
    MadeUpTour tour;
    tour.add(1, 2, 0.3);
    PanoramaSource source(std::make_shared<const Panorama>(tour.panorama(0)));
    const cv::Mat1f before = source.loaded()->range.range_m;
    source.rest();
    EXPECT_LT(cv::norm(source.get(tour.frontEnd()).range.range_m, before, cv::NORM_INF), 0.26e-3);
}

} // namespace
