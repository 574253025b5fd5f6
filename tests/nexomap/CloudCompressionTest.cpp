// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Point-cloud files: lossless there and back, nothing else taken.

#include "nexomap/include/NexomapLib.h"
#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/merge/CloudBlocks.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace nexomap;

namespace {

std::vector<CloudPoint> somePoints(std::size_t points, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<CloudPoint> all(points);
    for (CloudPoint& p : all) {
        for (auto& c : p.at)
            c = std::uint16_t(random());
        p.red = std::uint8_t(random());
        p.green = std::uint8_t(random());
        p.blue = std::uint8_t(random());
    }
    return all;
}

class CloudCompression : public ::testing::Test
{
protected:
    TemporaryFolder folder{u8"nexomap 点云"};
    Bytes someCloud(std::size_t points, unsigned seed)
    {
        const std::filesystem::path path = folder / "some";
        writeCloud(path, CloudInMemory(gridFor({-3, -4, -2}, {8, 9, 1}, 2), somePoints(points, seed)))
            .finish();
        return readFile(path);
    }

    std::string tmp = (folder / "cloud.tmp").string(), cld = (folder / "cloud.cld").string();

    void roundTrip(const Bytes& cloud)
    {
        writeFile(tmp, cloud);
        ASSERT_EQ(NexomapCompressPointCloudFile(tmp.c_str()), NEXOMAP_OK);
        std::filesystem::remove(tmp);
        ASSERT_EQ(NexomapDecompressPointCloudFile(cld.c_str()), NEXOMAP_OK);
        EXPECT_EQ(readFile(tmp), cloud);
    }
};

TEST_F(CloudCompression, AnyCloudComesBackToTheByte)
{
    for (const std::size_t n : {0, 1, 2, 1000, 70000})
        roundTrip(someCloud(n, unsigned(n)));
    Bytes odd = someCloud(50, 3); // header fields that nobody reads are kept
    for (const int k : {16, 28, 40, 47})
        odd[k] = 0xAB;
    roundTrip(odd);
}

TEST_F(CloudCompression, FilesThatAreNoCloudAreRefused)
{
    Bytes cloud = someCloud(100, 1);
    cloud.pop_back();
    writeFile(tmp, cloud);
    EXPECT_EQ(NexomapCompressPointCloudFile(tmp.c_str()), NEXOMAP_BAD_FILE);
    EXPECT_FALSE(std::filesystem::exists(cld));
    EXPECT_EQ(NexomapCompressPointCloudFile((folder / "missing.tmp").string().c_str()), NEXOMAP_BAD_FILE);
}

TEST_F(CloudCompression, EveryPrefixAndEveryChangedByteIsRefusedAndTheEarlierFileStays)
{
    const Bytes cloud = someCloud(60, 1), other = someCloud(5, 2);
    writeFile(tmp, cloud);
    ASSERT_EQ(NexomapCompressPointCloudFile(tmp.c_str()), NEXOMAP_OK);
    const Bytes whole = readFile(cld);
    writeFile(tmp, other);
    for (std::size_t n = 0; n < whole.size(); ++n) {
        writeFile(cld, Bytes(whole.begin(), whole.begin() + n));
        EXPECT_EQ(NexomapDecompressPointCloudFile(cld.c_str()), NEXOMAP_BAD_FILE) << n;
        Bytes bent = whole;
        bent[n] ^= 0x21;
        writeFile(cld, bent);
        EXPECT_EQ(NexomapDecompressPointCloudFile(cld.c_str()), NEXOMAP_BAD_FILE) << n;
    }
    EXPECT_EQ(readFile(tmp), other);
}

TEST(CloudFile, GridsDecodeToTrueCoordinatesWithinHalfAStep)
{
    for (const double size : {3.0, 40.0, 900.0, 5000.0})
        for (const int cell : {1, 2, 5}) {
            const Eigen::Vector3d low(-size / 3, -size / 2, -2), high(size, size / 2, 5);
            const CloudGrid grid = gridFor(low, high, cell);
            EXPECT_EQ(100 % grid.unit_divisor, 0u);
            EXPECT_GE(int(grid.unit_divisor), cell);
            for (const Eigen::Vector3d& p : {low, high, Eigen::Vector3d(0.1, 0.2, 0.3)}) {
                const Eigen::Vector3d at = (p + grid.originMetres()) * grid.stepsPerMetre();
                EXPECT_GE(at.minCoeff(), 0.0);
                EXPECT_LT(at.maxCoeff(), 65536.0) << size << " " << cell;
            }
            EXPECT_GE(double(grid.width), (high.x() + grid.originMetres().x()) * grid.stepsPerMetre());
        }
}

} // namespace
