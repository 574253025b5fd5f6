// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/pair/RangeReduction.h"
#include "nexomap/src/pair/Sphere.h"
#include "tests/nexomap/pair/RoomFile.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

using namespace nexomap;

namespace {

MadeUpRoom::Shot roomShot()
{
    return MadeUpRoom().shoot(standAt(1.5, 2.5, 1.5, 0.4), 2048);
}

} // namespace

TEST(PanoramaLoader, ReadsPictureRangesAndIdentityFromAFileWithAnyName)
{
    const pnotest::TemporaryFolder folder;
    const MadeUpRoom::Shot shot = roomShot();
    const std::string path = folder.write("全景 é/pano 1.pno", pnotest::panorama(roomFile(shot, true)));
    std::string error;
    const auto panorama = loadPanorama(path, &error);
    ASSERT_TRUE(panorama) << error;
    EXPECT_EQ(panorama->id, "ABCDEFGHIJKLMN");
    EXPECT_EQ(panorama->path, path);
    EXPECT_TRUE(panorama->metric());
    EXPECT_GT(panorama->features.size(), 1000u);
    EXPECT_EQ(panorama->features.descriptors.size(), panorama->features.size() * 128);
    EXPECT_EQ(panorama->preview.size(), cv::Size(1024, 512));
    EXPECT_NEAR(panorama->camera_height_m, 1.5, 0.03);
    const EquirectGrid grid{2048, 1024};
    for (const auto& [x, y] : {std::pair{10, 500}, {1000, 300}, {2040, 800}})
        EXPECT_NEAR(panorama->range.at(grid.direction(x + 0.5, y + 0.5).cast<float>()),
                    shot.range_mm(y, x) * 0.001, 1e-4);
}

TEST(PanoramaLoader, LidarOfAForeignEncodingLeavesThePictureAlone)
{
    const pnotest::TemporaryFolder folder;
    auto options = roomFile(roomShot(), true);
    options.extra = {'X', 'Y', 'Z', '9', 1, 2, 3, 4, 5, 6};
    std::string error;
    const auto panorama = loadPanorama(folder.write("a.pno", pnotest::panorama(options)), &error);
    ASSERT_TRUE(panorama) << error;
    EXPECT_FALSE(panorama->metric());
    EXPECT_GT(panorama->features.size(), 1000u);
}

TEST(PanoramaLoader, DamagedRangeTilesAreHoles)
{
    const pnotest::TemporaryFolder folder;
    const MadeUpRoom::Shot shot = roomShot();
    auto options = roomFile(shot, true);
    const auto whole = options.depthTiles;
    options.depthTiles = [whole](int level, int column, int row) {
        pnotest::Bytes bytes = whole(level, column, row);
        if (row == 8 && column % 2 == 0) bytes.resize(bytes.size() / 2);
        if (row == 9 && column % 2 == 0) std::fill(bytes.begin(), bytes.end(), std::uint8_t(0));
        if (row == 10 && column == 0) bytes = encoded(cv::Mat1b(256, 256, uchar(7)), ".png"); // wrong depth
        return bytes;
    };
    std::string error;
    const auto panorama = loadPanorama(folder.write("a.pno", pnotest::panorama(options)), &error);
    ASSERT_TRUE(panorama) << error;
    EXPECT_TRUE(panorama->metric());
    EXPECT_EQ(panorama->range.range_m(9 * 64 + 5, 31 * 64 + 5), 0.f);
    EXPECT_EQ(panorama->range.range_m(10 * 64 + 5, 31 * 64 + 5), 0.f);
    EXPECT_NEAR(panorama->range.range_m(3 * 64 + 5, 5), shot.range_mm(3 * 64 + 5, 5) * 0.001f, 1e-4);
}

TEST(PanoramaLoader, AFileThatIsNoneIsRefusedWithOneLine)
{
    const pnotest::TemporaryFolder folder;
    std::string error;
    EXPECT_FALSE(loadPanorama(folder.path("missing.pno"), &error));
    EXPECT_NE(error.find("missing.pno"), std::string::npos);
    EXPECT_EQ(error.find('\n'), std::string::npos);
    error.clear();
    EXPECT_FALSE(loadPanorama(folder.write("b.pno", pnotest::Bytes(5000, 0xAB)), &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(loadPanorama(folder.path("missing.pno"), nullptr));
    // Whole in structure, but not one tile is a picture.
    EXPECT_FALSE(loadPanorama(folder.write("c.pno", pnotest::panorama()), &error));
    EXPECT_NE(error.find("tiles"), std::string::npos);
}

TEST(RangeReduction, MedianOfTheValidSamplesAndEdgesWhereTheyJump)
{
    cv::Mat1w raw(4, 12, ushort(0));
    raw.colRange(0, 2).setTo(1000); // half filled
    raw.colRange(4, 7).setTo(2000); // two surfaces
    raw.colRange(7, 8).setTo(3000);
    cv::Mat1f range(1, 3);
    cv::Mat1b edge(1, 3);
    reduceRangeCells(raw, 0.001f, 4, range, edge);
    EXPECT_FLOAT_EQ(range(0, 0), 1.f);
    EXPECT_EQ(edge(0, 0), 0);
    EXPECT_FLOAT_EQ(range(0, 1), 2.f);
    EXPECT_EQ(edge(0, 1), 255);
    EXPECT_FLOAT_EQ(range(0, 2), 0.f);
}

TEST(RangeReduction, SurfaceRangeIsExactBetweenCellsOfASlantedPlane)
{
    RangeMap map{cv::Mat1f(kRangeHeight, kRangeWidth), cv::Mat1b(kRangeHeight, kRangeWidth, uchar(0)), 0.f,
                 nullptr};
    const EquirectGrid grid{kRangeWidth, kRangeHeight};
    const Eigen::Vector3d normal(0.8, 0.6, 0.0);
    const auto plane = [&](const Eigen::Vector3d& direction) {
        const double cosine = normal.dot(direction);
        return cosine > 0.1 ? 3.0 / cosine : 0.0;
    };
    for (int y = 0; y < kRangeHeight; ++y)
        for (int x = 0; x < kRangeWidth; ++x)
            map.range_m(y, x) = float(plane(grid.direction(x + 0.5, y + 0.5)));
    for (const double azimuth : {-0.3, 0.1, 0.6, 1.5})
        for (const double polar : {1.2, 1.57, 1.9}) {
            const Eigen::Vector3d direction = directionFromAngles(azimuth, polar);
            EXPECT_NEAR(surfaceRange(map, direction), plane(direction), 0.003 * plane(direction));
        }
    EXPECT_EQ(surfaceRange(map, -normal), 0.f);
    EXPECT_EQ(map.at(Eigen::Vector3f(std::nanf(""), 0.f, 1.f)), 0.f);
}
