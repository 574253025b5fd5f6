// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The program as a whole: its words, its exit status, its outputs.
#include "linking/pno/PnoFile.h"
#include "tests/pnomaker/JpegFiles.h"
#include "tests/pnomaker/Metadata.h"
#include "tests/pnomaker/PictureFiles.h"
#include "tests/pnomaker/Pictures.h"
#include "tests/pnomaker/Readback.h"
#include "tests/pnomaker/ToolRun.h"
#include "tests/support/TestFiles.h"

#include <csignal>
#include <cstring>
#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using namespace pnotest;
using testing::HasSubstr;
using testing::StartsWith;

/// Folder with pictures and panoramas of a test.
struct PnoTool : testing::Test
{
    TemporaryFolder folder;

    std::string picture(const std::string& name, PaintedPicture painted = gradient(512, 256),
                        const JpegForm& form = {})
    {
        folder.write(name, {});
        EXPECT_TRUE(writeJpeg(folder.path(name), painted, form));
        return folder.path(name);
    }

    std::unique_ptr<PnoFile> open(const std::string& path)
    {
        auto file = std::make_unique<PnoFile>();
        EXPECT_EQ(file->Open(path.c_str()), pno::Ok) << path;
        return file;
    }

    /// Makes a panorama and opens it.
    std::unique_ptr<PnoFile> made(std::vector<std::string> words)
    {
        words.insert(words.begin(), "make");
        words.insert(words.end(), {"--out", folder.path("made.pno")});
        const ToolRun run = runTool(words);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_THAT(run.out, StartsWith(folder.path("made.pno") + ": id "));
        EXPECT_EQ(run.err, "");
        return open(folder.path("made.pno"));
    }

    /// Expects a refusal in one line, and nothing left of the output.
    void expectRefused(std::vector<std::string> words, const std::string& why, int status = 1)
    {
        words.insert(words.begin(), "make");
        words.insert(words.end(), {"--out", folder.path("refused.pno")});
        const ToolRun run = runTool(words);
        EXPECT_EQ(run.status, status) << run.err;
        EXPECT_THAT(run.err, HasSubstr(why));
        EXPECT_THAT(run.err, StartsWith("pnotool: "));
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
        EXPECT_EQ(run.out, "");
        for (const std::string& name : folderEntries(folder.path("")))
            EXPECT_FALSE(name.find("refused.pno") == 0) << name;
    }
};

TEST_F(PnoTool, HelpNamesEveryCommandAndOption)
{
    const ToolRun run = runTool({"--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    for (const char* word : {"make", "info", "image", "tile", "thumbnail", "range", "--out", "--id", "--name",
                             "--level", "--quality", "--polar", "--range", "--range-unit", "--points",
                             "--plan", "--time", "--json", "--width"})
        EXPECT_THAT(run.out, HasSubstr(word));
    EXPECT_EQ(runTool({"make", "--help"}).status, 0);
}

TEST_F(PnoTool, WrongUsageHasStatusTwo)
{
    const std::string p = picture("p.jpg");
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {},
             {"paint"},
             {"make"},
             {"make", p},
             {"make", p, p, "--out", "x"},
             {"make", p, "--out"},
             {"make", p, "--out", "x", "--colour", "red"},
             {"make", p, "--out", "x", "--level", "ten"},
             {"make", p, "--out", "x", "--quality", "90%"},
             {"make", p, "--out", "x", "--polar", "0.5"},
             {"make", p, "--out", "x", "--plan", "1,2.5"},
             {"make", p, "--out", "x", "--time", "yesterday"},
             {"make", p, "--out", "x", "--points", "cloud.txt"},
             {"make", folder.path(""), "--out", "x", "--id", "ABCDEFGHIJKLMN"},
             {"info"},
             {"info", "a", "b"},
             {"image", "a", "--out", "b", "--width", "1000"},
             {"image", "a"},
             {"tile", "a", "1", "2", "--out", "b"},
             {"tile", "a", "1", "2", "x", "--out", "b"},
             {"thumbnail", "a"},
             {"range", "a"}}) {
        const ToolRun run = runTool(words);
        EXPECT_EQ(run.status, 2) << testing::PrintToString(words);
        EXPECT_THAT(run.err, StartsWith("pnotool: "));
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1);
    }
}

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

TEST_F(PnoTool, PartsOfTheHorizonAndOtherProjectionsAreRefused)
{
    JpegForm form;
    form.xmp = gpanoPacket("GPano", {2048, 1024, 1024, 512, 0, 256});
    expectRefused({picture("part.jpg", gradient(1024, 512), form)},
                  "part.jpg: the picture covers only 180 of");
    form.xmp = gpanoPacket("GPano", {1024, 512, 1024, 512, 0, 0}, "cylindrical");
    expectRefused({picture("cylinder.jpg", gradient(1024, 512), form)}, "cylindrical");
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

TEST_F(PnoTool, BadInputIsNamedWithItsReason)
{
    expectRefused({folder.path("none.jpg")}, "none.jpg: cannot be read");
    expectRefused({folder.write("empty.jpg", {})}, "empty.jpg: the file is empty");
    expectRefused({folder.write("text.jpg", Bytes(100, 'x'))},
                  "text.jpg: this is not a JPEG, PNG or TIFF picture");
    expectRefused({picture("flat.jpg", gradient(600, 400))},
                  "flat.jpg: the picture is 600 x 400; a full sphere");
    expectRefused({picture("tiny.jpg", gradient(100, 50))}, "at least 256 pixels");
    const std::string good = picture("good.jpg", noise(1024, 512));
    Bytes cut = fileBytes(good);
    cut.resize(cut.size() * 2 / 3);
    expectRefused({folder.write("cut.jpg", cut)}, "cut.jpg: the JPEG data is damaged or cut off");
    expectRefused({good, "--polar", "nan,2"}, "polar extent");
    expectRefused({good, "--polar", "0,inf"}, "polar extent");
    expectRefused({good, "--polar", "0,4"}, "polar extent");
    expectRefused({good, "--id", "short"}, "\"short\" is not 14 letters");
    expectRefused({good, "--id", "ABCDEFGHIJKLM1"}, "14 letters");
    expectRefused({good, "--level", "13"}, "level must be");
    expectRefused({good, "--level", "0"}, "level must be");
    expectRefused({good, "--quality", "49"}, "quality must be");
    expectRefused({good, "--range", good}, "good.jpg: the range picture is not");
    expectRefused({good, "--range", folder.path("none.png")}, "none.png: cannot be read");
    pnomaker::RangePicture range;
    range.width = 64;
    range.height = 32;
    range.values.resize(64 * 32, 1000);
    ASSERT_TRUE(writeGrey16Png(folder.path("r.png"), range));
    expectRefused({good, "--range", folder.path("r.png"), "--range-unit", "0"}, "range unit");
    expectRefused({good, "--range", folder.path("r.png"), "--range-unit", "nan"}, "range unit");
    expectRefused({good, "--range", folder.path("r.png"), "--points", folder.write("c.txt", {'x', '\n'})},
                  "c.txt: line 1");
}

TEST_F(PnoTool, TheOutputNeverReplacesItsOwnInput)
{
    const std::string p = picture("p.jpg");
    const Bytes before = fileBytes(p);
    EXPECT_EQ(runTool({"make", p, "--out", p}).status, 1);
    EXPECT_EQ(fileBytes(p), before);
}

TEST_F(PnoTool, AFullDiskLeavesNeitherAPartNorADamagedEarlierFile)
{
    const std::string p = picture("p.jpg", noise(2048, 1024));
    const std::string earlier = folder.write("made.pno", {1, 2, 3});
    const ToolRun run = runTool({"make", p, "--out", earlier}, 1000000);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, StartsWith("pnotool: " + earlier + ": cannot be written"));
    EXPECT_EQ(fileBytes(earlier), (Bytes{1, 2, 3}));
    EXPECT_EQ(folderEntries(folder.path("")), (std::vector<std::string>{"made.pno", "p.jpg"}));
}

TEST_F(PnoTool, AnEndBySignalLeavesNeitherAPartNorADamagedEarlierFile)
{
    const std::string p = picture("p.jpg", noise(8192, 4096));
    const std::string earlier = folder.write("out/made.pno", {1, 2, 3});
    EXPECT_EQ(runToolUntilOutputAppears({"make", p, "--out", earlier}, folder.path("out")), SIGTERM);
    EXPECT_EQ(fileBytes(earlier), (Bytes{1, 2, 3}));
    EXPECT_EQ(folderEntries(folder.path("out")), std::vector<std::string>{"made.pno"});
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

TEST_F(PnoTool, AFolderIsMadePictureByPictureAndFailuresAreNamed)
{
    picture("in/b.jpg", noise(512, 256));
    picture("in/a.JPG");
    folder.write("in/c.png", {1, 2, 3});
    folder.write("in/notes.txt", {1});
    PaintedPicture painted = gradient(300, 150);
    writePng(folder.path("in/d.png"), painted, PngKind::Rgb8);
    const ToolRun run =
        runTool({"make", folder.path("in"), "--out", folder.path("new/out"), "--level", "10"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("c.png: this is not"));
    EXPECT_EQ(folderEntries(folder.path("new/out")), (std::vector<std::string>{"a.pno", "b.pno", "d.pno"}));
    EXPECT_LT(run.out.find("a.pno"), run.out.find("b.pno"));
    EXPECT_LT(run.out.find("b.pno"), run.out.find("d.pno"));
    EXPECT_STREQ(open(folder.path("new/out/b.pno"))->imageInfo().name, "b___");
}

TEST_F(PnoTool, AFolderWithTwoPicturesOfOneNameKeepsTheFirst)
{
    picture("in/a.jpg");
    PaintedPicture painted = noise(300, 150);
    writePng(folder.path("in/a.png"), painted, PngKind::Rgb8);
    const ToolRun run = runTool({"make", folder.path("in"), "--out", folder.path("out")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("a.png"));
    EXPECT_THAT(run.err, HasSubstr("already made from"));
}

TEST_F(PnoTool, AFolderTellsOfPicturesThatAreTheSame)
{
    picture("in/a.jpg");
    picture("in/b.jpg");
    const ToolRun run = runTool({"make", folder.path("in"), "--out", folder.path("out")});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, HasSubstr("b.jpg: the same picture as"));
    EXPECT_EQ(runTool({"make", folder.path("out"), "--out", folder.path("x")}).status, 1);
}

TEST_F(PnoTool, InfoTellsEverythingAsJson)
{
    pnomaker::RangePicture range;
    range.width = 64;
    range.height = 32;
    range.values.resize(64 * 32, 1000);
    ASSERT_TRUE(writeGrey16Png(folder.path("r.png"), range));
    made({picture("p.jpg"), "--id", "AAAAAAAAAAAAAB", "--name", "大厅 \"1\"", "--range", folder.path("r.png"),
          "--plan", "12,-34", "--time", "2024-05-31T14:30:59.250"});
    const ToolRun run = runTool({"info", folder.path("made.pno"), "--json"});
    ASSERT_EQ(run.status, 0);
    const auto json = nlohmann::json::parse(run.out);
    EXPECT_EQ(json["status"], 0);
    EXPECT_EQ(json["id"], "AAAAAAAAAAAAAB");
    EXPECT_EQ(json["pano_id"], "1");
    EXPECT_EQ(json["name"], "大厅 \"1\"");
    EXPECT_EQ(json["time"], "2024-05-31T14:30:59.250");
    EXPECT_EQ(json["lidar"], true);
    EXPECT_EQ(json["max_zoom_level"], 10);
    EXPECT_EQ(json["widths"].size(), 11u);
    EXPECT_EQ(json["widths"][10], 8192);
    EXPECT_EQ(json["heights"][0], 128);
    EXPECT_EQ(json["columns"][1], 2);
    EXPECT_EQ(json["rows"][10], 16);
    EXPECT_EQ(json["tiles"], 1057);
    EXPECT_EQ(json["plan"], nlohmann::json({12, -34}));
    const ToolRun text = runTool({"info", folder.path("made.pno")});
    EXPECT_EQ(text.status, 0);
    EXPECT_THAT(text.out, HasSubstr("AAAAAAAAAAAAAB"));
    EXPECT_THAT(text.out, HasSubstr("大厅"));
}

TEST_F(PnoTool, InfoOfABadFileTellsItsStatusAndExitsWithOne)
{
    const std::string bad = folder.write("bad.pno", Bytes(1000, 7));
    const ToolRun run = runTool({"info", bad, "--json"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(nlohmann::json::parse(run.out)["status"], -3);
    EXPECT_THAT(run.err, HasSubstr("not a panorama file"));
    EXPECT_EQ(runTool({"info", folder.path("none.pno")}).status, 1);
    for (const char* command : {"image", "thumbnail", "range"})
        EXPECT_EQ(runTool({command, bad, "--out", folder.path("x.png")}).status, 1) << command;
    EXPECT_FALSE(std::filesystem::exists(folder.path("x.png")));
}

TEST_F(PnoTool, TheAssembledPictureShowsAPatchAtItsDirection)
{
    made({picture("p.jpg", patch(4096, 2048, -0.7, 1.9))});
    for (const char* width : {"4096", "8192"}) {
        const std::string out = folder.path(std::string(width) + ".png");
        ASSERT_EQ(runTool({"image", folder.path("made.pno"), "--width", width, "--out", out}).status, 0);
        std::vector<std::uint8_t> rgb;
        int w = 0, h = 0;
        ASSERT_TRUE(readPng(out, rgb, w, h));
        ASSERT_EQ(w, std::stoi(width));
        ASSERT_EQ(h, w / 2);
        const auto red = [&](double azimuth, double polar) {
            const int x = static_cast<int>((pno::kPi - azimuth) / (2 * pno::kPi) * w);
            const int y = static_cast<int>(polar / pno::kPi * h);
            return rgb[static_cast<std::size_t>(3 * (y * w + x))];
        };
        EXPECT_GT(red(-0.7, 1.9), 200);
        EXPECT_LT(red(-0.75, 1.9), 120);
        EXPECT_LT(red(0.7, 1.9), 120);
        EXPECT_LT(red(-0.7, 1.2), 120);
    }
    EXPECT_EQ(runTool({"image", folder.path("made.pno"), "--out", folder.path("x.abc")}).status, 1);
    EXPECT_FALSE(std::filesystem::exists(folder.path("x.abc")));
}

TEST_F(PnoTool, TileAndThumbnailComeOut)
{
    const auto file = made({picture("p.jpg")});
    ASSERT_EQ(
        runTool({"tile", folder.path("made.pno"), "10", "31", "15", "--out", folder.path("t.jpg")}).status,
        0);
    std::uint32_t size = 0;
    const PnoBytes bytes = file->ReadTile(10, 31, 15, &size);
    EXPECT_EQ(fileBytes(folder.path("t.jpg")), Bytes(bytes.get(), bytes.get() + size));
    EXPECT_EQ(
        runTool({"tile", folder.path("made.pno"), "10", "32", "15", "--out", folder.path("u.jpg")}).status,
        1);
    EXPECT_FALSE(std::filesystem::exists(folder.path("u.jpg")));
    ASSERT_EQ(runTool({"thumbnail", folder.path("made.pno"), "--out", folder.path("n.png")}).status, 0);
    std::vector<std::uint8_t> rgb;
    int w = 0, h = 0;
    ASSERT_TRUE(readPng(folder.path("n.png"), rgb, w, h));
    EXPECT_EQ(w, 256);
    EXPECT_EQ(h, 96);
}

TEST_F(PnoTool, ARangePictureComesBackUnchanged)
{
    pnomaker::RangePicture range;
    range.width = 8192;
    range.height = 4096;
    range.values.resize(std::size_t(8192) * 4096);
    for (std::size_t i = 0; i < range.values.size(); ++i)
        range.values[i] = static_cast<std::uint16_t>(i / 8192 * 11 + i % 8192 * 3);
    ASSERT_TRUE(writeGrey16Png(folder.path("r.png"), range));
    EXPECT_TRUE(made({picture("p.jpg"), "--range", folder.path("r.png"), "--range-unit", "0.002"})->lidar());
    const ToolRun run = runTool({"range", folder.path("made.pno"), "--out", folder.path("back.png")});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("unit 0.002 m"));
    // Made again from what came back, the depth segments are the same.
    const Bytes first = fileBytes(folder.path("made.pno"));
    made({picture("p.jpg"), "--range", folder.path("back.png"), "--range-unit", "0.002"});
    EXPECT_EQ(fileBytes(folder.path("made.pno")), first);
    const auto file = open(folder.path("made.pno"));
    for (const int x : {0, 300, 8191})
        EXPECT_EQ(rangeValue(*file, x, 1000), static_cast<std::uint16_t>(1000 * 11 + x * 3));
}

TEST_F(PnoTool, RangeOfAPanoramaWithoutLidarIsRefused)
{
    made({picture("p.jpg")});
    const ToolRun run = runTool({"range", folder.path("made.pno"), "--out", folder.path("r.png")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("no lidar"));
    EXPECT_FALSE(std::filesystem::exists(folder.path("r.png")));
}

TEST_F(PnoTool, PointsOfACloudReachThePointBlock)
{
    pnomaker::RangePicture range;
    range.width = 64;
    range.height = 32;
    range.values.resize(64 * 32, 1000);
    ASSERT_TRUE(writeGrey16Png(folder.path("r.png"), range));
    const std::string text = "1.5 -2 3 10 20 30\n4 5 6 40 50 60\n";
    const std::string cloud = folder.write("c.txt", Bytes(text.begin(), text.end()));
    const auto file = made({picture("p.jpg"), "--range", folder.path("r.png"), "--points", cloud});
    EXPECT_EQ(file->pointValues()[2], 2u);
    std::uint32_t size = 0;
    const PnoBytes bytes = file->ReadPoints(&size);
    const float expected[3] = {1.5F, -2, 3};
    EXPECT_EQ(std::memcmp(bytes.get(), expected, 12), 0);
    EXPECT_EQ(bytes[12], 10);
    EXPECT_EQ(bytes[15], 255);
}

} // namespace
