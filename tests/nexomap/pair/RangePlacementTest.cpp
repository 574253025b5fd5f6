// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/pair/RangePlacement.h"

#include "nexomap/src/pair/PanoramaBuilder.h"
#include "nexomap/src/pair/RangeReduction.h"
#include "nexomap/src/pair/Sphere.h"

#include <opencv2/imgproc.hpp>

#include <gtest/gtest.h>

using namespace nexomap;

namespace {

/// A wall at 4 m with things at 2 m before it, which are darker or lighter, in a picture of 1024 pixels.
struct Wall
{
    cv::Mat3b picture = cv::Mat3b(512, 1024, cv::Vec3b(150, 150, 150));
    cv::Mat1w range_mm = cv::Mat1w(1024, 2048, ushort(4000));

    Wall()
    {
        cv::RNG random(7);
        for (int k = 0; k < 14; ++k) {
            const cv::Rect box(random.uniform(0, 940), random.uniform(80, 250), random.uniform(20, 80), 120);
            picture(box).setTo(cv::Vec3b::all(uchar(random.uniform(0, 2) ? 60 : 230)));
            range_mm(cv::Rect(2 * box.x, 2 * box.y, 2 * box.width, 2 * box.height)).setTo(2000);
        }
        cv::Mat3b noise(picture.size());
        random.fill(noise, cv::RNG::UNIFORM, 0, 12);
        picture += noise;
    }
    /// @param cells  of the range picture's 2,048, to the right
    double turnedBy_deg(int cells) const
    {
        return rangeTurnedBy(picture, rangeMapFromPicture(turned(cells), 0.001f)) / kDegree;
    }
    cv::Mat1w turned(int cells) const
    {
        cv::Mat1w result(range_mm.size());
        for (int x = 0; x < 2048; ++x)
            range_mm.col(x).copyTo(result.col((x + cells + 2048) % 2048));
        return result;
    }
};

} // namespace

TEST(RangePlacement, ARangePictureInItsPlaceIsLeftThere)
{
    EXPECT_EQ(Wall().turnedBy_deg(0), 0.0);
    EXPECT_EQ(Wall().turnedBy_deg(1), 0.0) << "a column of 2,048";
}

TEST(RangePlacement, ATurnByHalfATileOrMoreIsTold)
{
    EXPECT_NEAR(Wall().turnedBy_deg(32), 5.6, 0.4);
    EXPECT_NEAR(Wall().turnedBy_deg(-32), -5.6, 0.4);
    EXPECT_NEAR(Wall().turnedBy_deg(512), 90.0, 0.4);
}

TEST(RangePlacement, WithoutJumpsOrEdgesNothingIsTold)
{
    Wall wall;
    wall.range_mm.setTo(3000);
    EXPECT_EQ(wall.turnedBy_deg(100), 0.0);
    EXPECT_EQ(
        rangeTurnedBy(cv::Mat3b(512, 1024, cv::Vec3b(9, 9, 9)), rangeMapFromPicture(Wall().range_mm, 0.001f)),
        0.0);
    EXPECT_EQ(rangeTurnedBy(wall.picture, RangeMap()), 0.0);
}

TEST(RangePlacement, ATurnedRangePictureIsNotUsedAndTheReasonIsKept)
{
    const Wall wall;
    std::string error;
    const auto panorama = buildPanorama("TURNED", wall.picture, PolarExtent(),
                                        rangeMapFromPicture(wall.turned(32), 0.001f), &error);
    ASSERT_TRUE(panorama) << error;
    EXPECT_FALSE(panorama->metric());
    EXPECT_EQ(panorama->remark, "lidar not used: it is turned by 5.6 degrees against the picture");
}
