// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Random sequences of calls: no crash, and after every call counts and indices fit each other.

#include "tests/nexomap/LibraryFixture.h"

using namespace nexomap;

namespace {

class CallSequence : public LibraryTest
{};

TEST_F(CallSequence, AnyOrderOfCallsLeavesASoundState)
{
    MadeUpTour tour;
    tour.half_width_m = 9;
    tour.half_depth_m = 4;
    tour.walls = {{0, -0.5, 0.5}};
    for (int k = 0; k < 7; ++k)
        tour.add(2.3 * k - 7.0, k % 3 - 1.0, 0.9 * k);
    std::mt19937 random(11);
    const auto dice = [&](int sides) { return int(random() % unsigned(sides)); };
    const auto anyName = [&] { return MadeUpTour::nameOf(dice(8)); };
    const auto anyAngle = [&] { return dice(30) == 0 ? std::nan("") : 0.1 * dice(31); };
    start(tour);
    for (int call = 0; call < 600; ++call) {
        const std::string a = anyName(), b = anyName(), path = MadeUpTour::pathOf(dice(8));
        int status = 0;
        switch (dice(18)) {
        case 0:
            status = dice(6) == 0 ? NexomapReset() : NexomapFinishAddNode();
            break;
        case 1:
        case 2:
            status = NexomapAddNode(path.c_str());
            break;
        case 3:
        case 4:
            status = NexomapFinishAddNode();
            break;
        case 5:
            status = NexomapAddPanoMatch(a.c_str(), b.c_str());
            break;
        case 6:
        case 7:
        case 8:
            status =
                NexomapAddPanoLinkPair(a.c_str(), b.c_str(), anyAngle(), anyAngle(), anyAngle(), anyAngle());
            break;
        case 9:
            status = NexomapAnalyzePanoMatchParas(a.c_str(), b.c_str());
            break;
        case 10:
            status = NexomapRelocateAll();
            break;
        case 11:
            status = NexomapDeletePanoMatch(a.c_str(), b.c_str());
            break;
        case 12:
            status = dice(4) == 0 ? NexomapDrawPanoMatchPng(a.c_str(), b.c_str()) : 0;
            break;
        case 13:
            status = NexomapAutoCreatePanoMatch();
            break;
        case 14:
            status = NexomapGetPanoNodeNumInOneGroup(dice(4) - 1);
            break;
        case 15:
            status = NexomapLoadPanoNode(path.c_str(), anyAngle(), 1, 0, 0, 0, anyAngle(), -1, -1, "");
            break;
        case 16:
            status = NexomapLoadPanoMatch(a.c_str(), b.c_str(), anyAngle(), 1, 0, 0, 0, 2, 2, dice(5),
                                          dice(3), 0.5);
            break;
        case 17:
            status = dice(20) == 0 ? NexomapInit(folder.path().c_str(), 0) : 0;
            break;
        }
        EXPECT_NE(status, NEXOMAP_INTERNAL) << "call " << call;
        const int nodes = NexomapGetPanoNodeNum(), matches = NexomapGetPanoMatchNum();
        if (nodes == NEXOMAP_NOT_READY) continue;
        int members = 0;
        for (int g = 0; g < NexomapGetPanoGroupNum(); ++g) {
            const int size = NexomapGetPanoNodeNumInOneGroup(g);
            if (g > 0) {
                EXPECT_LE(size, NexomapGetPanoNodeNumInOneGroup(g - 1));
            }
            members += size;
        }
        ASSERT_EQ(members, nodes);
        std::set<std::string> pairs;
        for (int m = 0; m < matches; ++m) {
            const MatchReport r = match(m);
            ASSERT_TRUE(pairs.insert(std::min(r.name_0, r.name_1) + std::max(r.name_0, r.name_1)).second);
            ASSERT_TRUE(
                std::isfinite(r.rot_0 + r.rot_1 + r.tilt_x0 + r.tilt_x1 + r.tilt_y0 + r.icon_y0 + r.spacing));
        }
        for (int n = 0; n < nodes; ++n)
            ASSERT_TRUE(node(n).position.allFinite() && node(n).rotation.allFinite());
    }
}

} // namespace
