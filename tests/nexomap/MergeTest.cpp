// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The merged map of a made-up hall: files, coordinates, ceiling, stations on the plan.

#include "nexomap/src/merge/CloudFile.h"
#include "nexomap/src/merge/PlanPicture.h"
#include "tests/nexomap/LibraryFixture.h"

#include <opencv2/imgcodecs.hpp>

#include <cstring>
#include <fstream>

using namespace nexomap;

namespace {

MadeUpTour hall()
{
    MadeUpTour tour;
    tour.half_width_m = 4;
    tour.half_depth_m = 3;
    tour.add(-1.5, 0.5, 0.0);
    tour.add(1.5, -0.5, 2.0);
    return tour;
}

std::uint32_t word(const Bytes& bytes, std::size_t at)
{
    std::uint32_t value;
    std::memcpy(&value, bytes.data() + at, 4);
    return value;
}

/// Decodes a cloud file as the point-cloud view does.
std::vector<Eigen::Vector3d> decode(const Bytes& b)
{
    EXPECT_GE(b.size(), 56u);
    const std::size_t n = word(b, 48);
    EXPECT_EQ(word(b, 52), 9 * n);
    EXPECT_EQ(b.size(), 56 + 9 * n);
    const double q = double(100 / word(b, 12)), r = word(b, 32), rz = word(b, 36);
    const std::uint8_t* p = b.data() + 56;
    std::vector<Eigen::Vector3d> points;
    for (std::size_t i = 0; i < n; ++i) {
        const double X = 256.0 * p[n + i] + p[i], Y = 256.0 * p[3 * n + i] + p[2 * n + i],
                     Z = 256.0 * p[5 * n + i] + p[4 * n + i];
        EXPECT_LT(X, word(b, 20) * r);
        EXPECT_LT(Y, word(b, 24) * r);
        points.push_back({(X + 0.5) / (r * q) - word(b, 0) * 0.0001,
                          (Y + 0.5) / (r * q) - word(b, 4) * 0.0001,
                          (Z + 0.5) / (rz * q) - word(b, 8) * 0.0001});
    }
    return points;
}

class Merge : public LibraryTest
{
protected:
    const std::string id = MadeUpTour::nameOf(0) + "-00000000";
    const std::string name = MadeUpTour::nameOf(0) + "_" + MadeUpTour::nameOf(1) + "_2";
};

TEST_F(Merge, PointsLieOnTheHallAndTheCeilingIsGoneIndoors)
{
    const MadeUpTour tour = hall();
    link(tour);
    for (const int indoor : {1, 0}) {
        ASSERT_EQ(NexomapMergePointCloud(indoor, 0, 1, 1, 1), NEXOMAP_OK);
        const auto points = decode(readFile(folder / (id + ".tmp")));
        ASSERT_GT(points.size(), 5000u);
        std::size_t on_surface = 0, ceiling = 0;
        for (const Eigen::Vector3d& local : points) {
            const Eigen::Vector3d p = tour.stations[0].pose * local;
            const double above = p.z() + tour.camera_height_m;
            const double off = std::min({std::abs(std::abs(p.x()) - 4), std::abs(std::abs(p.y()) - 3),
                                         std::abs(above), std::abs(above - tour.ceiling_m)});
            on_surface += off < 0.03;
            ceiling += above > tour.ceiling_m - 0.03;
        }
        EXPECT_GT(double(on_surface), 0.95 * double(points.size()));
        if (indoor) {
            EXPECT_EQ(ceiling, 0u);
        } else {
            EXPECT_GT(ceiling, 1000u);
        }
    }
}

TEST_F(Merge, OutputsFollowTheirBitsAndTheNewestPictureIsTheMapsOwn)
{
    link(hall());
    ASSERT_EQ(NexomapMergePointCloud(1, 0, 1, 0, 1), NEXOMAP_OK);
    EXPECT_TRUE(std::filesystem::exists(folder / (id + ".tmp")));
    EXPECT_TRUE(std::filesystem::exists(folder / (id + ".cld")));
    EXPECT_FALSE(std::filesystem::exists(folder / (name + "-group.pts")));
    EXPECT_FALSE(std::filesystem::exists(folder / (name + "-group.bin")));
    const auto newest = [&] {
        std::string found;
        for (const std::string& n : folder.names())
            if (n.find(".png") != std::string::npos &&
                (found.empty() || std::filesystem::last_write_time(folder / n) >
                                      std::filesystem::last_write_time(folder / found)))
                found = n;
        return found;
    };
    EXPECT_EQ(newest(), name + "-color.png");
    EXPECT_EQ(node(0).plan_name, id + ".cld");
    ASSERT_EQ(NexomapMergePointCloud(1, 3, 1, 0, 0), NEXOMAP_OK);
    EXPECT_EQ(newest(), id + ".png");
    EXPECT_EQ(node(1).plan_name, id + ".png");
    for (const char* ending : {"-group.pts", "-concise.pts", "-group.bin", "-color.png", "-gray.png"})
        EXPECT_TRUE(std::filesystem::exists(folder / (name + ending))) << ending;
}

TEST_F(Merge, TheConciseTextHoldsTheCloudsPoints)
{
    link(hall());
    ASSERT_EQ(NexomapMergePointCloud(0, 1, 1, 0, 1), NEXOMAP_OK);
    const auto points = decode(readFile(folder / (id + ".tmp")));
    std::ifstream pts(folder / (name + "-concise.pts"));
    std::size_t count = 0;
    pts >> count;
    ASSERT_EQ(count, points.size());
    for (const Eigen::Vector3d& point : points) {
        double x, y, z;
        int grey, red, green, blue;
        ASSERT_TRUE(pts >> x >> y >> z >> grey >> red >> green >> blue);
        ASSERT_LT((Eigen::Vector3d(x, y, z) - point).norm(), 2e-4);
    }
}

TEST_F(Merge, FullTextAndBinaryHoldEveryMeasurementOnTheHall)
{
    const MadeUpTour tour = hall();
    link(tour);
    ASSERT_EQ(NexomapMergePointCloud(0, 3, 1, 0, 1), NEXOMAP_OK);
    std::ifstream pts(folder / (name + "-group.pts"));
    std::size_t count = 0;
    pts >> count;
    ASSERT_GT(count, 100000u); // two panoramas of 512 x 256 pixels
    ASSERT_LE(count, 2u * 512 * 256);
    const Bytes binary = readFile(folder / (name + "-group.bin"));
    ASSERT_EQ(binary.size(), 12 + 16 * count);
    std::size_t on_surface = 0;
    for (std::size_t k = 0; k < count; ++k) {
        double x, y, z;
        int grey, red, green, blue;
        ASSERT_TRUE(pts >> x >> y >> z >> grey >> red >> green >> blue);
        float f[3];
        std::memcpy(f, binary.data() + 12 + 16 * k, 12);
        ASSERT_LT((Eigen::Vector3d(f[0], f[1], f[2]) - Eigen::Vector3d(x, y, z)).norm(), 2e-4);
        ASSERT_EQ(binary[12 + 16 * k + 12], red);
        const Eigen::Vector3d p = tour.stations[0].pose * Eigen::Vector3d(x, y, z);
        const double above = p.z() + tour.camera_height_m;
        on_surface += std::min({std::abs(std::abs(p.x()) - 4), std::abs(std::abs(p.y()) - 3), std::abs(above),
                                std::abs(above - tour.ceiling_m)}) < 0.02;
    }
    EXPECT_GT(double(on_surface), 0.95 * double(count));
}

TEST_F(Merge, StationsStandOnThePlanAtTheirPixel)
{
    const MadeUpTour tour = hall();
    link(tour);
    ASSERT_EQ(NexomapMergePointCloud(1, 0, 1, 1, 0), NEXOMAP_OK);
    const cv::Mat1b plan = cv::imread((folder / (id + ".png")).string(), cv::IMREAD_GRAYSCALE);
    ASSERT_FALSE(plan.empty());
    // From the station to the walls of the hall: black where the hall says so, within two pixels of 2 cm.
    const NodeReport n = node(0);
    const auto firstBlack = [&](int dx, int dy) {
        for (int k = 0;; ++k) {
            const int x = n.plan_x + k * dx, y = n.plan_y + k * dy;
            if (x < 0 || y < 0 || x >= plan.cols || y >= plan.rows) return -1;
            if (plan(y, x) == 0) return k;
        }
    };
    EXPECT_NEAR(firstBlack(1, 0) * 0.02, 5.5, 0.05);
    EXPECT_NEAR(firstBlack(-1, 0) * 0.02, 2.5, 0.05);
    EXPECT_NEAR(firstBlack(0, -1) * 0.02, 2.5, 0.05); // up in the picture is +y
    EXPECT_NEAR(firstBlack(0, 1) * 0.02, 3.5, 0.05);
    EXPECT_NEAR((node(1).plan_x - n.plan_x) * 0.02, 3.0, 0.03);
    EXPECT_NEAR((n.plan_y - node(1).plan_y) * 0.02, -1.0, 0.03);
}

TEST_F(Merge, WithoutLidarThereIsNothingToMerge)
{
    MadeUpTour tour = hall();
    tour.lidar = false;
    link(tour);
    const auto files = folder.names();
    EXPECT_EQ(NexomapMergePointCloud(1, 3, 1, 2, 1), NEXOMAP_CANNOT_SOLVE);
    EXPECT_EQ(folder.names(), files);
    NexomapReset();
    EXPECT_EQ(NexomapMergePointCloud(1, 3, 1, 2, 1), NEXOMAP_CANNOT_SOLVE);
}

} // namespace
