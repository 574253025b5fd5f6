// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// pnotool make: what it refuses, what it leaves behind, folders of pictures.
#include "tests/pnomaker/ToolFixture.h"

#include <csignal>

namespace {

using namespace pnotest;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(PnoTool, PartsOfTheHorizonAndOtherProjectionsAreRefused)
{
    JpegForm form;
    form.xmp = gpanoPacket("GPano", {2048, 1024, 1024, 512, 0, 256});
    expectRefused({picture("part.jpg", gradient(1024, 512), form)},
                  "part.jpg: the picture covers only 180 of");
    form.xmp = gpanoPacket("GPano", {1024, 512, 1024, 512, 0, 0}, "cylindrical");
    expectRefused({picture("cylinder.jpg", gradient(1024, 512), form)}, "cylindrical");
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

} // namespace
