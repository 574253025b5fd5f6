// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Links made by hand: picks with noise against the truth, degenerate picks, and what the state becomes.

#include "nexomap/src/links/HandMadePose.h"
#include "tests/nexomap/LibraryFixture.h"

#include <opencv2/imgcodecs.hpp>

using namespace nexomap;

namespace {

/// Two stations in a room of 8 x 6 m that the library does not match by itself.
MadeUpTour room()
{
    MadeUpTour tour;
    tour.half_width_m = 4;
    tour.half_depth_m = 3;
    tour.reach_m = 0.0;
    tour.add(-1.5, 0.5, 0.4, 0.0, 0.004, -0.003);
    tour.add(1.5, -0.8, -2.2, 0.05, -0.002, 0.005);
    tour.add(0.5, 1.8, 1.0);
    return tour;
}

/// Points of the room's surface seen from both stations, with noise on each direction.
std::vector<PickedPair> picks(const MadeUpTour& tour, int a, int b, int count, double noise_deg,
                              unsigned seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<double> unit_normal; // which takes no deviation of 0
    const auto normal = [&] { return noise_deg * kDegree * unit_normal(random); };
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::vector<PickedPair> all;
    while (int(all.size()) < count) {
        const Eigen::Vector3d u =
            directionFromAngles(2 * kPi * unit(random), (0.3 + 0.45 * unit(random)) * kPi);
        const Pose &from = tour.stations[a].pose, &to = tour.stations[b].pose;
        const Eigen::Vector3d point = from * (tour.rayRange(from, u) * u);
        const Eigen::Vector3d v = to.inverse() * point;
        if (std::abs(tour.rayRange(to, v) - v.norm()) > 0.01) continue;
        // People spread their picks: none within 25 degrees of another.
        bool apart = true;
        for (const PickedPair& p : all)
            apart = apart && directionFromAngles(p.azimuth_0, p.polar_0).dot(u) < std::cos(25 * kDegree);
        if (!apart && count <= 8) continue;
        all.push_back({azimuthOf(u) + normal() / std::sin(polarOf(u)), polarOf(u) + normal(),
                       azimuthOf(v) + normal() / std::sin(polarOf(v)), polarOf(v) + normal()});
    }
    return all;
}

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void expectAccuracy(int count, double degrees, double metres)
{
    const MadeUpTour tour = room();
    const Panorama p = tour.panorama(0), q = tour.panorama(1);
    const Pose truth = tour.stations[0].pose.inverse() * tour.stations[1].pose;
    std::vector<double> turns, shifts;
    for (unsigned draw = 0; draw < 50; ++draw) {
        const auto pose = poseFromPicks(p, q, picks(tour, 0, 1, count, 0.3, 100 + draw));
        turns.push_back(pose ? rotationAngle(pose->R_0_from_1, truth.R) / kDegree : 180.0);
        shifts.push_back(pose ? (pose->t_0_from_1 - truth.t).norm() : 100.0);
    }
    EXPECT_LE(medianOf(turns), degrees);
    EXPECT_LE(medianOf(shifts), metres);
}

TEST(HandMadePose, ThreePairsWithNoiseGiveOneDegreeAndFiveCentimetres)
{
    expectAccuracy(3, 1.0, 0.05);
}

TEST(HandMadePose, EightPairsWithNoiseGiveAThirdOfADegreeAndTwoCentimetres)
{
    expectAccuracy(8, 0.3, 0.02);
}

TEST(HandMadePose, OneWrongPairAmongEightIsLeftOut)
{
    const MadeUpTour tour = room();
    auto all = picks(tour, 0, 1, 8, 0.1, 3);
    all[4].azimuth_1 += 0.8;
    const auto pose = poseFromPicks(tour.panorama(0), tour.panorama(1), all);
    ASSERT_TRUE(pose);
    const Pose truth = tour.stations[0].pose.inverse() * tour.stations[1].pose;
    EXPECT_LT(rotationAngle(pose->R_0_from_1, truth.R) / kDegree, 0.5);
    EXPECT_LT((pose->t_0_from_1 - truth.t).norm(), 0.04);
    EXPECT_LE(pose->inliers.size(), 7u);
}

TEST(HandMadePose, DegeneratePicksAreRefused)
{
    const MadeUpTour tour = room();
    const Panorama p = tour.panorama(0), q = tour.panorama(1);
    const auto good = picks(tour, 0, 1, 5, 0.0, 1);
    EXPECT_FALSE(poseFromPicks(p, q, {}));
    EXPECT_FALSE(poseFromPicks(p, q, {good[0], good[1]}));
    EXPECT_FALSE(poseFromPicks(p, q, {good[0], good[0], good[0], good[0]}));
    EXPECT_FALSE(poseFromPicks(p, q, {good[0], good[1], good[1], good[0]}))
        << "two places only: all on one line";
    std::vector<PickedPair> line;
    for (int k = 0; k < 5; ++k) { // up one corner of the room
        const Eigen::Vector3d point(4.0, 3.0, -1.2 + 0.4 * k);
        const Eigen::Vector3d u = tour.stations[0].pose.inverse() * point,
                              v = tour.stations[1].pose.inverse() * point;
        line.push_back({azimuthOf(u), polarOf(u), azimuthOf(v), polarOf(v)});
    }
    EXPECT_FALSE(poseFromPicks(p, q, line));
    MadeUpTour dark = tour;
    dark.lidar = false;
    EXPECT_FALSE(poseFromPicks(dark.panorama(0), q, good)) << "no range";
}

class HandMade : public LibraryTest
{
protected:
    static std::string name(int k) { return MadeUpTour::nameOf(k); }
    static void pick(const std::string& a, const std::string& b, const std::vector<PickedPair>& all)
    {
        for (const PickedPair& p : all)
            ASSERT_EQ(
                NexomapAddPanoLinkPair(a.c_str(), b.c_str(), p.azimuth_0, p.polar_0, p.azimuth_1, p.polar_1),
                NEXOMAP_OK);
    }
};

TEST_F(HandMade, AnnouncePickAnalyseRelocateMakesALinkOfModeOneWithoutFiles)
{
    const MadeUpTour tour = room();
    link(tour);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 3);
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    pick(name(0), name(1), picks(tour, 0, 1, 6, 0.1, 5));
    ASSERT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    ASSERT_EQ(NexomapGetPanoMatchNum(), 1);
    const MatchReport m = match(0);
    EXPECT_EQ(m.mode, 1);
    EXPECT_NEAR(m.spacing, (tour.stations[0].pose.t - tour.stations[1].pose.t).norm(), 0.04);
    EXPECT_GT(m.reliability, 0.5);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 2);
    EXPECT_TRUE(folder.names().empty());
    const Pose truth = tour.stations[0].pose.inverse() * tour.stations[1].pose;
    EXPECT_LT((node(1).position - truth.t).norm(), 0.05);
    ASSERT_EQ(NexomapDrawPanoMatchPng(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
}

TEST_F(HandMade, NamesTheOtherWayRoundMeanTheSameMatch)
{
    const MadeUpTour tour = room();
    link(tour);
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    pick(name(1), name(0), picks(tour, 1, 0, 6, 0.05, 5));
    ASSERT_EQ(NexomapAnalyzePanoMatchParas(name(1).c_str(), name(0).c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    EXPECT_EQ(match(0).name_0, name(0));
    EXPECT_NEAR(match(0).spacing, (tour.stations[0].pose.t - tour.stations[1].pose.t).norm(), 0.04);
}

TEST_F(HandMade, TooFewPairsAndUnknownPanoramasChangeNothing)
{
    const MadeUpTour tour = room();
    link(tour);
    const auto before = nodes();
    EXPECT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(9).c_str()), NEXOMAP_UNKNOWN_NAME);
    EXPECT_EQ(NexomapAddPanoLinkPair(name(0).c_str(), name(1).c_str(), 0, 1, 0, 1), NEXOMAP_UNKNOWN_NAME);
    EXPECT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_UNKNOWN_NAME);
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    pick(name(0), name(1), picks(tour, 0, 1, 2, 0.1, 5));
    EXPECT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_CANNOT_SOLVE);
    EXPECT_EQ(NexomapGetPanoMatchNum(), 0);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    EXPECT_EQ(nodes(), before);
    // Announcing again starts without the two pairs.
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    pick(name(0), name(1), picks(tour, 0, 1, 2, 0.1, 6));
    EXPECT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_CANNOT_SOLVE);
}

TEST_F(HandMade, TwoIdenticalPairsAreBothKept)
{
    const MadeUpTour tour = room();
    link(tour);
    auto all = picks(tour, 0, 1, 4, 0.05, 5);
    all.push_back(all.back());
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    pick(name(0), name(1), all);
    EXPECT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    EXPECT_EQ(NexomapAddPanoMatch(name(1).c_str(), name(0).c_str()), NEXOMAP_DUPLICATE);
}

TEST_F(HandMade, WithoutLidarPairsInPicturesMakeALinkToo)
{
    MadeUpTour tour = room();
    tour.lidar = false;
    link(tour);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 3);
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    pick(name(0), name(1), picks(tour, 0, 1, 6, 0.05, 5));
    ASSERT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    ASSERT_EQ(NexomapGetPanoMatchNum(), 1);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 2);
    const MatchReport m = match(0);
    EXPECT_EQ(m.mode, 1);
    EXPECT_GT(m.spacing, 0.1);
    const Pose truth = tour.stations[0].pose.inverse() * tour.stations[1].pose;
    EXPECT_NEAR(wrapAngle(m.rot_0 + azimuthOf(truth.t)), 0.0, 2.0 * kDegree);
    EXPECT_NEAR(wrapAngle(node(1).direction - node(0).direction - headingOf(truth.R)), 0.0, 2.0 * kDegree);
}

TEST_F(HandMade, WithoutLidarPairsOfOnePlaceAreAPureTurn)
{
    MadeUpTour tour = room();
    tour.lidar = false;
    tour.reach_m = -1.0;
    tour.stations[1].pose.t = tour.stations[0].pose.t;
    link(tour);
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    pick(name(0), name(1), picks(tour, 0, 1, 5, 0.05, 5));
    ASSERT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    const double turn = headingOf(tour.stations[0].pose.R.transpose() * tour.stations[1].pose.R);
    EXPECT_NEAR(wrapAngle(node(1).direction - node(0).direction - turn), 0.0, 1.0 * kDegree);
    EXPECT_NEAR(match(0).spacing, 0.0, 1e-6);
}

TEST_F(HandMade, AWrongPairAmongFiveIsShownInTheMatchPictureWithWhatItIsOffBy)
{
    const MadeUpTour tour = room();
    link(tour);
    auto five = picks(tour, 0, 1, 5, 0.1, 5);
    five[2].polar_1 += (five[2].polar_1 < 1.5 ? 8.0 : -8.0) * kDegree;
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    pick(name(0), name(1), five);
    ASSERT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    const auto told = library().model.edges.back().picks;
    ASSERT_TRUE(told && told->size() == 5u);
    for (int k = 0; k < 5; ++k) {
        EXPECT_EQ((*told)[k].left_out, k == 2) << k;
        EXPECT_LT((*told)[k].degrees, k == 2 ? 60.0 : 1.0) << k;
    }
    EXPECT_GT((*told)[2].degrees, 4.0);
    EXPECT_GT((*told)[2].metres, 0.1);
    const std::string key = name(0) + "_" + name(1) + ".png";
    ASSERT_EQ(folder.names(), std::vector<std::string>{key});
    const cv::Mat3b picture = cv::imread((folder / key).string());
    cv::Mat1b red;
    cv::inRange(picture, cv::Scalar(0, 0, 250), cv::Scalar(5, 5, 255), red);
    EXPECT_GT(cv::countNonZero(red), 200);
}

TEST_F(HandMade, WithoutLidarAWrongPairAmongSixIsTold)
{
    MadeUpTour tour = room();
    tour.lidar = false;
    link(tour);
    auto six = picks(tour, 0, 1, 6, 0.05, 5);
    six[1].polar_1 += (six[1].polar_1 < 1.5 ? 8.0 : -8.0) * kDegree;
    ASSERT_EQ(NexomapAddPanoMatch(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    pick(name(0), name(1), six);
    ASSERT_EQ(NexomapAnalyzePanoMatchParas(name(0).c_str(), name(1).c_str()), NEXOMAP_OK);
    const auto told = library().model.edges.back().picks;
    ASSERT_TRUE(told && told->size() == 6u);
    for (int k = 0; k < 6; ++k)
        EXPECT_EQ((*told)[k].left_out, k == 1) << k << ": " << (*told)[k].degrees;
    EXPECT_GT((*told)[1].degrees, 1.0);
    EXPECT_EQ((*told)[1].metres, 0.0);
}

} // namespace
