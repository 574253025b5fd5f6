// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// pnotool: help, usage, and everything that looks into a panorama file.
#include "tests/pnomaker/ToolFixture.h"

#include <cstring>
#include <nlohmann/json.hpp>

namespace {

using namespace pnotest;
using testing::HasSubstr;
using testing::StartsWith;

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
