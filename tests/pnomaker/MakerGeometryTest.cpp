// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Directions land where the picture has them, at every level.
#include "companions/pnomaker/PnoMaker.h"
#include "linking/pno/PnoFile.h"
#include "tests/pnomaker/Pictures.h"
#include "tests/pnomaker/Readback.h"
#include "tests/support/TestFiles.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace pnotest;

/// A made file, open.
struct Made
{
    Made(PaintedPicture picture, const pnomaker::MakeOptions& options)
        : file(std::make_unique<PnoFile>())
    {
        EXPECT_EQ(pnomaker::make(picture, options, folder.path("made.pno")), "");
        EXPECT_EQ(file->Open(folder.path("made.pno").c_str()), pno::Ok);
    }
    TemporaryFolder folder;
    std::unique_ptr<PnoFile> file;
};

int columnOf(double azimuth, int width)
{
    return static_cast<int>((pno::kPi - azimuth) / (2 * pno::kPi) * width);
}
int rowOf(double polar, int height)
{
    return static_cast<int>(polar / pno::kPi * height);
}

void expectPatch(PnoFile& file, double azimuth, double polar)
{
    const PnoImageInfo info = file.imageInfo();
    for (int level = 4; level <= static_cast<int>(info.max_zoom_level); ++level) {
        const int width = static_cast<int>(info.widths[level]);
        const int height = static_cast<int>(info.heights[level]);
        const Rgb inside = levelPixel(file, level, columnOf(azimuth, width), rowOf(polar, height));
        EXPECT_GT(inside[0], 180) << "level " << level;
        EXPECT_LT(inside[1], 70) << "level " << level;
        for (const double off : {-0.05, 0.05}) {
            EXPECT_LT(levelPixel(file, level, columnOf(azimuth + off, width), rowOf(polar, height))[0], 120)
                << "level " << level;
            EXPECT_LT(levelPixel(file, level, columnOf(azimuth, width), rowOf(polar + off, height))[0], 120)
                << "level " << level;
        }
    }
}

TEST(MakerGeometry, APatchLandsAtItsDirectionOnEveryLevel)
{
    const Made made(patch(3000, 1500, 1.2, 1.0), {});
    expectPatch(*made.file, 1.2, 1.0);
}

TEST(MakerGeometry, APatchLandsAtItsDirectionUnderAnOddTopLevel)
{
    pnomaker::MakeOptions options;
    options.level = 11;
    const Made made(patch(4096, 2048, -2.5, 2.2), options);
    expectPatch(*made.file, -2.5, 2.2);
}

TEST(MakerGeometry, APatchOfASourceWithoutPolesLandsAtItsDirection)
{
    pnomaker::MakeOptions options;
    options.polar_min = 0.45;
    options.polar_max = 2.5;
    const Made made(patch(3000, 979, 0.3, 0.6, 0.45, 2.5), options);
    expectPatch(*made.file, 0.3, 0.6);
}

TEST(MakerGeometry, ColumnZeroIsTheRightEdgeOfThePicture)
{
    const Made made(gradient(8192, 4096), {});
    EXPECT_GT(decodedTile(*made.file, 10, 0, 0).at(255, 10)[0], 248);
    EXPECT_LT(decodedTile(*made.file, 10, 31, 0).at(0, 10)[0], 6);
    EXPECT_LT(decodedTile(*made.file, 10, 5, 0).at(128, 5)[1], 6);
    EXPECT_GT(decodedTile(*made.file, 10, 5, 15).at(128, 250)[1], 248);
}

TEST(MakerGeometry, TilesBeyondThePictureRepeatItsEdge)
{
    pnomaker::MakeOptions options;
    options.level = 11;
    const Made made(gradient(4096, 2048), options);
    // 46 columns hold 11776 pixels, 191 more than the picture; 23 rows hold 95 rows more.
    const DecodedTile left = decodedTile(*made.file, 11, 45, 4);
    ASSERT_FALSE(left.rgb.empty());
    EXPECT_NEAR(left.at(0, 100)[0], left.at(180, 100)[0], 3);
    EXPECT_NEAR(left.at(0, 100)[1], left.at(200, 100)[1], 3);
    const DecodedTile low = decodedTile(*made.file, 11, 7, 22);
    ASSERT_FALSE(low.rgb.empty());
    EXPECT_GT(low.at(100, 255)[1], 248);
}

TEST(MakerGeometry, EveryLevelKeepsTheMeanColour)
{
    const Made made(noise(8192, 4096), {});
    for (int level = 0; level <= 10; ++level) {
        double sum = 0;
        int count = 0;
        const PnoImageInfo info = made.file->imageInfo();
        const int rows = static_cast<int>(info.heights[level]) / 256;
        const DecodedTile tile = decodedTile(*made.file, level, 0, rows / 2);
        ASSERT_FALSE(tile.rgb.empty());
        for (int y = 0; y < std::min<int>(256, static_cast<int>(info.heights[level])); ++y)
            for (int x = 0; x < 256; ++x, ++count)
                sum += tile.at(x, y)[1];
        EXPECT_NEAR(sum / count, 127.5, 3) << "level " << level;
    }
}

TEST(MakerGeometry, ASmoothPictureStaysTheSameOnEveryLevel)
{
    const Made made(gradient(5000, 2500), {});
    const PnoImageInfo info = made.file->imageInfo();
    for (int level = 2; level <= 10; ++level)
        for (const double part : {0.2, 0.5, 0.8}) {
            const int width = static_cast<int>(info.widths[level]);
            const int height = static_cast<int>(info.heights[level]);
            const Rgb colour = levelPixel(*made.file, level, static_cast<int>(part * width),
                                          static_cast<int>((1 - part) * height));
            EXPECT_NEAR(colour[0], 255 * part, 3) << "level " << level;
            EXPECT_NEAR(colour[1], 255 * (1 - part), 3) << "level " << level;
        }
}

TEST(MakerGeometry, TheSeamShowsNoEdgeWhereTheSourceHasNone)
{
    // Enlarged: taps at the left edge must take their colour from the right edge.
    PaintedPicture picture(512, 256, [](int x, int) -> Rgb {
        const auto value = static_cast<std::uint8_t>(128 + 100 * std::sin(2 * pno::kPi * (x + 0.5) / 512));
        return {value, value, value};
    });
    const Made made(picture, {});
    const int left = levelPixel(*made.file, 10, 0, 2048)[0];
    const int right = levelPixel(*made.file, 10, 8191, 2048)[0];
    EXPECT_NEAR(left, right, 2);
    EXPECT_NEAR(left, 128, 2);
}

TEST(MakerGeometry, MissingPolesAreFilledWithTheNearestRowMoreAndMoreBlurred)
{
    pnomaker::MakeOptions options;
    options.polar_min = 0.5;
    options.polar_max = 2.5;
    PaintedPicture stripes(2048, 652, [](int x, int) -> Rgb {
        const std::uint8_t value = x / 64 % 2 == 0 ? 40 : 200;
        return {value, value, value};
    });
    const Made made(stripes, options);
    const auto contrast = [&](int y) {
        int low = 255, high = 0;
        for (int x = 4096; x < 4096 + 512; x += 16) {
            const int value = levelPixel(*made.file, 10, x, y)[0];
            low = std::min(low, value);
            high = std::max(high, value);
        }
        return high - low;
    };
    const int edge = rowOf(0.5, 4096), low = rowOf(2.5, 4096);
    EXPECT_GT(contrast(edge - 8), 120);
    EXPECT_GT(contrast(low + 8), 120);
    EXPECT_LT(contrast(edge / 2), 40);
    EXPECT_LT(contrast(4), 6);
    EXPECT_LT(contrast(4090), 6);
    EXPECT_NEAR(levelPixel(*made.file, 10, 100, 0)[0], 120, 4);
}

} // namespace
