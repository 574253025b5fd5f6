// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/pair/Sphere.h"
#include "nexomap/src/pair/FaceFeatures.h"

#include <gtest/gtest.h>

using namespace nexomap;

namespace {

/// Dark round spots on grey, each of a size that SIFT finds once, with some tails to tell them apart.
cv::Mat1b spots(const EquirectGrid& grid, const std::vector<Eigen::Vector3d>& centres, double sigma)
{
    cv::Mat1b picture(grid.height, grid.width);
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x) {
            const Eigen::Vector3d direction = grid.direction(x + 0.5, y + 0.5);
            double value = 200.0;
            for (const Eigen::Vector3d& centre : centres)
                value -= 150.0 * std::exp(-0.5 * (direction - centre).squaredNorm() / (sigma * sigma));
            picture(y, x) = cv::saturate_cast<uchar>(value);
        }
    return picture;
}

double nearest_deg(const Features& features, const Eigen::Vector3d& direction)
{
    double best = kPi;
    for (const Eigen::Vector3f& bearing : features.bearings)
        best = std::min(best, std::acos(std::min(1.0, bearing.cast<double>().dot(direction))));
    return best / kDegree;
}

} // namespace

TEST(Sphere, PixelAndDirectionAreInverseToEachOther)
{
    const EquirectGrid grid{4096, 1300, 0.2, 2.8};
    for (const double x : {0.0, 0.5, 1.0, 2047.5, 2048.0, 4095.5})
        for (const double y : {0.5, 650.0, 1299.5}) {
            const Eigen::Vector2d back = grid.pixel(grid.direction(x, y));
            EXPECT_NEAR(std::remainder(back.x() - x, 4096.0), 0.0, 1e-9) << x << " " << y;
            EXPECT_NEAR(back.y(), y, 1e-9);
            EXPECT_GE(back.x(), 0.0);
            EXPECT_LT(back.x(), 4096.0);
        }
}

TEST(Sphere, CentreColumnIsAzimuthZeroAndAzimuthFallsToTheRight)
{
    const EquirectGrid grid{4096, 2048};
    EXPECT_LT((grid.direction(2048, 1024) - Eigen::Vector3d::UnitX()).norm(), 1e-12);
    EXPECT_LT((grid.direction(1024, 1024) - Eigen::Vector3d::UnitY()).norm(), 1e-12);
    EXPECT_LT((grid.direction(3072, 0) - Eigen::Vector3d::UnitZ()).norm(), 1e-12);
}

TEST(Sphere, PolesHaveAPixel)
{
    const EquirectGrid grid{2048, 1024};
    EXPECT_NEAR(grid.pixel(Eigen::Vector3d::UnitZ()).y(), 0.0, 1e-9);
    EXPECT_NEAR(grid.pixel(-Eigen::Vector3d::UnitZ()).y(), 1024.0, 1e-9);
}

TEST(FaceFeatures, BearingsAreExactAtTheSeamTheFacesEdgesAndNearThePole)
{
    const std::vector<Eigen::Vector3d> centres = {
        directionFromAngles(kPi, 1.5),                // on the seam
        directionFromAngles(-kPi + 0.03, 1.7),        // beside it
        directionFromAngles(0.25 * kPi + 0.01, 1.45), // beside the edge of two faces
        directionFromAngles(-0.7, 0.25 * kPi),        // on the edge toward the upper face
        directionFromAngles(2.0, 4.0 * kDegree),      // at the upper pole
        directionFromAngles(0.1, 1.4),
        directionFromAngles(-1.9, 2.45)};
    const EquirectGrid grid{2048, 1024};
    const Features features = extractFeatures(spots(grid, centres, 0.8 * kDegree), {});
    for (const Eigen::Vector3d& centre : centres)
        EXPECT_LT(nearest_deg(features, centre), 0.03) << centre.transpose();
}

TEST(FaceFeatures, PartialHeightKeepsItsBearings)
{
    const std::vector<Eigen::Vector3d> centres = {directionFromAngles(1.0, 0.65),
                                                  directionFromAngles(-2.0, 2.3)};
    const EquirectGrid grid{2048, int(std::lround(2048 * (2.8 - 0.2) / (2.0 * kPi))), 0.2, 2.8};
    const Features features = extractFeatures(spots(grid, centres, 0.8 * kDegree), {0.2, 2.8, 0.2, 2.8});
    for (const Eigen::Vector3d& centre : centres)
        EXPECT_LT(nearest_deg(features, centre), 0.05);
}

TEST(FaceFeatures, NothingIsTakenUnderTheTripodOrFromFilledRows)
{
    const std::vector<Eigen::Vector3d> centres = {
        directionFromAngles(1.0, 2.7), directionFromAngles(-2.0, 0.22), directionFromAngles(0.5, 1.5)};
    const EquirectGrid grid{2048, 1024};
    const Features features = extractFeatures(spots(grid, centres, 0.8 * kDegree), {0.0, kPi, 0.2, 2.8});
    EXPECT_GT(nearest_deg(features, centres[0]), 3.0);
    EXPECT_GT(nearest_deg(features, centres[1]), 0.4);
    EXPECT_LT(nearest_deg(features, centres[2]), 0.03);
}

TEST(FaceFeatures, RootSiftHasUnitLengthAndFitsSevenBits)
{
    float sift[128];
    for (int i = 0; i < 128; ++i)
        sift[i] = float(i % 40);
    std::uint8_t bytes[128];
    rootSift(sift, bytes);
    double squares = 0.0;
    for (const std::uint8_t byte : bytes) {
        EXPECT_LE(byte, 127);
        squares += double(byte) * byte;
    }
    EXPECT_NEAR(std::sqrt(squares), 256.0, 2.0);
    const float empty[128] = {};
    rootSift(empty, bytes);
    EXPECT_EQ(bytes[5], 0);
}
