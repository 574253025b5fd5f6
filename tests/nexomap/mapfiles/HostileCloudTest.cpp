// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Compressed clouds: every order of points comes back, and files that lie are refused with nothing lost.

#include "nexomap/include/NexomapLib.h"
#include "nexomap/src/Failure.h"
#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/merge/CloudChunk.h"
#include "nexomap/src/merge/CloudCompression.h"
#include "tests/nexomap/MadeUpTour.h"
#include "tests/nexomap/mapfiles/MadeUpCloud.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstring>

using namespace nexomap;

namespace {

class HostileCloud : public ::testing::Test
{
protected:
    TemporaryFolder folder{u8"nexomap wölken 点云"};
    std::string tmp = (folder / "cloud.tmp").string(), cld = (folder / "cloud.cld").string();

    /// Bytes of a cloud file with the given planes.
    static Bytes fileOf(std::uint32_t points, const Bytes& planes)
    {
        Bytes file(kCloudHeaderBytes + planes.size(), 7);
        const std::uint32_t sizes[2] = {points, 9 * points};
        std::memcpy(file.data() + 48, sizes, 8);
        std::copy(planes.begin(), planes.end(), file.begin() + kCloudHeaderBytes);
        return file;
    }
    void comesBack(const Bytes& cloud)
    {
        writeFile(tmp, cloud);
        ASSERT_EQ(NexomapCompressPointCloudFile(tmp.c_str()), NEXOMAP_OK);
        std::filesystem::remove(tmp);
        ASSERT_EQ(NexomapDecompressPointCloudFile(cld.c_str()), NEXOMAP_OK);
        EXPECT_TRUE(readFile(tmp) == cloud);
    }
    /// The given points as the merge writes them, in a file.
    Bytes flat()
    {
        MadeUpCloud made(2, 0.3);
        made.add({-4, -3, 0}, {4, 3, 0});
        made.add({-4, -3, 0}, {-4, 3, 2.5});
        made.add({-4, 3, 0}, {4, 3, 2.5}, 90, 100, 110);
        writeCloud(tmp, made.cloud()).finish();
        return readFile(tmp);
    }
    static void seal(Bytes& compressed)
    {
        const auto sum = std::uint32_t(crc32(crc32(0, nullptr, 0), compressed.data(), 64));
        std::memcpy(compressed.data() + 64, &sum, 4);
    }
};

TEST_F(HostileCloud, TheMergesOrderTakesLessThanTwoBytesAPointAndComesBack)
{
    const Bytes cloud = flat();
    comesBack(cloud);
    EXPECT_LT(std::filesystem::file_size(cld) * 9, 2 * cloud.size());
}

TEST_F(HostileCloud, AnyOtherOrderComesBack)
{
    const Bytes cloud = flat();
    const std::size_t n = (cloud.size() - kCloudHeaderBytes) / 9;
    Bytes backwards(9 * n), halves(9 * n), twice(9 * n);
    for (std::size_t plane = 0; plane < 9; ++plane)
        for (std::size_t i = 0; i < n; ++i) {
            const std::uint8_t* from = cloud.data() + kCloudHeaderBytes + plane * n;
            backwards[plane * n + i] = from[n - 1 - i];
            halves[plane * n + i] = from[(i + n / 2) % n];
            twice[plane * n + i] = from[i / 2];
        }
    comesBack(fileOf(std::uint32_t(n), backwards));
    comesBack(fileOf(std::uint32_t(n), halves));
    comesBack(fileOf(std::uint32_t(n), twice));
}

TEST_F(HostileCloud, CloudsAboutTheSizeOfAChunkComeBackWhateverTheirBytes)
{
    std::mt19937 random(5);
    for (const std::size_t n :
         {CloudChunk::kMostPoints - 1, CloudChunk::kMostPoints, CloudChunk::kMostPoints + 1}) {
        Bytes planes(9 * n);
        for (std::uint8_t& byte : planes)
            byte = std::uint8_t(random());
        comesBack(fileOf(std::uint32_t(n), planes));
        comesBack(fileOf(std::uint32_t(n), Bytes(9 * n, 0)));
    }
}

TEST_F(HostileCloud, ACoderThatRefusedAChunkCodesTheNextOneAsAFreshOneDoes)
{
    std::mt19937 random(4);
    ChunkCoder used, fresh;
    for (const std::size_t n : {5000u, 3u, 20000u, 1u}) {
        CloudChunk chunk{n, Bytes(9 * n)};
        for (std::uint8_t& byte : chunk.planes)
            byte = std::uint8_t(random() % 5);
        Bytes packed, again;
        fresh.encode(chunk, &packed);
        CloudChunk back{n, {}};
        EXPECT_THROW(used.decode(Bytes(packed.begin(), packed.end() - 1), &back), Failure);
        used.encode(chunk, &again);
        EXPECT_TRUE(again == packed);
        used.decode(again, &back);
        EXPECT_TRUE(back.planes == chunk.planes);
    }
}

TEST_F(HostileCloud, TheFilesDoNotDependOnTheNumberOfThreads)
{
    std::mt19937 random(6);
    Bytes planes(9 * 5 * CloudChunk::kMostPoints);
    for (std::uint8_t& byte : planes)
        byte = std::uint8_t(random() % 3);
    const Bytes cloud = fileOf(std::uint32_t(planes.size() / 9), planes);
    writeFile(tmp, cloud);
    compressCloudFile(tmp, 1);
    const Bytes by_one = readFile(cld);
    compressCloudFile(tmp, 3);
    EXPECT_TRUE(readFile(cld) == by_one);
    for (const unsigned threads : {1u, 3u}) {
        std::filesystem::remove(tmp);
        decompressCloudFile(cld, threads);
        EXPECT_TRUE(readFile(tmp) == cloud);
    }
}

TEST_F(HostileCloud, ACloudThatAnnouncesFourBillionPointsIsRefused)
{
    Bytes cloud = flat();
    const std::uint32_t lie[2] = {0xFFFFFFFFu, 0xFFFFFFF7u}; // 9 times the count, modulo 2^32
    std::memcpy(cloud.data() + 48, lie, 8);
    writeFile(tmp, cloud);
    EXPECT_EQ(NexomapCompressPointCloudFile(tmp.c_str()), NEXOMAP_BAD_FILE);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"cloud.tmp"});
}

TEST_F(HostileCloud, ACompressedCloudThatAnnouncesMorePointsThanItHasChunksIsRefusedAndTheEarlierCloudStays)
{
    const Bytes cloud = flat();
    ASSERT_EQ(NexomapCompressPointCloudFile(tmp.c_str()), NEXOMAP_OK);
    const Bytes whole = readFile(cld);
    for (const std::uint32_t points : {0xFFFFFFFFu, 477218588u, 1000000u, 1u, 0u}) {
        Bytes lying = whole;
        const std::uint32_t lie[2] = {points, 9 * points};
        std::memcpy(lying.data() + 8 + 48, lie, 8);
        seal(lying); // a liar knows how to add up
        writeFile(cld, lying);
        EXPECT_EQ(NexomapDecompressPointCloudFile(cld.c_str()), NEXOMAP_BAD_FILE) << points;
        EXPECT_TRUE(readFile(tmp) == cloud) << points;
        EXPECT_EQ(folder.names().size(), 2u) << points;
    }
}

TEST_F(HostileCloud, CutAndBentFilesAreRefusedAndTheEarlierCloudStays)
{
    const Bytes cloud = flat();
    ASSERT_EQ(NexomapCompressPointCloudFile(tmp.c_str()), NEXOMAP_OK);
    const Bytes whole = readFile(cld);
    std::mt19937 random(3);
    for (int k = 0; k < 300; ++k) {
        Bytes bent = whole;
        if (k % 3 == 0) {
            bent.resize(random() % bent.size());
        } else {
            const std::size_t at = k % 3 == 1 ? random() % bent.size() : random() % 120;
            bent[at] = std::uint8_t(bent[at] + 1 + random() % 255);
        }
        if (k % 2 && bent.size() > 68) seal(bent);
        writeFile(cld, bent);
        const int status = NexomapDecompressPointCloudFile(cld.c_str());
        // Header fields that nobody reads may hold anything, once the sum is right again.
        if (status == NEXOMAP_OK) {
            EXPECT_TRUE(std::equal(cloud.begin() + 56, cloud.end(), readFile(tmp).begin() + 56));
            writeFile(tmp, cloud);
        } else {
            EXPECT_EQ(status, NEXOMAP_BAD_FILE);
            EXPECT_TRUE(readFile(tmp) == cloud);
        }
        EXPECT_EQ(folder.names().size(), 2u);
    }
}

TEST_F(HostileCloud, ChunksOfAnyBytesAreRefused)
{
    std::mt19937 random(9);
    ChunkCoder coder;
    for (int k = 0; k < 2000; ++k) {
        Bytes bytes(random() % 200);
        for (std::uint8_t& byte : bytes)
            byte = std::uint8_t(random());
        CloudChunk chunk{1000, {}};
        EXPECT_THROW(coder.decode(bytes, &chunk), Failure);
    }
}

TEST_F(HostileCloud, AFolderInTheTargetsPlaceIsAFailureThatLeavesNothing)
{
    flat();
    std::filesystem::create_directories(folder / "cloud.cld" / "full");
    EXPECT_EQ(NexomapCompressPointCloudFile(tmp.c_str()), NEXOMAP_CANNOT_WRITE);
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"cloud.cld", "cloud.tmp"}));
}

} // namespace
