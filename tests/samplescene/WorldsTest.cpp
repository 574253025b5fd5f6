// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/samplescene/SceneFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

using namespace scenetest;
using namespace samplescene;

TEST(SampleSceneWorlds, ShutDoorsCutTheSightLines)
{
    Options o = smallOptions(Kind::Office, 6);
    EXPECT_EQ(sightGroups(makeScene(o)), 1);
    o.closedDoors = 1;
    EXPECT_GT(sightGroups(makeScene(o)), 2);
}

TEST(SampleSceneWorlds, IdenticalRoomsLookTheSameFromTheSamePlace)
{
    Options o = exactOptions(Kind::Office, 8);
    o.rooms = 6;
    o.identicalRooms = 2;
    const Scene scene = makeScene(o);
    const World& world = *scene.worlds[0];
    // Furniture of twins differs by one shift along the corridor: find it by the commonest offset of equal
    // shapes.
    std::map<int, int> shifts; // millimetres -> how many pairs of shapes
    for (std::size_t i = 0; i < world.shapes.size(); ++i) {
        for (std::size_t j = i + 1; j < world.shapes.size(); ++j) {
            const Shape& a = world.shapes[i];
            const Shape& b = world.shapes[j];
            const Vec3 d = b.center - a.center;
            if (std::fabs(d.y) > 1e-4f || std::fabs(d.z) > 1e-4f || d.x < 2 ||
                length(a.half - b.half) > 1e-4f)
                continue;
            const Vec3 offset = world.surfaces[i].textureOffset - world.surfaces[j].textureOffset;
            if (length(offset) < 1e-3f) ++shifts[static_cast<int>(std::lround(d.x * 1000))];
        }
    }
    const auto commonest = std::max_element(shifts.begin(), shifts.end(),
                                            [](const auto& l, const auto& r) { return l.second < r.second; });
    ASSERT_NE(commonest, shifts.end());
    EXPECT_GT(commonest->second, 150); // a roomful
    const Scene different = makeScene(exactOptions(Kind::Office, 8));
    EXPECT_NE(different.worlds[0]->shapes.size(), world.shapes.size());
}

TEST(SampleSceneWorlds, AMirrorGivesThePhantomBehindTheWall)
{
    Options o = exactOptions(Kind::Flat, 6);
    o.mirrors = 1;
    const Scene scene = makeScene(o);
    const World& world = *scene.worlds[0];
    int phantoms = 0;
    for (int i = 0; i < 6; ++i) {
        const Rendering r = render(scene, i, 512);
        const Station& s = scene.stations[static_cast<std::size_t>(i)];
        const Vec3 eye{static_cast<float>(s.position[0]), static_cast<float>(s.position[1]),
                       static_cast<float>(s.position[2])};
        for (int y = 60; y < 200; y += 3) {
            for (int x = 0; x < 512; x += 3) {
                const Point ahead = toWorld(s, pixelDirection(x, y, 512, 256));
                const Vec3 ray = Vec3{static_cast<float>(ahead[0]), static_cast<float>(ahead[1]),
                                      static_cast<float>(ahead[2])} -
                                 eye;
                const Hit hit = world.trace(eye, ray, 1e-3f, 60);
                const std::uint16_t range = r.range[static_cast<std::size_t>(y * 512 + x)];
                if (hit.shape < 0 || world.materialAt(hit).look != Look::Mirror || range == 0) continue;
                if (range > hit.distance * 1000 + 200) ++phantoms;
            }
        }
    }
    EXPECT_GT(phantoms, 100);
}

TEST(SampleSceneWorlds, PanesLetMostOfTheRangeThrough)
{
    Options o = exactOptions(Kind::Office, 6);
    o.glass = 1;
    const Scene scene = makeScene(o);
    const World& world = *scene.worlds[0];
    int all = 0;
    int behind = 0;
    int own = 0;
    for (int i = 0; i < 3; ++i) {
        const Rendering r = render(scene, i, 512);
        const Station& s = scene.stations[static_cast<std::size_t>(i)];
        const Vec3 eye{static_cast<float>(s.position[0]), static_cast<float>(s.position[1]),
                       static_cast<float>(s.position[2])};
        for (int y = 70; y < 180; ++y) {
            for (int x = 0; x < 512; ++x) {
                const Point ahead = toWorld(s, pixelDirection(x, y, 512, 256));
                const Vec3 ray = Vec3{static_cast<float>(ahead[0]), static_cast<float>(ahead[1]),
                                      static_cast<float>(ahead[2])} -
                                 eye;
                const Hit hit = world.trace(eye, ray, 1e-3f, 20);
                if (hit.shape < 0 || world.materialAt(hit).look != Look::Glass) continue;
                const Hit through = world.trace(eye, ray, 1e-3f, 20, false);
                if (through.shape < 0 || world.materialAt(through).gloss > 0 ||
                    through.distance < hit.distance + 0.2f)
                    continue;
                const auto range = static_cast<float>(r.range[static_cast<std::size_t>(y * 512 + x)]);
                ++all;
                behind += std::fabs(range - through.distance * 1000) < 2;
                own += std::fabs(range - hit.distance * 1000) < 2;
            }
        }
    }
    ASSERT_GT(all, 1000);
    EXPECT_GT(behind, all * 75 / 100);
    EXPECT_GT(own, all * 2 / 100);
    EXPECT_LT(own, all * 9 / 100);
}

TEST(SampleSceneWorlds, MovedFurnitureStandsElsewhereInTheSecondHalfWhileWallsStay)
{
    Options o = smallOptions(Kind::Flat, 6);
    o.movedFurniture = 1;
    const Scene scene = makeScene(o);
    EXPECT_EQ(scene.stations[0].state, 0);
    EXPECT_EQ(scene.stations[5].state, 1);
    const World& before = *scene.worlds[0];
    const World& after = *scene.worlds[1];
    ASSERT_EQ(before.shapes.size(), after.shapes.size());
    int moved = 0;
    for (std::size_t i = 0; i < before.shapes.size(); ++i)
        moved += length(before.shapes[i].center - after.shapes[i].center) > 0.01f;
    EXPECT_GT(moved, 30);
    EXPECT_LT(moved, static_cast<int>(before.shapes.size()) / 2);
    for (std::size_t i = 0; i < 20; ++i) // floors, ceilings and the first walls
        EXPECT_EQ(length(before.shapes[i].center - after.shapes[i].center), 0);
}

TEST(SampleSceneWorlds, FortyPanoramasGetCorridorsAndRoomsEnough)
{
    Options o = smallOptions(Kind::Flat, 40);
    o.lightSpacing_m = 1;
    const Scene scene = makeScene(o);
    EXPECT_EQ(scene.stations.size(), 40u);
    EXPECT_EQ(sightGroups(scene), 1);
}
