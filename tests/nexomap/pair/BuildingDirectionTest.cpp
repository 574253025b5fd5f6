// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Views along the walls: which way these run, and what is gained by it.
#include "nexomap/src/pair/BuildingDirection.h"
#include "nexomap/src/pair/FaceFeatures.h"
#include "nexomap/src/pair/PlaceMatching.h"
#include "tests/nexomap/pair/MadeUpRoom.h"

#include <opencv2/imgproc.hpp>

#include <gtest/gtest.h>

#include <random>

using namespace nexomap;

namespace {

/// A bare room with a grey of its own for each side and boards on the floor, seen from its middle.
cv::Mat1b bareRoom(int width, double heading)
{
    const EquirectGrid grid{2 * width, width}; // twice as fine, since a camera's pixels have no hard edges
    const Eigen::Vector3d half(2.6, 1.9, 1.4);
    const Eigen::Matrix3d world_from_pano = headingRotation(heading);
    cv::Mat1b picture(grid.height, grid.width);
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x) {
            const Eigen::Vector3d ray = world_from_pano * grid.direction(x + 0.5, y + 0.5);
            int axis = 0;
            const double reach = (half.array() / ray.array().abs()).minCoeff(&axis);
            int grey = 90 + 40 * axis + (ray[axis] > 0.0 ? 15 : 0);
            if (axis == 2 && ray.z() < 0.0 && int(std::floor(reach * ray.x() / 0.3)) % 2 == 0) grey -= 20;
            picture(y, x) = uchar(grey);
        }
    cv::resize(picture, picture, {width, width / 2}, 0, 0, cv::INTER_AREA);
    return picture;
}

double offBy_deg(double quarter, double heading)
{
    return std::abs(std::remainder(quarter + heading, 0.5 * kPi)) / kDegree;
}

/// Matches of the two panoramas' features that are within half a degree of the same point of the walls.
int rightMatches(const Features& f0, const Features& f1, const MadeUpRoom::Shot& shot_0,
                 const RigidPose& pose_0, const RigidPose& pose_1)
{
    const EquirectGrid grid{shot_0.picture.cols, shot_0.picture.rows};
    int right = 0;
    for (const DescriptorMatch& match : matchPlaces(f0, f1, 0.85)) {
        const Eigen::Vector3d bearing = f0.bearings[std::size_t(match.index_0)].cast<double>();
        const Eigen::Vector2d at = grid.pixel(bearing);
        const double range = shot_0.range_mm(std::min(int(at.y()), grid.height - 1), int(at.x())) / 1000.0;
        const Eigen::Vector3d seen = pose_1.inverse() * (pose_0 * (bearing * range));
        right += seen.normalized().dot(f1.bearings[std::size_t(match.index_1)].cast<double>()) >
                 std::cos(0.5 * kDegree);
    }
    return right;
}

} // namespace

TEST(BuildingDirection, IsFoundWhicheverWayTheCameraFaces)
{
    for (const double heading : {0.0, 0.3, -0.7, 1.2, 2.9}) {
        const auto direction = buildingDirection(bareRoom(2048, heading), {});
        ASSERT_TRUE(direction) << heading;
        EXPECT_LT(offBy_deg(*direction, heading), 0.5) << heading;
        EXPECT_GE(*direction, 0.0);
        EXPECT_LT(*direction, 0.5 * kPi);
    }
}

TEST(BuildingDirection, IsFoundInASmallPictureOfPartOfTheHeight)
{
    const PolarExtent extent{0.2, 2.8, 0.2, 2.8};
    const cv::Mat1b whole = bareRoom(1024, 0.5);
    const cv::Mat1b part =
        whole.rowRange(int(std::lround(0.2 / kPi * 512)), int(std::lround(2.8 / kPi * 512)));
    const auto direction = buildingDirection(part, extent);
    ASSERT_TRUE(direction);
    EXPECT_LT(offBy_deg(*direction, 0.5), 1.0);
}

TEST(BuildingDirection, NoneStandsOutOfNoiseOrOfNothing)
{
    cv::Mat1b noise(512, 1024);
    std::mt19937 random(5);
    for (uchar& value : noise)
        value = uchar(random() % 256);
    EXPECT_FALSE(buildingDirection(noise, {}));
    cv::GaussianBlur(noise, noise, {}, 3.0);
    noise *= 3.0;
    EXPECT_FALSE(buildingDirection(noise, {}));
    cv::Mat1b spots(512, 1024, uchar(120));
    for (int k = 0; k < 4; ++k)
        cv::circle(spots, {100 + 220 * k, 180 + 40 * k}, 4, cv::Scalar(20), cv::FILLED, cv::LINE_AA);
    EXPECT_FALSE(buildingDirection(spots, {}));
    EXPECT_FALSE(buildingDirection(cv::Mat1b(512, 1024, uchar(120)), {}));
}

TEST(FaceFeatures, WallsSeenAlongTheBuildingMatchBetterThanAcross)
{
    MadeUpRoom room;
    room.furniture.clear();
    const RigidPose pose_0 = standAt(1.5, 1.2, 1.5, 0.0), pose_1 = standAt(4.3, 2.9, 1.55, 0.6);
    const auto shot_0 = room.shoot(pose_0, 2048), shot_1 = room.shoot(pose_1, 2048);
    cv::Mat1b gray_0, gray_1;
    cv::cvtColor(shot_0.picture, gray_0, cv::COLOR_BGR2GRAY);
    cv::cvtColor(shot_1.picture, gray_1, cv::COLOR_BGR2GRAY);
    const auto count = [&](double yaw_0, double yaw_1) {
        return rightMatches(extractFeatures(gray_0, {}, yaw_0), extractFeatures(gray_1, {}, yaw_1), shot_0,
                            pose_0, pose_1);
    };
    const int along = count(0.0, -0.6), across = count(0.4, 0.1);
    std::printf("  %d right matches along the walls, %d across\n", along, across);
    EXPECT_GT(along, 1.15 * across);
    EXPECT_GT(along, 100);
}

TEST(PlaceMatching, APlaceDescribedTwiceIsNoRivalOfItself)
{
    const auto feature = [](Features* features, double azimuth, int value) {
        for (int k = 0; k < kDescriptorBytes; ++k)
            features->descriptors.push_back(std::uint8_t(k % 2 ? value : 60));
        features->bearings.push_back(directionFromAngles(azimuth, 1.4).cast<float>());
    };
    Features one, twice, rival;
    feature(&one, 0.5, 30);
    for (Features* features : {&twice, &rival}) {
        feature(features, 1.0, 31);
        feature(features, features == &twice ? 1.001 : 1.1, 32);
        feature(features, 2.0, 90);
    }
    EXPECT_TRUE(matchPlaces(one, rival, 0.4).empty());
    const auto matches = matchPlaces(one, twice, 0.4);
    ASSERT_EQ(matches.size(), 1u);
    EXPECT_EQ(matches[0].index_1, 0);
    EXPECT_EQ(matches[0].distance2, 64);
    EXPECT_EQ(matches[0].second_distance2, 64 * 3600);
    EXPECT_TRUE(matchPlaces(one, twice, 0.01).empty()); // the rival of another place counts
    EXPECT_TRUE(matchPlaces(one, {}, 0.85).empty());
}
