// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// pnotool make: what it takes from the command line and from the picture.
#include "tests/pnomaker/ToolFixture.h"

namespace {

using namespace pnotest;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(PnoTool, MakeTakesEveryOption)
{
    const auto file = made({picture("p.jpg"), "--id", "AbcdefghijKLMN", "--name=Main hall", "--level", "11",
                            "--quality", "70", "--time", "2024-05-31T14:30:59.250Z"});
    const PnoImageInfo info = file->imageInfo();
    EXPECT_STREQ(info.identity, "AbcdefghijKLMN");
    EXPECT_STREQ(info.name, "Main hall");
    EXPECT_EQ(info.max_zoom_level, 11u);
    EXPECT_EQ(info.quality, 70u);
    EXPECT_EQ(file->captureTime().year, 2024u);
    EXPECT_EQ(file->captureTime().second, 59u);
    EXPECT_EQ(file->captureTime().millisecond, 250u);
}

TEST_F(PnoTool, TheNameIsThePicturesBaseNameAndTheIdComesFromItsPixels)
{
    EXPECT_STREQ(made({picture("大厅.jpg")})->imageInfo().name, "大厅");
    const std::string first = made({picture("a.jpg")})->imageInfo().identity;
    EXPECT_STREQ(open(folder.path("made.pno"))->imageInfo().name, "a___");
    EXPECT_EQ(made({picture("b.jpg"), "--level", "11"})->imageInfo().identity, first);
    EXPECT_NE(made({picture("c.jpg", noise(512, 256))})->imageInfo().identity, first);
    // A long name is cut between characters.
    const std::string longName = std::string(30, 'x') + "é and more";
    EXPECT_EQ(std::string(made({picture("a.jpg"), "--name", longName})->imageInfo().name),
              std::string(30, 'x'));
}

TEST_F(PnoTool, PathsWithChineseSpacesAndAccentsWorkUnderTheCLocale)
{
    setenv("LC_ALL", "C", 1);
    const std::string source = picture("全景 图/hôtel à.jpg");
    const std::string out = folder.path("全景 图/输出 é.pno");
    ASSERT_EQ(runTool({"make", source, "--out", out}).status, 0);
    open(out);
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"image", out, "--width", "4096", "--out", folder.path("全景 图/图.png")},
             {"thumbnail", out, "--out", folder.path("全景 图/小 é.jpg")},
             {"tile", out, "10", "0", "0", "--out", folder.path("全景 图/t ü.jpg")}}) {
        const ToolRun run = runTool(words);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_TRUE(std::filesystem::exists(words.back()));
    }
}

TEST_F(PnoTool, NumbersHaveADecimalPointInEveryLocale)
{
    setenv("LC_ALL", "de_DE.UTF-8", 1); // where it is not installed this is the C locale
    const auto file = made({picture("p.jpg", gradient(512, 171)), "--polar", "0.5,2.6"});
    EXPECT_NEAR(file->imageInfo().valid_min_y, 0.5, 1e-9);
}

TEST_F(PnoTool, TheCropOfGPanoBecomesTheValidExtent)
{
    JpegForm form;
    form.xmp = gpanoPacket("GPano", {5120, 2560, 5120, 2133, 0, 300});
    const auto file = made({picture("p.jpg", gradient(1024, 427), form)});
    EXPECT_NEAR(file->imageInfo().valid_min_y, 300.0 / 2560 * pno::kPi, 1e-9);
    EXPECT_NEAR(file->imageInfo().valid_max_y, 2433.0 / 2560 * pno::kPi, 1e-9);
}

TEST_F(PnoTool, TheCropGivenByHandGoesBeforeGPano)
{
    JpegForm form;
    form.xmp = gpanoPacket("GPano", {1024, 512, 1024, 427, 0, 60});
    const auto file = made({picture("p.jpg", gradient(1024, 427), form), "--polar", "0.1,2.72"});
    EXPECT_NEAR(file->imageInfo().valid_min_y, 0.1, 1e-9);
}

TEST_F(PnoTool, AGPanoCropThatDoesNotFitThePictureIsALeftover)
{
    JpegForm form;
    form.xmp = gpanoPacket("GPano", {1024, 512, 1024, 300, 0, 60});
    EXPECT_EQ(made({picture("p.jpg", gradient(1024, 512), form)})->imageInfo().valid_min_y, 0);
}

TEST_F(PnoTool, TheTimeComesFromExifUnlessItIsGiven)
{
    JpegForm form;
    form.exif = exifBlock("2021:03:04 05:06:07", "89", true);
    const std::string p = picture("p.jpg", gradient(512, 256), form);
    EXPECT_EQ(made({p})->captureTime().month, 3u);
    EXPECT_EQ(open(folder.path("made.pno"))->captureTime().millisecond, 890u);
    EXPECT_EQ(made({p, "--time", "2024-05-31"})->captureTime().month, 5u);
    PaintedPicture painted = gradient(512, 256);
    ASSERT_TRUE(writeTiff(folder.path("t.tif"), painted, TiffKind::Rgb8Strips, "2019:07:08 09:10:11"));
    EXPECT_EQ(made({folder.path("t.tif")})->captureTime().year, 2019u);
}

TEST_F(PnoTool, APictureOf16384PixelsIsMadeWithin600MiB)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer's own memory would be counted";
#endif
    const std::string p = picture("big.jpg", noise(16384, 8192));
    const ToolRun run = runTool({"make", p, "--out", folder.path("big.pno")});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_LT(run.peak_kib, 600 * 1024);
    EXPECT_EQ(open(folder.path("big.pno"))->imageInfo().max_zoom_level, 12u);
    RecordProperty("peak_mib", static_cast<int>(run.peak_kib / 1024));
}

} // namespace
