// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Views from above and their files.

#include "nexomap/src/merge/PictureFile.h"
#include "nexomap/src/merge/PlanPicture.h"
#include "tests/nexomap/MadeUpTour.h"
#include "tests/nexomap/mapfiles/MadeUpCloud.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <png.h>

#include <cstdio>
#include <memory>
#include <sstream>

using namespace nexomap;

namespace {

const std::vector<PlanStation> kStations{{Eigen::Vector3d(0, 0, 1.5), Eigen::Vector3d::UnitZ(), 1.5}};

TEST(TopView, ShowsWhatIsHighestAndFillsHolesOfAPixel)
{
    MadeUpCloud made(1, 0.0);
    made.add({-2, -2, 0}, {2, 2, 0}, 120, 90, 60);
    made.add({-0.5, -0.5, 0.7}, {0.5, 0.5, 0.7}, 10, 200, 30);
    const CloudInMemory whole = made.cloud();
    // Every fourth point of the floor is missing.
    std::vector<CloudPoint> some;
    whole.forEachBlock([&](const CloudPoint* points, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k)
            if (k % 4) some.push_back(points[k]);
    });
    const CloudInMemory cloud(whole.grid(), some);
    const PlanRaster raster = planRaster(cloud, kStations, 0.02);
    const cv::Mat3b view = topView(cloud, raster);
    const auto at = [&](double x, double y) {
        const Eigen::Vector2i pixel = raster.pixelOf({x, y, 0});
        return view(pixel.y(), pixel.x());
    };
    EXPECT_EQ(at(0, 0), cv::Vec3b(30, 200, 10));
    EXPECT_EQ(at(1.5, 1.5), cv::Vec3b(60, 90, 120));
    int white = 0;
    for (double x = -1.9; x < 1.9; x += 0.02)
        for (double y = -1.9; y < 1.9; y += 0.02)
            white += at(x, y) == cv::Vec3b(255, 255, 255);
    EXPECT_EQ(white, 0);
}

TEST(PictureFile, APlanHasOneBitAPixelAndSaysWhereTheWorldLies)
{
    const TemporaryFolder folder(u8"nexomap bild 图");
    PlanRaster raster;
    raster.right = {0.8, 0.6, 0};
    raster.down = {0.6, -0.8, 0};
    raster.left = -3.25;
    raster.top = 1.5;
    raster.width = 37;
    raster.height = 21;
    cv::Mat1b plan(21, 37, std::uint8_t(255));
    for (int k = 0; k < 21; ++k)
        plan(k, (7 * k) % 37) = 0;
    writePicture(folder / "p.png", plan, raster, true).finish();
    EXPECT_EQ(cv::countNonZero(cv::imread((folder / "p.png").string(), cv::IMREAD_GRAYSCALE) != plan), 0);

    std::FILE* file = std::fopen((folder / "p.png").string().c_str(), "rb");
    ASSERT_NE(file, nullptr);
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_read_info(png, info);
    EXPECT_EQ(png_get_bit_depth(png, info), 1);
    png_textp texts = nullptr;
    ASSERT_EQ(png_get_text(png, info, &texts, nullptr), 1);
    std::istringstream numbers(texts[0].text);
    double a[8];
    for (double& number : a)
        ASSERT_TRUE(numbers >> number);
    const Eigen::Vector3d world(2.0, -1.0, 0.4);
    const Eigen::Vector2i pixel = raster.pixelOf(world);
    EXPECT_EQ(int(std::floor(a[0] * world.x() + a[1] * world.y() + a[2] * world.z() + a[3])), pixel.x());
    EXPECT_EQ(int(std::floor(a[4] * world.x() + a[5] * world.y() + a[6] * world.z() + a[7])), pixel.y());
    png_destroy_read_struct(&png, &info, nullptr);
    std::fclose(file);
}

TEST(PictureFile, ColourComesBackAndAFullDiskIsAFailure)
{
    const TemporaryFolder folder;
    PlanRaster raster;
    cv::Mat3b picture(300, 200);
    cv::randu(picture, cv::Scalar::all(0), cv::Scalar::all(256));
    writePicture(folder / "c.png", picture, raster).finish();
    const cv::Mat3b back = cv::imread((folder / "c.png").string(), cv::IMREAD_COLOR);
    EXPECT_EQ(cv::norm(back, picture, cv::NORM_INF), 0.0);
    if (!std::filesystem::exists("/dev/full")) return;
    std::filesystem::create_symlink("/dev/full", folder / "d.png.part");
    EXPECT_THROW(writePicture(folder / "d.png", picture, raster).finish(), std::exception);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"c.png"});
}

} // namespace
