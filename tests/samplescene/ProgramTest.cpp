// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Arguments.h"
#include "linking/pno/PnoFile.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>

using namespace samplescene;

namespace {

std::string wrongWith(const std::vector<std::string>& words)
{
    Arguments a;
    return parseArguments(words, &a);
}

int run(const std::string& arguments)
{
    const std::string command = std::string("\"") + SAMPLESCENE_PROGRAM + "\" " + arguments;
    const int status = std::system(command.c_str());
#ifdef _WIN32
    return status;
#else
    return status >> 8;
#endif
}

} // namespace

TEST(SampleSceneProgram, DefaultsAreAFlatOfEightWithLidar)
{
    Arguments a;
    EXPECT_EQ(parseArguments({"--out", "x"}, &a), "");
    EXPECT_EQ(a.options.kind, Kind::Flat);
    EXPECT_EQ(a.options.count, 8);
    EXPECT_EQ(a.options.seed, 1u);
    EXPECT_EQ(a.width, 4096);
    EXPECT_TRUE(a.options.lidar);
}

TEST(SampleSceneProgram, WrongWordsAreNamed)
{
    EXPECT_EQ(wrongWith({}), "--out DIR is needed; --help tells more");
    EXPECT_EQ(wrongWith({"--out"}), "--out needs a value");
    EXPECT_EQ(wrongWith({"--out", ""}), "--out must name a folder");
    EXPECT_EQ(wrongWith({"--what"}), "unknown argument \"--what\"; --help lists them all");
    EXPECT_EQ(wrongWith({"--out", "x", "--count", "0"}), "--count must be a number from 1 to 1000");
    EXPECT_EQ(wrongWith({"--out", "x", "--count", "2.5"}), "--count must be a whole number");
    EXPECT_EQ(wrongWith({"--out", "x", "--lean", "nan"}), "--lean must be a number from 0 to 20");
    EXPECT_EQ(wrongWith({"--out", "x", "--width", "1001"}), "--width must be even");
    EXPECT_EQ(wrongWith({"--out", "x", "--kind", "castle"}), "--kind must be one of: flat, office, street");
}

TEST(SampleSceneProgram, EveryOptionIsInTheHelp)
{
    const std::string help = helpText();
    for (const char* name :
         {"--out", "--count", "--seed", "--no-lidar", "--kind", "--width", "--lean", "--identical-rooms",
          "--mirrors", "--glass", "--closed-doors", "--moved-furniture", "--exposure-steps", "--range-fill",
          "--nadir", "--texture", "--range-noise", "--interleaved-noise"})
        EXPECT_NE(help.find(name), std::string::npos) << name;
}

TEST(SampleSceneProgram, WritesItsFilesIntoAFolderWithSpacesAndAccents)
{
    const pnotest::TemporaryFolder folder;
    const std::string out = folder.path("Maison à louer 房子");
    EXPECT_EQ(run("--count 2 --rooms 2 --width 512 --light-spacing 0.5 --pictures --out \"" + out + "\""), 0);
    for (const char* name : {"/pano-01.pno", "/pano-02.pno"}) {
        PnoFile file;
        EXPECT_EQ(file.Open((out + name).c_str()), 0) << name;
    }
    std::ifstream text(out + "/truth.json");
    const auto truth = nlohmann::json::parse(text, nullptr, false);
    ASSERT_TRUE(truth.is_object());
    EXPECT_TRUE(std::ifstream(out + "/surfaces.ply").good());
    EXPECT_TRUE(std::ifstream(out + "/floorplan.json").good());
    EXPECT_EQ(truth["panoramas"][1]["file"], "pano-02.pno");
    EXPECT_TRUE(std::ifstream(out + "/pano-02.ppm").good());
    EXPECT_TRUE(std::ifstream(out + "/pano-02.pgm").good());
}

TEST(SampleSceneProgram, EndsWithTwoForWrongUsageAndOneForAFolderThatCannotBeMade)
{
    const pnotest::TemporaryFolder folder;
    EXPECT_EQ(run("--count none 2>/dev/null"), 2);
    EXPECT_EQ(run("--help >/dev/null"), 0);
    std::ofstream(folder.path("file")) << "in the way";
    EXPECT_EQ(run("--count 1 --width 512 --light-spacing 1 --out \"" + folder.path("file/below") +
                  "\" 2>/dev/null"),
              1);
}
