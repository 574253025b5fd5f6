// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the maker refuses, and what it leaves behind when it fails.
#include "companions/pnomaker/PnoMaker.h"
#include "tests/pnomaker/Pictures.h"
#include "tests/pnomaker/Readback.h"
#include "tests/support/TestFiles.h"

#include <cmath>
#include <functional>
#include <gmock/gmock.h>

namespace {

using namespace pnotest;
using testing::HasSubstr;

std::string makeWith(const std::function<void(pnomaker::MakeOptions&)>& change, int width = 256,
                     int height = 128)
{
    const TemporaryFolder folder;
    PaintedPicture picture = gradient(width, height);
    pnomaker::MakeOptions options;
    change(options);
    const std::string error = pnomaker::make(picture, options, folder.path("made.pno"));
    if (!error.empty()) {
        EXPECT_TRUE(folderEntries(folder.path("")).empty());
    }
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return error;
}

void unchanged(pnomaker::MakeOptions&) {}

TEST(MakerRefusal, NamesPicturesOfTheWrongShape)
{
    EXPECT_THAT(makeWith(unchanged, 1000, 800),
                HasSubstr("1000 x 800; a full sphere is twice as wide as high"));
    EXPECT_THAT(makeWith(unchanged, 200, 100), HasSubstr("200 x 100; at least 256 pixels"));
    EXPECT_THAT(makeWith(unchanged, 200000, 100000), HasSubstr("at most 131072"));
    EXPECT_THAT(makeWith(unchanged, 256, 0), HasSubstr("256 x 0"));
    EXPECT_THAT(makeWith([](auto& o) { o.polar_min = 0.5; }, 1000, 500), HasSubstr("420 pixels high"));
}

TEST(MakerRefusal, NamesPolarExtentsThatAreNone)
{
    for (const double bad : {std::nan(""), -0.1, 2.0, HUGE_VAL})
        EXPECT_THAT(makeWith([=](auto& o) {
                        o.polar_min = bad;
                        o.polar_max = 2.0;
                    }),
                    HasSubstr("polar extent"))
            << bad;
    EXPECT_THAT(makeWith([](auto& o) { o.polar_max = 3.2; }), HasSubstr("polar extent"));
    EXPECT_THAT(makeWith([](auto& o) { o.polar_max = std::nan(""); }), HasSubstr("polar extent"));
}

TEST(MakerRefusal, NamesBadIds)
{
    for (const char* id : {"ABC", "ABCDEFGHIJKLM1", "ABCDEFGHIJKLMNO", "ABCDEFGHIJKL N", "ÄBCDEFGHIJKLM"})
        EXPECT_THAT(makeWith([=](auto& o) { o.id = id; }), HasSubstr("14 letters")) << id;
    EXPECT_EQ(makeWith([](auto& o) { o.id = "abcdefGHIJKLMN"; }), "");
}

TEST(MakerRefusal, NamesLevelsQualitiesAndTimesOutOfRange)
{
    EXPECT_THAT(makeWith([](auto& o) { o.level = 13; }), HasSubstr("level"));
    EXPECT_THAT(makeWith([](auto& o) { o.level = 9; }), HasSubstr("level"));
    EXPECT_THAT(makeWith([](auto& o) { o.quality = 49; }), HasSubstr("quality"));
    EXPECT_THAT(makeWith([](auto& o) { o.quality = 101; }), HasSubstr("quality"));
    EXPECT_THAT(makeWith([](auto& o) { o.month = 13; }), HasSubstr("capture time"));
    EXPECT_THAT(makeWith([](auto& o) { o.month = 0; }), HasSubstr("capture time"));
    EXPECT_THAT(makeWith([](auto& o) { o.year = 1969; }), HasSubstr("capture time"));
    EXPECT_THAT(makeWith([](auto& o) { o.second = 60; }), HasSubstr("capture time"));
}

TEST(MakerRefusal, NamesRangePicturesThatCannotBeStored)
{
    pnomaker::RangePicture range;
    range.width = 100;
    range.height = 40;
    range.values.resize(4000);
    const auto withRange = [&](auto& o) { o.range = &range; };
    EXPECT_THAT(makeWith(withRange), HasSubstr("100 x 40"));
    range.height = 50;
    EXPECT_THAT(makeWith(withRange), HasSubstr("4000 values"));
    range.values.resize(5000);
    for (const double unit : {0.0, -1.0, 2.0, std::nan("")}) {
        range.unit_m = unit;
        EXPECT_THAT(makeWith(withRange), HasSubstr("unit")) << unit;
    }
    const std::vector<pnomaker::CloudPoint> cloud;
    EXPECT_THAT(makeWith([&](auto& o) { o.points = &cloud; }), HasSubstr("points need a range picture"));
}

TEST(MakerRefusal, ASourceThatFailsHalfwayLeavesAnEarlierFileAsItWas)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("made.pno", {1, 2, 3});
    PaintedPicture picture = gradient(4096, 2048);
    picture.failAtRow = 1500;
    EXPECT_EQ(pnomaker::make(picture, {}, path), "painted rows ran out");
    EXPECT_EQ(fileBytes(path), (std::vector<std::uint8_t>{1, 2, 3}));
    EXPECT_EQ(folderEntries(folder.path("")), std::vector<std::string>{"made.pno"});
}

TEST(MakerRefusal, AFolderThatIsNotThereIsNamed)
{
    const TemporaryFolder folder;
    PaintedPicture picture = gradient(256, 128);
    EXPECT_THAT(pnomaker::make(picture, {}, folder.path("none/made.pno")), HasSubstr("none/made.pno"));
}

TEST(MakerRefusal, AFolderOfTheOutputsNameIsNotReplaced)
{
    const TemporaryFolder folder;
    folder.write("made.pno/inside", {1});
    PaintedPicture picture = gradient(256, 128);
    EXPECT_THAT(pnomaker::make(picture, {}, folder.path("made.pno")), HasSubstr("made.pno"));
    EXPECT_EQ(folderEntries(folder.path("")), std::vector<std::string>{"made.pno"});
    EXPECT_EQ(folderEntries(folder.path("made.pno")), std::vector<std::string>{"inside"});
}

} // namespace
