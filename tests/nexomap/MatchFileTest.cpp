// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Match files: what goes in comes out, and nothing else is taken.

#include "nexomap/src/files/MatchFile.h"
#include "nexomap/src/Failure.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using namespace nexomap;

namespace {

MadeUpTour tour()
{
    MadeUpTour tour;
    tour.add(0, 0, 0.5);
    tour.add(2, 1, -0.7, 0.0, 0.01, 0.02);
    return tour;
}

MatchRecord record()
{
    MatchRecord r;
    r.link = {MadeUpTour::nameOf(0), MadeUpTour::nameOf(1), 0, tour().pairPose(0, 1)};
    r.inliers = 60;
    r.link.pose.inliers.clear();
    r.station_0 = {tour().stations[0].pose, Eigen::Vector3d::UnitZ(), 1.6};
    r.station_1 = {tour().stations[1].pose, Eigen::Vector3d::UnitZ(), 0.0};
    r.companions.push_back({MadeUpTour::nameOf(1), MadeUpTour::nameOf(5), 1, tour().pairPose(1, 0)});
    return r;
}

bool refused(const Bytes& bytes)
{
    try {
        decodeMatchRecord(bytes);
        return false;
    } catch (const Failure& failure) {
        return failure.status() == NEXOMAP_BAD_FILE;
    }
}

TEST(MatchFile, ARecordComesBackToTheBit)
{
    const MatchRecord in = record(), out = decodeMatchRecord(encodeMatchRecord(in));
    EXPECT_EQ(out.link.name_0, in.link.name_0);
    EXPECT_EQ(out.link.pose.R_0_from_1, in.link.pose.R_0_from_1);
    EXPECT_EQ(out.link.pose.t_0_from_1, in.link.pose.t_0_from_1);
    EXPECT_EQ(out.link.pose.information, in.link.pose.information);
    EXPECT_EQ(out.link.pose.reliability, in.link.pose.reliability);
    EXPECT_EQ(out.link.pose.metric, true);
    EXPECT_EQ(out.station_1.world_from_pano.R, in.station_1.world_from_pano.R);
    ASSERT_EQ(out.companions.size(), 1u);
    EXPECT_EQ(out.companions[0].name_1, MadeUpTour::nameOf(5));
    EXPECT_EQ(out.companions[0].mode, 1);
}

TEST(MatchFile, LengthTiesComeBackAndFilesWithoutThemAreAsTheyWere)
{
    MatchRecord in = record();
    const Bytes without = encodeMatchRecord(in);
    EXPECT_TRUE(decodeMatchRecord(without).link.pose.ties.empty());
    in.link.pose.ties = {{MadeUpTour::nameOf(3), MadeUpTour::nameOf(4), -0.25, 0.02}};
    const Bytes with = encodeMatchRecord(in);
    EXPECT_GT(with.size(), without.size());
    const MatchRecord out = decodeMatchRecord(with);
    ASSERT_EQ(out.companions.size(), 1u);
    ASSERT_EQ(out.link.pose.ties.size(), 1u);
    EXPECT_EQ(out.link.pose.ties[0].name_0, MadeUpTour::nameOf(3));
    EXPECT_EQ(out.link.pose.ties[0].name_1, MadeUpTour::nameOf(4));
    EXPECT_EQ(out.link.pose.ties[0].log_ratio, -0.25);
    EXPECT_EQ(out.link.pose.ties[0].sigma, 0.02);
    in.link.pose.ties[0].sigma = 0.0;
    EXPECT_TRUE(refused(encodeMatchRecord(in)));
    in.link.pose.ties[0] = {"", "", std::nan(""), 0.02};
    EXPECT_TRUE(refused(encodeMatchRecord(in)));
}

TEST(MatchFile, FeaturesComeBackToTheBit)
{
    const auto in = tour().pairPose(0, 1).inliers;
    const Bytes bytes = encodeInliers(MadeUpTour::nameOf(0), MadeUpTour::nameOf(1), in);
    const auto out = decodeInliers(bytes, MadeUpTour::nameOf(0), MadeUpTour::nameOf(1));
    ASSERT_EQ(out.size(), in.size());
    for (std::size_t k = 0; k < in.size(); ++k) {
        EXPECT_EQ(out[k].bearing_0, in[k].bearing_0);
        EXPECT_EQ(out[k].range_1_m, in[k].range_1_m);
    }
    EXPECT_THROW(decodeInliers(bytes, MadeUpTour::nameOf(0), MadeUpTour::nameOf(2)), Failure);
}

TEST(MatchFile, EveryPrefixIsRefused)
{
    const Bytes whole = encodeMatchRecord(record());
    for (std::size_t n = 0; n < whole.size(); ++n)
        EXPECT_TRUE(refused(Bytes(whole.begin(), whole.begin() + n))) << n;
    Bytes longer = whole;
    longer.push_back(0);
    EXPECT_TRUE(refused(longer));
}

TEST(MatchFile, EveryChangedByteIsRefused)
{
    const Bytes whole = encodeMatchRecord(record());
    for (std::size_t n = 0; n < whole.size(); ++n) {
        Bytes bent = whole;
        bent[n] ^= 0x40;
        EXPECT_TRUE(refused(bent)) << n;
    }
}

TEST(MatchFile, SoundChecksumsDoNotMakeNonsenseAPose)
{
    MatchRecord bad = record();
    bad.link.pose.R_0_from_1 *= 2.0;
    EXPECT_TRUE(refused(encodeMatchRecord(bad)));
    bad = record();
    bad.link.pose.information(2, 3) = std::nan("");
    EXPECT_TRUE(refused(encodeMatchRecord(bad)));
    bad = record();
    bad.station_0.up.setZero();
    EXPECT_TRUE(refused(encodeMatchRecord(bad)));
}

TEST(MatchFile, NumbersWhoseSquaresWouldOverflowAreRefused)
{
    const auto refusedWith = [](const std::function<void(MatchRecord*)>& change) {
        MatchRecord bad = record();
        bad.link.pose.ties = {{MadeUpTour::nameOf(3), MadeUpTour::nameOf(4), -0.25, 0.02}};
        change(&bad);
        return refused(encodeMatchRecord(bad));
    };
    EXPECT_FALSE(refusedWith([](MatchRecord*) {}));
    EXPECT_TRUE(refusedWith([](MatchRecord* r) { r->link.pose.t_0_from_1.y() = -1e160; }));
    EXPECT_TRUE(refusedWith([](MatchRecord* r) { r->companions[0].pose.t_0_from_1.z() = 1e7; }));
    EXPECT_TRUE(refusedWith([](MatchRecord* r) { r->link.pose.information(0, 5) = 1e200; }));
    EXPECT_TRUE(refusedWith([](MatchRecord* r) { r->station_1.world_from_pano.t.x() = 1e19; }));
    EXPECT_TRUE(refusedWith([](MatchRecord* r) { r->station_0.height_m = -1e308; }));
    EXPECT_TRUE(refusedWith([](MatchRecord* r) { r->link.pose.ties[0].log_ratio = 800.0; }));
    EXPECT_TRUE(refusedWith([](MatchRecord* r) {
        r->link.pose.metric = false;
        r->link.pose.t_0_from_1 = {1e-300, 0, 0};
    })) << "a direction of no length";
    std::vector<PairInlier> far = tour().pairPose(0, 1).inliers;
    far[3].range_0_m = 1e30f;
    EXPECT_THROW(decodeInliers(encodeInliers("A", "B", far), "A", "B"), Failure);
}

} // namespace
