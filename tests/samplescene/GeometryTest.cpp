// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/samplescene/SceneFixture.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace scenetest;
using namespace samplescene;

namespace {

/// Nearest opaque thing on a ray, asked of every shape in turn.
float bruteForce(const World& world, Vec3 origin, Vec3 direction)
{
    float distance = 500;
    int face = 0;
    for (const Shape& s : world.shapes)
        if (s.passage != Passage::Glass) intersect(s, origin, direction, 1e-3f, &distance, &face);
    return distance;
}

/// Ranges around the pixel differ by more than a surface's slope explains, as on the edge of a thing.
bool onEdge(const Rendering& r, std::size_t pixel)
{
    int low = 65535;
    int high = 0;
    const auto width = static_cast<long>(r.width);
    for (const long step : {-width - 1, -width, -width + 1, -1L, 0L, 1L, width - 1, width, width + 1}) {
        const long at = static_cast<long>(pixel) + step;
        if (at < 0 || at >= static_cast<long>(r.range.size()) || r.range[static_cast<std::size_t>(at)] == 0)
            continue;
        low = std::min<int>(low, r.range[static_cast<std::size_t>(at)]);
        high = std::max<int>(high, r.range[static_cast<std::size_t>(at)]);
    }
    return high - low > high * 8 / 100;
}

Vec3 toVec(const Point& p)
{
    return {static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])};
}

} // namespace

TEST(SampleSceneGeometry, TheRangeOfAPixelIsTheDistanceToTheNearestShapeOnItsRay)
{
    const Scene scene = makeScene(exactOptions());
    const Rendering r = render(scene, 1, 512);
    const Station& s = scene.stations[1];
    int checked = 0;
    int same = 0;
    for (int y = 3; y < r.height; y += 5) {
        for (int x = 2; x < r.width; x += 7) {
            const std::uint16_t range = r.range[static_cast<std::size_t>(y * r.width + x)];
            if (range == 0) continue;
            const Point ahead = toWorld(s, pixelDirection(x, y, r.width, r.height));
            const Point ray{ahead[0] - s.position[0], ahead[1] - s.position[1], ahead[2] - s.position[2]};
            const float distance = bruteForce(scene.worldOf(1), toVec(s.position), toVec(ray));
            ++checked;
            same += std::fabs(distance * 1000 - static_cast<float>(range)) < 1.5f;
        }
    }
    // The rest: beams split by an edge, and the few panes that answer.
    EXPECT_GT(checked, 3000);
    EXPECT_GT(same, checked * 97 / 100);
}

TEST(SampleSceneGeometry, RangesOfOnePanoramaAgreeWithAnotherWhereBothSeeThePlace)
{
    const Options options = smallOptions(Kind::Flat, 6);
    const Scene scene = makeScene(options);
    int pairs = 0;
    for (int i = 0; i < 6; ++i) {
        for (int j = 0; j < 6; ++j) {
            if (i == j || sightBetween(scene, i, j).shareOf1 < 0.2) continue;
            ++pairs;
            const Rendering a = render(scene, i, 1024);
            const Rendering b = render(scene, j, 1024);
            const Station& si = scene.stations[static_cast<std::size_t>(i)];
            const Station& sj = scene.stations[static_cast<std::size_t>(j)];
            int both = 0;
            int agree = 0;
            std::vector<int> colourSteps;
            for (int y = 0; y < b.height; y += 4) {
                for (int x = 0; x < b.width; x += 4) {
                    const std::size_t pixel = static_cast<std::size_t>(y * b.width + x);
                    const Point d = pixelDirection(x, y, b.width, b.height);
                    const double range = b.range[pixel] * 0.001;
                    const Point world = toWorld(sj, {d[0] * range, d[1] * range, d[2] * range});
                    const Point seen = toPanorama(si, world);
                    const double expected = norm(seen);
                    if (range == 0 || expected < 0.3) continue;
                    const Vec3 back = toVec(si.position) - toVec(world);
                    const float step = 0.03f / length(back); // three centimetres off the surface: range noise
                    if (scene.worldOf(i).bvh.blocked(toVec(world) + back * step, back, 1e-4f, 1 - step))
                        continue;
                    const std::size_t other = pixelOf(a, seen);
                    if (a.range[other] == 0 || onEdge(a, other) || onEdge(b, pixel)) continue;
                    ++both;
                    const bool same = std::fabs(a.range[other] * 0.001 - expected) < 0.05 + 0.015 * expected;
                    agree += same;
                    if (same)
                        colourSteps.push_back(
                            std::abs(int(a.rgb[3 * other + 1]) - int(b.rgb[3 * pixel + 1])));
                }
            }
            ASSERT_GT(both, 500) << i << " " << j;
            EXPECT_GT(agree, both * 95 / 100) << i << " " << j << ": " << agree << " of " << both;
            std::sort(colourSteps.begin(), colourSteps.end());
            EXPECT_LT(colourSteps[colourSteps.size() / 2], 20) << i << " " << j; // 0.3 stops apart at most
        }
    }
    EXPECT_GE(pairs, 4);
}

TEST(SampleSceneGeometry, TheViewTowardANeighbourThatIsSeenIsFreeAllTheWay)
{
    const Scene scene = makeScene(exactOptions(Kind::Flat, 6));
    int checked = 0;
    for (int i = 0; i < 6; ++i) {
        const Rendering r = render(scene, i, 1024);
        const Station& s = scene.stations[static_cast<std::size_t>(i)];
        for (int j = 0; j < 6; ++j) {
            if (i == j || !lineOfSight(scene, i, j).eyeFree) continue;
            const Point there = toPanorama(s, scene.stations[static_cast<std::size_t>(j)].position);
            const std::uint16_t range = r.range[pixelOf(r, there)];
            if (range == 0) continue; // the eye line ends in a screen or the open window
            ++checked;
            EXPECT_GT(range * 0.001, norm(there) - 0.1) << i << " sees " << j;
        }
    }
    EXPECT_GE(checked, 6);
}

TEST(SampleSceneGeometry, AzimuthGrowsToTheLeftOfThePictureAndTheTopRowLooksUp)
{
    const Point middle = pixelDirection(255.5, 127.5, 512, 256);
    EXPECT_NEAR(middle[0], 1, 1e-9);
    const Point left = pixelDirection(127.5, 127.5, 512, 256);
    EXPECT_NEAR(left[1], 1, 1e-9);
    const Point top = pixelDirection(10, -0.5, 512, 256);
    EXPECT_NEAR(top[2], 1, 1e-9);
    // The picture itself: the ceiling is above, and turning the camera by its heading finds the world's x.
    Options o = exactOptions();
    o.lean_deg = 0;
    const Scene scene = makeScene(o);
    const Station& s = scene.stations[0];
    const Rendering r = render(scene, 0, 512);
    const double heading = std::atan2(s.rotation[3], s.rotation[0]);
    const Point towardX = toPanorama(s, {s.position[0] + 1, s.position[1], s.position[2]});
    EXPECT_NEAR(std::atan2(towardX[1], towardX[0]), std::remainder(-heading, 6.283185307179586), 1e-9);
    const float ahead = bruteForce(scene.worldOf(0), toVec(s.position), {1, 0, 0});
    EXPECT_NEAR(r.range[pixelOf(r, towardX)], ahead * 1000, 60);
    EXPECT_NEAR(r.range[pixelOf(r, {1e-9, 0, -1})], s.cameraHeight * 1000, 20);
}

TEST(SampleSceneGeometry, RotationsAreRotationsAndLeanAsAsked)
{
    Options o = exactOptions(Kind::Street, 60);
    o.lean_deg = 3;
    const Scene scene = makeScene(o);
    double squares = 0;
    for (const Station& s : scene.stations) {
        const auto& r = s.rotation;
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t k = 0; k < 3; ++k)
                EXPECT_NEAR(r[3 * i] * r[3 * k] + r[3 * i + 1] * r[3 * k + 1] + r[3 * i + 2] * r[3 * k + 2],
                            i == k, 1e-9);
        EXPECT_GT(r[0] * (r[4] * r[8] - r[5] * r[7]) - r[1] * (r[3] * r[8] - r[5] * r[6]) +
                      r[2] * (r[3] * r[7] - r[4] * r[6]),
                  0.99);
        EXPECT_GE(s.cameraHeight, 1.5);
        EXPECT_LE(s.cameraHeight, 1.6);
        const double tilt = std::acos(r[8]) * 57.29577951308232;
        squares += tilt * tilt;
    }
    EXPECT_NEAR(std::sqrt(squares / 2 / 60), 3, 0.8); // two axes
}
