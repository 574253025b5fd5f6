// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Lengths that nothing shared tells: two rooms, a station in the door between them, no lidar.

#include "nexomap/src/pair/PairSolver.h"
#include "tests/nexomap/LibraryFixture.h"

using namespace nexomap;

namespace {

constexpr int kFirst = 0, kDoor = 1, kSecond = 2, kCorner = 3; ///< stations

/// A point of the made-up place as a picture feature: what it looks like, and which stations' pictures have
/// it.
struct Point
{
    Eigen::Vector3d position;
    std::vector<std::uint8_t> look;
    std::vector<int> seen_by;
    /// Matched between the first two stations, the next two, and, where there is one, to the fourth.
    bool first_pair = false, second_pair = false, third_pair = false;
};

class TwoRooms : public LibraryTest
{
protected:
    TwoRooms()
    {
        tour.lidar = false;
        tour.add(-2.0, 0.3, 0.4);
        tour.add(0.0, 0.0, -1.1);
        tour.add(4.4, -0.5, 2.0);
        fill(60, {-4.0, -2.0, -1.3}, {-0.5, 2.0, 1.2}, {kFirst, kDoor}, true, false);
        fill(60, {2.0, -3.0, -1.3}, {7.0, 3.0, 1.2}, {kDoor, kSecond}, false, true);
    }

    /// Points of a box, with a look of their own each.
    void fill(int count, const Eigen::Vector3d& from, const Eigen::Vector3d& to,
              const std::vector<int>& seen_by, bool first_pair, bool second_pair)
    {
        std::uniform_real_distribution<double> unit(0.0, 1.0);
        for (int k = 0; k < count; ++k) {
            const Eigen::Array3d share(unit(random), unit(random), unit(random));
            points.push_back(
                {from + (share * (to - from).array()).matrix(), look(), seen_by, first_pair, second_pair});
        }
    }
    /// What all three see through the door, but was matched between the first two only.
    void fillDoorway(int count)
    {
        fill(count, {2.0, -1.2, -1.0}, {3.6, 1.2, 1.0}, {kFirst, kDoor, kSecond}, true, false);
    }
    std::vector<std::uint8_t> look()
    {
        std::vector<std::uint8_t> bytes(128);
        for (std::uint8_t& byte : bytes)
            byte = std::uint8_t(random() % 24);
        return bytes;
    }
    Eigen::Vector3d seenFrom(int station, const Point& point) const
    {
        return tour.stations[std::size_t(station)].pose.inverse() * point.position;
    }

    Features features(int station) const
    {
        Features f;
        for (const Point& point : points) {
            if (std::count(point.seen_by.begin(), point.seen_by.end(), station) == 0) continue;
            const Eigen::Vector3d there = seenFrom(station, point);
            f.bearings.push_back(there.normalized().cast<float>());
            f.ranges_m.push_back(0.f);
            f.scales.push_back(float(0.02 / there.norm()));
            f.angles_rad.push_back(0.1f);
            for (std::size_t k = 0; k < point.look.size(); ++k) // every picture shows it a little differently
                f.descriptors.push_back(std::uint8_t(point.look[k] + (k * 7 + std::size_t(station)) % 3));
        }
        return f;
    }

    PairPose pair(int a, int b) const
    {
        const Pose truth = tour.stations[std::size_t(a)].pose.inverse() * tour.stations[std::size_t(b)].pose;
        PairPose pose;
        pose.R_0_from_1 = truth.R;
        pose.t_0_from_1 = truth.t.normalized();
        pose.information = 1e6 * Matrix6d::Identity();
        pose.reliability = 0.95;
        for (const Point& point : points)
            if (a == kFirst ? point.first_pair : a == kDoor ? point.second_pair : point.third_pair)
                pose.inliers.push_back({seenFrom(a, point).normalized().cast<float>(),
                                        seenFrom(b, point).normalized().cast<float>()});
        pose.matches = int(pose.inliers.size());
        return pose;
    }

    FrontEnd frontEnd() const
    {
        FrontEnd front = tour.frontEnd();
        std::map<std::string, Features> all;
        std::map<std::pair<std::string, std::string>, PairPose> poses;
        for (int k = 0; k < int(tour.stations.size()); ++k)
            all[tour.stations[std::size_t(k)].name] = features(k);
        for (int k = 0; k + 1 < int(tour.stations.size()); ++k)
            poses[{MadeUpTour::nameOf(k), MadeUpTour::nameOf(k + 1)}] = pair(k, k + 1);
        for (const auto& [names, pose] : std::map(poses))
            poses[{names.second, names.first}] = inverted(pose);
        front.load = [load = front.load, all](const std::string& path, std::string* error) {
            auto panorama = load(path, error);
            if (!panorama) return panorama;
            auto filled = std::make_shared<Panorama>(*panorama);
            filled->features = all.at(panorama->id);
            return std::shared_ptr<const Panorama>(filled);
        };
        front.match = [poses](const Panorama& p, const Panorama& q) -> std::optional<PairPose> {
            const auto found = poses.find({p.id, q.id});
            if (found == poses.end()) return std::nullopt;
            return found->second;
        };
        return front;
    }
    /// Loads the tour again as a program does that opens it; no picture may be read.
    void reopen()
    {
        const auto nodes_before = nodes();
        const auto links_before = matches();
        NexomapClean();
        FrontEnd blind = frontEnd();
        blind.load = [](const std::string&, std::string* error) {
            *error = "not to be read";
            return std::shared_ptr<const Panorama>();
        };
        startWith(blind);
        for (const NodeReport& n : nodes_before)
            ASSERT_EQ(NexomapLoadPanoNode(MadeUpTour::pathOf(indexOf(tour, n.name)).c_str(), n.position.x(),
                                          n.position.y(), n.position.z(), n.vertex.x(), n.vertex.y(),
                                          n.direction, n.plan_x, n.plan_y, n.plan_name.c_str()),
                      NEXOMAP_OK);
        for (const MatchReport& m : links_before)
            ASSERT_EQ(NexomapLoadPanoMatch(m.name_0.c_str(), m.name_1.c_str(), m.rot_0, m.rot_1, m.tilt_x0,
                                           m.tilt_x1, m.tilt_y0, m.icon_y0, m.icon_y1, m.spacing, m.mode,
                                           m.reliability),
                      NEXOMAP_OK);
        ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
        const auto after = nodes();
        ASSERT_EQ(after.size(), nodes_before.size());
        for (std::size_t k = 0; k < after.size(); ++k)
            EXPECT_LT((after[k].position - nodes_before[k].position).norm(), 1e-6) << k;
    }

    /// Length of the second link over that of the first, as the library found them.
    double ratio()
    {
        const auto all = nodes();
        EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
        return (all[kSecond].position - all[kDoor].position).norm() /
               (all[kFirst].position - all[kDoor].position).norm();
    }
    double trueRatio() const
    {
        const auto& s = tour.stations;
        return (s[kSecond].pose.t - s[kDoor].pose.t).norm() / (s[kFirst].pose.t - s[kDoor].pose.t).norm();
    }

    MadeUpTour tour;
    std::vector<Point> points;
    std::mt19937 random{11};
};

TEST_F(TwoRooms, WhatIsSeenThroughTheDoorTellsTheLength)
{
    fillDoorway(9);
    link(tour, frontEnd());
    EXPECT_NEAR(ratio() / trueRatio(), 1.0, 0.02);
}

TEST_F(TwoRooms, WhereNothingTellsNothingIsClaimed)
{
    fill(9, {2.0, -1.2, -1.0}, {3.6, 1.2, 1.0}, {kFirst, kDoor}, true, false);
    link(tour, frontEnd());
    EXPECT_NEAR(ratio(), 1.0, 1e-4); // the wish for equal lengths
}

TEST_F(TwoRooms, WrongFeaturesAmongThemDoNotBendTheLength)
{
    fillDoorway(9);
    // Look-alikes anywhere in the last picture, of the doorway and of the first room, and a crowd of others.
    const std::vector<Point> right = points;
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (std::size_t k = 0; k < right.size(); ++k)
        if (right[k].first_pair && k % 2 == 0)
            points.push_back({{4.4 + 3.0 * unit(random), 3.0 * unit(random), 1.5 * unit(random)},
                              right[k].look,
                              {kSecond},
                              false,
                              false});
    fill(400, {1.0, -4.0, -1.4}, {8.0, 4.0, 1.4}, {kSecond}, false, false);
    link(tour, frontEnd());
    EXPECT_NEAR(ratio() / trueRatio(), 1.0, 0.02);
}

TEST_F(TwoRooms, ALookAlikeAsHighAsTheCamerasTellsNothing)
{
    // What stands level with all cameras lies on one plane with them, on which everything fits: a thing of
    // the first room that has a like in the second agrees with itself on a length, and a wrong one.
    fill(9, {-1.6, 2.1, -0.01}, {-1.4, 2.3, 0.01}, {kFirst, kDoor}, true, false);
    const std::vector<Point> right = points;
    for (std::size_t k = right.size() - 9; k < right.size(); ++k)
        points.push_back({0.7 * right[k].position, right[k].look, {kSecond}, false, false});
    link(tour, frontEnd());
    EXPECT_NEAR(ratio(), 1.0, 1e-4);
}

TEST_F(TwoRooms, TheSamePicturesGiveTheSameBits)
{
    fillDoorway(9);
    link(tour, frontEnd());
    const auto first = nodes();
    NexomapClean();
    link(tour, frontEnd());
    EXPECT_TRUE(nodes() == first);
}

TEST_F(TwoRooms, AddedTheOtherWayRoundTheyStandTheSame)
{
    fillDoorway(9);
    link(tour, frontEnd());
    const double before = ratio();
    NexomapClean();
    startWith(frontEnd());
    for (const int k : {kSecond, kFirst, kDoor})
        ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(k).c_str()), NEXOMAP_OK) << k;
    ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 1);
    std::map<std::string, Eigen::Vector3d> stands;
    for (const NodeReport& n : nodes())
        stands[n.name] = n.position;
    const auto at = [&](int k) { return stands.at(MadeUpTour::nameOf(k)); };
    EXPECT_NEAR((at(kSecond) - at(kDoor)).norm() / (at(kFirst) - at(kDoor)).norm(), before, 1e-9);
}

TEST_F(TwoRooms, AReopenedTourKeepsTheLengthWithoutReadingAPicture)
{
    fillDoorway(9);
    link(tour, frontEnd());
    reopen();
    EXPECT_NEAR(ratio() / trueRatio(), 1.0, 0.02);
}

TEST_F(TwoRooms, AStationFurtherOnTellsTheLengthToo)
{
    // What the first room shows through the door is hidden from the second room's middle, not from its
    // corner.
    tour.add(5.2, 1.8, 0.7);
    for (Point& point : points)
        if (point.second_pair) point.third_pair = true, point.seen_by.push_back(kCorner);
    fill(9, {2.0, -1.2, -1.0}, {3.6, 1.2, 1.0}, {kFirst, kDoor, kCorner}, true, false);
    link(tour, frontEnd());
    EXPECT_NEAR(ratio() / trueRatio(), 1.0, 0.02);
    reopen();
    EXPECT_NEAR(ratio() / trueRatio(), 1.0, 0.02);
}

} // namespace
