// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The order in which panoramas are added, and panoramas that do not belong to the others.

#include "tests/nexomap/degenerate/DegenerateFixture.h"

using namespace nexomap;

namespace {

class DegenerateOrder : public Degenerate
{
protected:
    /// Four stations of one room, and one of another.
    void takeRoomAndStranger(bool lidar)
    {
        const BoxPlace room = furnishedRoom(), other = furnishedRoom(300);
        take(room, standAt(1.5, 2.8, 1.5, 0.4), lidar);
        take(room, standAt(4.3, 1.6, 1.5, -1.9), lidar);
        take(other, standAt(2.6, 3.4, 1.5, 2.2), lidar);
        take(room, standAt(2.2, 1.3, 1.5, 1.2), lidar);
        take(room, standAt(4.6, 3.0, 1.5, 3.0), lidar);
    }
    std::set<std::pair<int, int>> links() const
    {
        std::set<std::pair<int, int>> pairs;
        for (const MatchReport& m : matches())
            pairs.insert(std::minmax(stationOf(m.name_0), stationOf(m.name_1)));
        return pairs;
    }
    void expectSameInAnyOrder(bool lidar)
    {
        takeRoomAndStranger(lidar);
        linkAll();
        const auto links_before = links();
        EXPECT_GE(links_before.size(), 3u);
        std::vector<RigidPose> before;
        for (int k = 0; k < 5; ++k)
            before.push_back(found(k));
        for (const auto& [a, b] : links_before)
            EXPECT_TRUE(a != 2 && b != 2) << "linked with another room";
        EXPECT_EQ(NexomapGetPanoGroupNum(), 2);

        linkAll({4, 2, 1, 3, 0});
        EXPECT_EQ(links(), links_before);
        for (const int k : {1, 3, 4}) {
            const RigidPose was = between(before[0], before[std::size_t(k)]),
                            is = between(found(0), found(k));
            EXPECT_LT(Eigen::AngleAxisd(was.R.transpose() * is.R).angle(), 1e-6) << k;
            EXPECT_LT((was.t - is.t).norm(), 1e-6) << k;
        }
    }
};

TEST_F(DegenerateOrder, AnotherOrderGivesTheSameLinksAndPosesWithLidarAndAStrangerStaysAlone)
{
    expectSameInAnyOrder(true);
}

TEST_F(DegenerateOrder, AnotherOrderGivesTheSameLinksAndPosesWithoutLidarAndAStrangerStaysAlone)
{
    expectSameInAnyOrder(false);
}

} // namespace
