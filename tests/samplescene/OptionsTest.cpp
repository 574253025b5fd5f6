// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/samplescene/SceneFixture.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace scenetest;
using namespace samplescene;

namespace {

double measuredShare(const Rendering& r)
{
    const auto none = std::count(r.range.begin(), r.range.end(), 0);
    return 1 - static_cast<double>(none) / static_cast<double>(r.range.size());
}

double meanGrey(const Rendering& r)
{
    return std::accumulate(r.rgb.begin(), r.rgb.end(), 0.0) / static_cast<double>(r.rgb.size());
}

/// Mean step of grey from column to column, in the upper half where walls and ceilings are.
double detail(const Rendering& r)
{
    double sum = 0;
    const std::size_t end = r.rgb.size() / 2;
    for (std::size_t i = 4; i < end; i += 3)
        sum += std::abs(int(r.rgb[i]) - int(r.rgb[i - 3]));
    return sum / (static_cast<double>(end) / 3);
}

} // namespace

TEST(SampleSceneOptions, WithoutLidarThereIsNoRange)
{
    Options o = smallOptions();
    o.lidar = false;
    const Rendering r = render(makeScene(o), 0, 256);
    EXPECT_TRUE(r.range.empty());
    EXPECT_EQ(r.rgb.size(), 256u * 128u * 3u);
}

TEST(SampleSceneOptions, TheSparseRangeIsACombOfTheFillAskedFor)
{
    Options o = exactOptions();
    const double dense = measuredShare(render(makeScene(o), 0, 512));
    o.rangeFill = 0.29;
    const Rendering sparse = render(makeScene(o), 0, 512);
    EXPECT_NEAR(measuredShare(sparse) / dense, 0.29, 0.01);
    int emptyColumns = 0;
    for (int x = 0; x < 512; ++x) {
        bool empty = true;
        for (int y = 0; y < 256; ++y)
            empty = empty && sparse.range[static_cast<std::size_t>(y * 512 + x)] == 0;
        emptyColumns += empty;
    }
    EXPECT_EQ(emptyColumns, 256);
}

TEST(SampleSceneOptions, RangeNoiseHasItsDeviationDropOutsTheirShareAndTheConeIsBlind)
{
    Options o = exactOptions();
    const Scene exact = makeScene(o);
    o.rangeNoise_m = 0.02;
    o.dropOuts = 0.2;
    o.blindCone_deg = 30;
    const Scene noisy = makeScene(o);
    const Rendering a = render(exact, 0, 1024);
    const Rendering b = render(noisy, 0, 1024);
    double squares = 0;
    int count = 0;
    int lost = 0;
    int all = 0;
    const std::size_t blind = static_cast<std::size_t>(1024) * (512 * 150 / 180 + 1);
    for (std::size_t i = 0; i < a.range.size(); ++i) {
        if (i > blind) {
            EXPECT_EQ(b.range[i], 0);
        }
        if (a.range[i] == 0 || i > blind - 2048) continue;
        ++all;
        lost += b.range[i] == 0;
        const double step = (int(b.range[i]) - int(a.range[i])) * 0.001;
        if (b.range[i] == 0 || std::fabs(step) > 0.1) continue; // lost, or split by an edge in one of them
        squares += step * step;
        ++count;
    }
    EXPECT_NEAR(std::sqrt(squares / count), 0.022, 0.004); // a little more at grazing incidence
    EXPECT_NEAR(static_cast<double>(lost) / all, 0.2, 0.02);
}

TEST(SampleSceneOptions, NothingComesBackFromBeyondTheMaximumRange)
{
    Options o = exactOptions(Kind::Street);
    o.maxRange_m = 12;
    const Rendering r = render(makeScene(o), 0, 512);
    EXPECT_LE(*std::max_element(r.range.begin(), r.range.end()), 12000);
}

TEST(SampleSceneOptions, ExposureStepsMakePanoramasBrighterAndDarker)
{
    Options o = smallOptions();
    o.exposureSteps = 0;
    const Scene even = makeScene(o);
    o.exposureSteps = 2;
    const Scene uneven = makeScene(o);
    for (int i = 0; i < 4; ++i) {
        const double stops = uneven.stations[static_cast<std::size_t>(i)].exposure;
        EXPECT_LE(std::fabs(stops), 2);
        if (std::fabs(stops) < 0.1) continue;
        EXPECT_EQ(meanGrey(render(uneven, i, 128)) > meanGrey(render(even, i, 128)), stops > 0) << i;
    }
}

TEST(SampleSceneOptions, PictureNoiseAndItsInterleavedPartAreWhatIsAskedFor)
{
    Options o = smallOptions();
    o.pictureNoise = 0;
    const Rendering clean = render(makeScene(o), 0, 256);
    o.pictureNoise = 6;
    const Rendering noisy = render(makeScene(o), 0, 256);
    o.pictureNoise = 0;
    o.interleavedNoise = 6;
    const Rendering striped = render(makeScene(o), 0, 256);
    double squares = 0;
    double withinRow = 0;
    int count = 0;
    for (std::size_t i = 0; i < clean.rgb.size(); ++i) {
        if (clean.rgb[i] < 60 || clean.rgb[i] > 200) continue;
        const double step = int(noisy.rgb[i]) - int(clean.rgb[i]);
        squares += step * step;
        ++count;
        // Columns of one parity in one row share their offset.
        if (i >= 6 && i / 768 == (i - 6) / 768 && clean.rgb[i - 6] > 60 && clean.rgb[i - 6] < 200)
            withinRow = std::max(withinRow, std::fabs((int(striped.rgb[i]) - int(clean.rgb[i])) -
                                                      (int(striped.rgb[i - 6]) - double(clean.rgb[i - 6]))));
    }
    EXPECT_NEAR(std::sqrt(squares / count), 6, 1.5);
    EXPECT_LE(withinRow, 1);
    EXPECT_FALSE(striped.rgb == clean.rgb);
}

TEST(SampleSceneOptions, PlainTexturesHaveLessDetail)
{
    Options o = smallOptions();
    o.pictureNoise = 0;
    const double rich = detail(render(makeScene(o), 0, 1024));
    o.texture = Texture::Plain;
    const double plain = detail(render(makeScene(o), 0, 1024));
    EXPECT_LT(plain, 0.7 * rich);
}

TEST(SampleSceneOptions, TheNadirPatchIsTheSameInEveryPicturesOwnFrame)
{
    Options o = smallOptions();
    o.nadir = Nadir::Patch;
    o.exposureSteps = 0;
    o.pictureNoise = 0;
    const Scene scene = makeScene(o);
    const Rendering a = render(scene, 0, 512);
    const Rendering b = render(scene, 1, 512);
    const std::size_t below = static_cast<std::size_t>(512) * 3 * 234; // rows within 15 degrees of the pole
    EXPECT_TRUE(std::equal(a.rgb.begin() + static_cast<long>(below), a.rgb.end(),
                           b.rgb.begin() + static_cast<long>(below)));
}

TEST(SampleSceneOptions, TheOperatorStandsNearTheCameraInEveryPanorama)
{
    Options o = exactOptions();
    const Scene alone = makeScene(o);
    o.nadir = Nadir::Operator;
    const Scene accompanied = makeScene(o);
    for (int i = 0; i < 2; ++i) {
        const Rendering a = render(alone, i, 256);
        const Rendering b = render(accompanied, i, 256);
        const Station& s = alone.stations[static_cast<std::size_t>(i)];
        int nearer = 0;
        for (int row = 64; row < 80; ++row)
            for (int x = 0; x < 256; ++x) {
                const auto at = static_cast<std::size_t>(row * 256 + x);
                if (b.range[at] > 0 && b.range[at] < 1200 &&
                    (a.range[at] == 0 || b.range[at] + 100 < a.range[at]))
                    ++nearer;
            }
        EXPECT_GT(nearer, 60) << s.room;
    }
}
