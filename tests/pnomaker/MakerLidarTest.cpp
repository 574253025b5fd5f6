// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The lidar segments: depth tiles, points, unit.
#include "companions/pnomaker/PnoMaker.h"
#include "linking/pno/PnoFile.h"
#include "tests/pnomaker/Pictures.h"
#include "tests/pnomaker/Readback.h"
#include "tests/support/TestFiles.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

namespace {

using namespace pnotest;

pnomaker::RangePicture rangePicture(int width, const std::function<std::uint16_t(int x, int y)>& value)
{
    pnomaker::RangePicture range;
    range.width = width;
    range.height = width / 2;
    for (int y = 0; y < range.height; ++y)
        for (int x = 0; x < width; ++x)
            range.values.push_back(value(x, y));
    return range;
}

struct MadeLidar
{
    explicit MadeLidar(const pnomaker::MakeOptions& options, PaintedPicture picture = gradient(1024, 512))
        : file(std::make_unique<PnoFile>())
    {
        EXPECT_EQ(pnomaker::make(picture, options, folder.path("made.pno")), "");
        EXPECT_EQ(file->Open(folder.path("made.pno").c_str()), pno::Ok);
        EXPECT_TRUE(file->lidar());
    }

    std::vector<pnomaker::CloudPoint> points()
    {
        std::uint32_t size = 0;
        const PnoBytes bytes = file->ReadPoints(&size);
        EXPECT_GE(size, 1024u);
        std::vector<pnomaker::CloudPoint> result(file->pointValues()[2]);
        EXPECT_GE(size, result.size() * 16);
        for (std::size_t i = 0; i < result.size(); ++i) {
            std::memcpy(&result[i].x, bytes.get() + 16 * i, 12);
            result[i].red = bytes[16 * i + 12];
            result[i].green = bytes[16 * i + 13];
            result[i].blue = bytes[16 * i + 14];
            EXPECT_EQ(bytes[16 * i + 15], 255);
        }
        return result;
    }

    TemporaryFolder folder;
    std::unique_ptr<PnoFile> file;
};

TEST(MakerLidar, ARangePictureOfFullSizeComesBackUnchanged)
{
    const auto value = [](int x, int y) { return static_cast<std::uint16_t>(x * 7 + y * 13); };
    const pnomaker::RangePicture range = rangePicture(8192, value);
    pnomaker::MakeOptions options;
    options.range = &range;
    const MadeLidar made(options);
    for (const int x : {0, 1, 255, 256, 4000, 8190, 8191})
        for (const int y : {0, 255, 256, 2048, 4095})
            EXPECT_EQ(rangeValue(*made.file, x, y), value(x, y)) << x << ", " << y;
}

TEST(MakerLidar, ASmallRangePictureIsMagnifiedByTheNearestValue)
{
    const auto value = [](int x, int y) { return static_cast<std::uint16_t>(100 * y + x); };
    const pnomaker::RangePicture range = rangePicture(200, value);
    pnomaker::MakeOptions options;
    options.range = &range;
    const MadeLidar made(options);
    for (const int x : {0, 20, 21, 4095, 4096, 8191})
        for (const int y : {0, 41, 2047, 4095})
            EXPECT_EQ(rangeValue(*made.file, x, y), value(static_cast<int>((x + 0.5) * 200 / 8192),
                                                          static_cast<int>((y + 0.5) * 100 / 4096)))
                << x << ", " << y;
}

TEST(MakerLidar, TheExtraBlockNamesTheEncodingAndTheUnitInMicrometres)
{
    pnomaker::RangePicture range = rangePicture(64, [](int, int) { return std::uint16_t(2000); });
    range.unit_m = 0.0025;
    pnomaker::MakeOptions options;
    options.range = &range;
    const MadeLidar made(options);
    std::uint32_t size = 0;
    const PnoBytes extra = made.file->ReadExtra(&size);
    ASSERT_EQ(size, 8u);
    EXPECT_EQ(std::memcmp(extra.get(), "RNG1\xC4\x09\x00\x00", 8), 0);
}

TEST(MakerLidar, PointsAreTakenFromRangeAndPictureWhereNoneAreGiven)
{
    // A return only in the half around azimuth 0; the picture is red left of azimuth 0 and green right of it.
    const pnomaker::RangePicture range =
        rangePicture(1024, [](int x, int) { return std::uint16_t(x >= 256 && x < 768 ? 3000 : 0); });
    pnomaker::MakeOptions options;
    options.range = &range;
    MadeLidar made(options, PaintedPicture(1024, 512, [](int x, int) -> Rgb {
                       return x < 512 ? Rgb{220, 10, 10} : Rgb{10, 220, 10};
                   }));
    const auto points = made.points();
    EXPECT_GT(points.size(), 60000u);
    EXPECT_LE(points.size(), 65536u);
    int above = 0;
    for (const pnomaker::CloudPoint& point : points) {
        ASSERT_NEAR(std::sqrt(point.x * point.x + point.y * point.y + point.z * point.z), 3.0, 1e-4);
        ASSERT_GE(point.x, -0.02);
        above += point.z > 0;
        if (point.y > 0.05) { // left of azimuth 0
            ASSERT_GT(point.red, 150);
        }
        if (point.y < -0.05) {
            ASSERT_GT(point.green, 150);
        }
    }
    EXPECT_NEAR(above, static_cast<double>(points.size()) / 2, 500);
}

TEST(MakerLidar, GivenPointsAreThinnedEvenlyAndKeepTheirColours)
{
    const pnomaker::RangePicture range = rangePicture(64, [](int, int) { return std::uint16_t(1); });
    std::vector<pnomaker::CloudPoint> cloud;
    for (int i = 0; i < 200000; ++i)
        cloud.push_back({static_cast<float>(i), -1.5F, 2.5F, std::uint8_t(i), 7, 9});
    cloud[5].x = std::nanf("");
    pnomaker::MakeOptions options;
    options.range = &range;
    options.points = &cloud;
    options.plan_x = 17;
    options.plan_y = -3;
    MadeLidar made(options);
    const auto points = made.points();
    ASSERT_EQ(points.size(), 65536u);
    for (std::size_t i = 1; i < points.size(); ++i) {
        const float gap = points[i].x - points[i - 1].x;
        ASSERT_TRUE(gap >= 3 && gap <= 5) << gap;
    }
    EXPECT_EQ(points[100].red, std::uint8_t(static_cast<int>(points[100].x)));
    EXPECT_EQ(made.file->pointValues()[0], 17u);
    EXPECT_EQ(static_cast<std::int32_t>(made.file->pointValues()[1]), -3);
    EXPECT_EQ(made.file->pointValues()[3], pno::kPointFormat);
}

TEST(MakerLidar, AFewPointsArePaddedToTheSmallestPointBlock)
{
    const pnomaker::RangePicture range = rangePicture(64, [](int, int) { return std::uint16_t(0); });
    const std::vector<pnomaker::CloudPoint> cloud = {{1, 2, 3, 4, 5, 6}};
    pnomaker::MakeOptions options;
    options.range = &range;
    options.points = &cloud;
    MadeLidar made(options);
    EXPECT_EQ(made.points().size(), 1u);
    std::uint32_t size = 0;
    const PnoBytes bytes = made.file->ReadPoints(&size);
    EXPECT_EQ(size, 1024u);
    EXPECT_EQ(bytes[16], 0);
}

TEST(MakerLidar, ARangePictureWithoutAnyReturnStillMakesALidarPanorama)
{
    const pnomaker::RangePicture range = rangePicture(64, [](int, int) { return std::uint16_t(0); });
    pnomaker::MakeOptions options;
    options.range = &range;
    MadeLidar made(options);
    EXPECT_TRUE(made.points().empty());
}

} // namespace
