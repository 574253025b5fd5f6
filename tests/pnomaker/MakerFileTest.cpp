// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the maker writes is a whole panorama file, whatever the picture.
#include "companions/pnomaker/PnoMaker.h"
#include "linking/pno/PnoFile.h"
#include "tests/pnomaker/Pictures.h"
#include "tests/pnomaker/Readback.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

namespace {

using namespace pnotest;

struct Shape
{
    const char* name;
    int width, height, level;
    double polar_min, polar_max;
    std::uint32_t expectedLevel;
};

class MakerShapes : public testing::TestWithParam<Shape>
{};

TEST_P(MakerShapes, AreAcceptedByTheReaderWithEveryTileInPlace)
{
    const Shape shape = GetParam();
    const TemporaryFolder folder;
    const std::string path = folder.path("made.pno");
    PaintedPicture picture = gradient(shape.width, shape.height);
    pnomaker::MakeOptions options;
    options.id = "MakerShapesAbc";
    options.name = "Shape";
    options.level = shape.level;
    options.polar_min = shape.polar_min;
    options.polar_max = shape.polar_max;
    ASSERT_EQ(pnomaker::make(picture, options, path), "");

    const auto file = std::make_unique<PnoFile>();
    ASSERT_EQ(file->Open(path.c_str()), pno::Ok);
    const PnoImageInfo info = file->imageInfo();
    EXPECT_EQ(info.max_zoom_level, shape.expectedLevel);
    EXPECT_STREQ(info.identity, "MakerShapesAbc");
    EXPECT_STREQ(info.name, "Shape");
    EXPECT_FALSE(file->lidar());
    EXPECT_EQ(info.output_min_y, 0);
    EXPECT_EQ(info.output_max_y, pno::kPi);
    EXPECT_NEAR(info.valid_min_y, std::min(shape.polar_min, 0.5), 1e-6);
    EXPECT_NEAR(info.valid_max_y, std::max(shape.polar_max, 2.4585), 1e-6);
    std::uint32_t size = 0;
    for (std::uint32_t level = 0; level <= info.max_zoom_level; ++level)
        for (std::uint32_t row = 0; row < info.rows[level]; ++row)
            for (std::uint32_t column = 0; column < info.columns[level]; ++column)
                ASSERT_NE(file->ReadTile(static_cast<int>(level), static_cast<int>(column),
                                         static_cast<int>(row), &size),
                          nullptr);
    for (int level = 0; level <= static_cast<int>(info.max_zoom_level); level += 3)
        EXPECT_FALSE(decodedTile(*file, level, 0, 0).rgb.empty()) << level;
    EXPECT_EQ(folderEntries(folder.path("")), std::vector<std::string>{"made.pno"});
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, MakerShapes,
    testing::Values(
        Shape{"Small", 256, 128, 0, 0, pno::kPi, 10}, Shape{"OddWidth", 1001, 500, 0, 0, pno::kPi, 10},
        Shape{"Half", 4096, 2048, 0, 0, pno::kPi, 10}, Shape{"Exact10", 8192, 4096, 0, 0, pno::kPi, 10},
        Shape{"Between", 9000, 4500, 0, 0, pno::kPi, 11}, Shape{"Exact11", 11585, 5793, 0, 0, pno::kPi, 11},
        Shape{"SmallTo11", 2000, 1000, 11, 0, pno::kPi, 11},
        Shape{"Above11", 11586, 5793, 0, 0, pno::kPi, 12}, Shape{"BigTo10", 12000, 6000, 10, 0, pno::kPi, 10},
        Shape{"NoPoles", 2000, 668, 0, 0.4, 2.5, 10}, Shape{"NoNadir", 2000, 828, 0, 0, 2.6, 10},
        Shape{"Narrow", 2000, 318, 0, 1.0, 2.0, 10}, Shape{"OneRow", 628, 1, 0, 1.5, 1.51, 10}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Maker, MakesTheSameBytesWhateverTheNumberOfThreads)
{
    const TemporaryFolder folder;
    pnomaker::MakeOptions options;
    for (const int threads : {1, 2, 7}) {
        PaintedPicture picture = noise(1500, 750);
        options.threads = threads;
        const std::string path = folder.path(std::to_string(threads) + ".pno");
        ASSERT_EQ(pnomaker::make(picture, options, path), "");
    }
    const auto one = fileBytes(folder.path("1.pno"));
    EXPECT_EQ(one, fileBytes(folder.path("2.pno")));
    EXPECT_EQ(one, fileBytes(folder.path("7.pno")));
}

TEST(Maker, DerivesTheIdFromThePictureAlone)
{
    const TemporaryFolder folder;
    std::vector<std::string> ids;
    const auto add = [&](PaintedPicture picture, int quality) {
        pnomaker::MakeOptions options;
        options.quality = quality;
        ASSERT_EQ(pnomaker::make(picture, options, folder.path("made.pno")), "");
        const auto file = std::make_unique<PnoFile>();
        ASSERT_EQ(file->Open(folder.path("made.pno").c_str()), pno::Ok);
        ids.emplace_back(file->imageInfo().identity);
    };
    add(gradient(512, 256), 90);
    add(gradient(512, 256), 60);
    add(noise(512, 256), 90);
    ASSERT_EQ(ids.size(), 3u);
    EXPECT_EQ(ids[0], ids[1]);
    EXPECT_NE(ids[0], ids[2]);
    EXPECT_EQ(ids[0].size(), 14u);
}

TEST(Maker, LowersTheQualityWhereTheFileWouldOutgrowTheFormat)
{
    const TemporaryFolder folder;
    PaintedPicture picture = noise(16384, 8192);
    pnomaker::MakeOptions options;
    options.quality = 100;
    ASSERT_EQ(pnomaker::make(picture, options, folder.path("made.pno")), "");
    EXPECT_GT(picture.passes, 1);
    const auto file = std::make_unique<PnoFile>();
    ASSERT_EQ(file->Open(folder.path("made.pno").c_str()), pno::Ok);
    EXPECT_LT(file->imageInfo().quality, 100u);
    EXPECT_GE(file->imageInfo().quality, 50u);
}

TEST(Maker, KeepsTheCaptureTime)
{
    const TemporaryFolder folder;
    PaintedPicture picture = gradient(256, 128);
    pnomaker::MakeOptions options;
    options.year = 2024;
    options.month = 12;
    options.day = 31;
    options.hour = 23;
    options.minute = 59;
    options.second = 58;
    options.millisecond = 7;
    ASSERT_EQ(pnomaker::make(picture, options, folder.path("made.pno")), "");
    const auto file = std::make_unique<PnoFile>();
    ASSERT_EQ(file->Open(folder.path("made.pno").c_str()), pno::Ok);
    const pno::CaptureTime time = file->captureTime();
    EXPECT_EQ(time.year, 2024u);
    EXPECT_EQ(time.month, 12u);
    EXPECT_EQ(time.day, 31u);
    EXPECT_EQ(time.hour, 23u);
    EXPECT_EQ(time.minute, 59u);
    EXPECT_EQ(time.second, 58u);
    EXPECT_EQ(time.millisecond, 7u);
}

TEST(Maker, WritesUnderPathsWithChineseSpacesAndAccents)
{
    const TemporaryFolder folder;
    folder.write("全景 é/seed", {1});
    PaintedPicture picture = gradient(256, 128);
    pnomaker::MakeOptions options;
    options.name = "大厅";
    const std::string path = folder.path("全景 é/大厅 à gauche.pno");
    ASSERT_EQ(pnomaker::make(picture, options, path), "");
    const auto file = std::make_unique<PnoFile>();
    EXPECT_EQ(file->Open(path.c_str()), pno::Ok);
    EXPECT_STREQ(file->imageInfo().name, "大厅");
}

TEST(Maker, ReportsProgressUpToTheEnd)
{
    const TemporaryFolder folder;
    PaintedPicture picture = gradient(2048, 1024);
    pnomaker::MakeOptions options;
    std::vector<double> seen;
    options.progress = [&](double share) { seen.push_back(share); };
    ASSERT_EQ(pnomaker::make(picture, options, folder.path("made.pno")), "");
    ASSERT_FALSE(seen.empty());
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    EXPECT_EQ(seen.back(), 1.0);
}

} // namespace
