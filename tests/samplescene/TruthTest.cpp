// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Truth.h"
#include "companions/samplescene/Writer.h"
#include "linking/pno/PnoFile.h"
#include "tests/samplescene/SceneFixture.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <iterator>
#include <set>

using namespace scenetest;
using namespace samplescene;

namespace {

std::string bytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class EveryKind : public testing::TestWithParam<std::tuple<Kind, int>>
{};

} // namespace

TEST_P(EveryKind, HasFilesThatOpenAndSightLinesThatJoinAllPanoramas)
{
    Options o = smallOptions(std::get<0>(GetParam()), 8);
    o.seed = static_cast<std::uint32_t>(std::get<1>(GetParam()));
    o.lidar = o.seed == 1; // depth tiles take most of the time
    const Scene scene = makeScene(o);
    ASSERT_EQ(scene.stations.size(), 8u);
    EXPECT_EQ(sightGroups(scene), 1);
    std::set<std::string> ids;
    for (const Station& s : scene.stations) {
        EXPECT_EQ(s.id.size(), 14u);
        EXPECT_TRUE(std::all_of(s.id.begin(), s.id.end(), [](char c) { return c >= 'A' && c <= 'Z'; }))
            << s.id;
        ids.insert(s.id);
    }
    EXPECT_EQ(ids.size(), 8u);

    const pnotest::TemporaryFolder folder;
    const std::string path = folder.path("p.pno");
    EXPECT_EQ(writePanorama(scene.stations[7], 7, render(scene, 7, 512), path), "");
    PnoFile file;
    ASSERT_EQ(file.Open(path.c_str()), 0);
    EXPECT_EQ(file.lidar(), o.lidar);
    EXPECT_EQ(file.captureTime().minute, 7u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, EveryKind,
                         testing::Combine(testing::Values(Kind::Flat, Kind::Office, Kind::Street),
                                          testing::Values(1, 2, 3, 4, 5)));

TEST(SampleSceneTruth, TheSameSeedGivesTheSameBytesWithOneThreadAndWithTwo)
{
    const pnotest::TemporaryFolder folder;
    std::string truth[2];
    for (const int threads : {1, 2}) {
        Options o = smallOptions();
        o.threads = threads;
        o.movedFurniture = 0.5;
        const Scene scene = makeScene(o);
        const std::string path = folder.path(std::to_string(threads) + ".pno");
        ASSERT_EQ(writePanorama(scene.stations[3], 3, render(scene, 3, 1024), path), "");
        truth[threads - 1] = truthOf(scene, {"a", "b", "c", "d"});
    }
    EXPECT_EQ(truth[0], truth[1]);
    const std::string one = bytesOf(folder.path("1.pno"));
    EXPECT_GT(one.size(), 100000u);
    EXPECT_TRUE(one == bytesOf(folder.path("2.pno")));
}

TEST(SampleSceneTruth, AnotherSeedGivesAnotherBuilding)
{
    Options o = smallOptions();
    const Scene first = makeScene(o);
    o.seed = 2;
    const Scene second = makeScene(o);
    EXPECT_NE(first.worlds[0]->shapes.size(), second.worlds[0]->shapes.size());
    EXPECT_NE(first.stations[0].id, second.stations[0].id);
}

TEST(SampleSceneTruth, TheTextHoldsPosesPairsAndOptions)
{
    Options o = smallOptions();
    o.lean_deg = 2.5;
    const Scene scene = makeScene(o);
    const auto truth = nlohmann::json::parse(truthOf(scene, {"a.pno", "b.pno", "c.pno", "d.pno"}));
    ASSERT_EQ(truth["panoramas"].size(), 4u);
    ASSERT_EQ(truth["pairs"].size(), 6u);
    EXPECT_EQ(truth["options"]["lean_deg"], 2.5);
    EXPECT_EQ(truth["options"]["kind"], "flat");
    const auto& p = truth["panoramas"][2];
    EXPECT_EQ(p["file"], "c.pno");
    EXPECT_EQ(p["id"], scene.stations[2].id);
    EXPECT_EQ(p["rotation"].get<std::vector<double>>(),
              std::vector<double>(scene.stations[2].rotation.begin(), scene.stations[2].rotation.end()));
    for (const auto& pair : truth["pairs"]) {
        const auto at = [&](const char* key) {
            return truth["panoramas"][pair[key].get<std::size_t>()]["position"].get<Point>();
        };
        const Point a = at("panorama0");
        const Point b = at("panorama1");
        EXPECT_NEAR(pair["distance"].get<double>(), norm({a[0] - b[0], a[1] - b[1], a[2] - b[2]}), 1e-4);
        EXPECT_EQ(pair["sees"].get<bool>(), pair["eye_free"].get<bool>() || pair["foot_free"].get<bool>());
    }
}

TEST(SampleSceneTruth, NeighboursInOneRoomShareMostOfWhatTheySeeAndRoomsApartNothing)
{
    Options o = smallOptions(Kind::Flat, 8);
    o.rooms = 3;
    const Scene scene = makeScene(o);
    bool close = false;
    bool apart = false;
    for (int i = 0; i < 8; ++i) {
        for (int j = i + 1; j < 8; ++j) {
            const Sight s = sightBetween(scene, i, j);
            const bool sameRoom = scene.stations[static_cast<std::size_t>(i)].room ==
                                  scene.stations[static_cast<std::size_t>(j)].room;
            if (sameRoom && s.eyeFree && s.distance < 3) {
                close = true;
                EXPECT_GT(s.shareOf0, 0.4);
                EXPECT_GT(s.shareOf1, 0.4);
            }
            apart = apart || (!s.sees() && s.shareOf0 < 0.02);
            EXPECT_NEAR(s.shareOf0, sightBetween(scene, j, i).shareOf1, 1e-12);
        }
    }
    EXPECT_TRUE(close);
    EXPECT_TRUE(apart);
}
