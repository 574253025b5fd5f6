// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/views/cloud/CloudFixture.h"
#include "tests/views/cloud/FailingDisk.h"
#include "views/cloud/PointThinning.h"

#include <QDir>

#include <cstdlib>
#include <new>
#include <random>

using cloud::ReadStatus;

namespace {
std::size_t largestAllocation = 0;
}

// Every block of the program that may be large comes by here.
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept
{
    largestAllocation = std::max(largestAllocation, bytes);
    return std::malloc(bytes);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
void* operator new[](std::size_t bytes)
{
    if (void* memory = operator new[](bytes, std::nothrow)) return memory;
    throw std::bad_alloc();
}
void operator delete[](void* memory) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

class PointCloudFile : public CloudFixture
{
protected:
    PointCloudFile() { bytes.points = CloudBytes::randomPoints(100, 1000, 1000, 300); }
};

TEST_F(PointCloudFile, AFileWhoseSizeIsNot56Plus9NIsRefused)
{
    const QByteArray good = bytes.file();
    ASSERT_EQ(read(good), ReadStatus::Ok);
    EXPECT_EQ(read(good + 'x'), ReadStatus::SizesDiffer);
    EXPECT_EQ(read(good.left(good.size() - 1)), ReadStatus::SizesDiffer);
    EXPECT_EQ(read(good.left(56)), ReadStatus::SizesDiffer);
}

TEST_F(PointCloudFile, ADataSizeThatIsNot9NIsRefused)
{
    const QByteArray good = bytes.file();
    EXPECT_EQ(read(withField(good, 48, 99)), ReadStatus::SizesDiffer);
    EXPECT_EQ(read(withField(good, 52, 891)), ReadStatus::SizesDiffer);
    // A data size that fits the file, but not the count.
    EXPECT_EQ(read(withField(good, 52, 901) + 'x'), ReadStatus::SizesDiffer);
}

TEST_F(PointCloudFile, ACutHeaderIsRefused)
{
    for (const int length : {0, 1, 48, 55})
        EXPECT_EQ(read(bytes.file().left(length)), ReadStatus::HeaderCutShort) << length;
}

TEST_F(PointCloudFile, WhatCannotBeOpenedIsRefused)
{
    EXPECT_EQ(cloud::readPointCloud(pathOf(QStringLiteral("missing.tmp")), &cloud), ReadStatus::CannotOpen);
    EXPECT_EQ(cloud::readPointCloud(QFileInfo(pathOf()).absolutePath(), &cloud), ReadStatus::CannotOpen);
    EXPECT_EQ(cloud::readPointCloud(QString(), &cloud), ReadStatus::CannotOpen);
}

TEST_F(PointCloudFile, ZeroPointsLoadAsAnEmptyCloud)
{
    bytes.points.clear();
    ASSERT_EQ(read(bytes.file()), ReadStatus::Ok);
    EXPECT_EQ(cloud.size(), 0u);
    EXPECT_EQ(thinnedPoints(cloud).value().size(), 0u);
}

TEST_F(PointCloudFile, AUnitDivisorOfZeroOrAbove100IsRefused)
{
    for (const quint32 divisor : {0u, 101u, 4294967295u})
        EXPECT_EQ(read(withField(bytes.file(), 12, divisor)), ReadStatus::NoResolution) << divisor;
    for (const quint32 divisor : {1u, 3u, 100u})
        EXPECT_EQ(read(withField(bytes.file(), 12, divisor)), ReadStatus::Ok) << divisor;
}

TEST_F(PointCloudFile, ARefinementOfZeroIsRefused)
{
    EXPECT_EQ(read(withField(bytes.file(), 32, 0)), ReadStatus::NoResolution);
    EXPECT_EQ(read(withField(bytes.file(), 36, 0)), ReadStatus::NoResolution);
}

TEST_F(PointCloudFile, AGridTooLargeForMemoryIsRefused)
{
    const auto grid = [&](quint32 width, quint32 height, quint32 refinement) {
        bytes.gridWidth = width;
        bytes.gridHeight = height;
        bytes.refinement = refinement;
        return read(bytes.file());
    };
    constexpr quint32 most = 4294967295u;
    EXPECT_EQ(grid(most, most, most), ReadStatus::GridTooLarge);
    EXPECT_EQ(grid(most, 0, most), ReadStatus::GridTooLarge);
    EXPECT_EQ(grid(0, most, 1), ReadStatus::Ok);
    EXPECT_EQ(grid(1u << 16, 1u << 16, 1), ReadStatus::GridTooLarge);
    EXPECT_EQ(grid(1u << 15, 1u << 15, 1), ReadStatus::Ok);
    EXPECT_EQ(grid((1u << 15) + 1, 1u << 15, 1), ReadStatus::GridTooLarge);
    // Products of 32 and of 64 bits that would wrap to few cells or none.
    EXPECT_EQ(grid(1u << 31, 1u << 31, 4), ReadStatus::GridTooLarge);
    EXPECT_EQ(grid(65536, 65536, 65536), ReadStatus::GridTooLarge);
}

TEST_F(PointCloudFile, ACountOfFourBillionAllocatesNothing)
{
    for (const quint32 count : {4294967295u, 4000000000u, 477218588u, 477218589u, 1000000000u}) {
        const QByteArray hostile = withField(withField(bytes.file(), 48, count), 52, 9 * count);
        largestAllocation = 0;
        EXPECT_EQ(read(hostile), ReadStatus::SizesDiffer) << count;
        EXPECT_LT(largestAllocation, 1u << 20) << count;
    }
    // The check itself: a file that has its bytes does allocate them.
    largestAllocation = 0;
    ASSERT_EQ(read(bytes.file()), ReadStatus::Ok);
    EXPECT_GE(largestAllocation, 900u);
}

TEST_F(PointCloudFile, ARefusedFileLeavesTheCloudAsItWas)
{
    make(bytes);
    writeBytes(pathOf(), bytes.file() + 'x');
    EXPECT_NE(cloud::readPointCloud(pathOf(), &cloud), ReadStatus::Ok);
    EXPECT_EQ(cloud.size(), 100u);
}

TEST_F(PointCloudFile, PlanesAreXYZLowByteFirstThenBlueGreenRed)
{
    bytes.points = {{0x1234, 0x5678, 0x9ABC, 1, 2, 3}, {65535, 0, 256, 255, 128, 0}};
    make(bytes);
    ASSERT_EQ(cloud.size(), 2u);
    EXPECT_EQ(cloud.x(0), 0x1234u);
    EXPECT_EQ(cloud.y(0), 0x5678u);
    EXPECT_EQ(cloud.z(0), 0x9ABCu);
    EXPECT_EQ(cloud.red(0), 1u);
    EXPECT_EQ(cloud.green(0), 2u);
    EXPECT_EQ(cloud.blue(0), 3u);
    EXPECT_EQ(cloud.x(1), 65535u);
    EXPECT_EQ(cloud.z(1), 256u);
}

TEST_F(PointCloudFile, AWrittenFileIsTheReadOneUnknownFieldsAndAll)
{
    make(bytes);
    // The names that authors give: Chinese, spaces, accents.
    const QString other = pathOf(QStringLiteral("导航 图 é.tmp"));
    ASSERT_TRUE(cloud::writePointCloud(other, cloud));
    EXPECT_EQ(readBytes(other), bytes.file());
    cloud::PointCloud again;
    EXPECT_EQ(cloud::readPointCloud(other, &again), ReadStatus::Ok);
}

TEST_F(PointCloudFile, WritingReplacesALongerFileWhole)
{
    make(bytes);
    const QString path = pathOf(QStringLiteral("long.tmp"));
    writeBytes(path, QByteArray(5000, 'x'));
    ASSERT_TRUE(cloud::writePointCloud(path, cloud));
    EXPECT_EQ(readBytes(path), bytes.file());
}

TEST_F(PointCloudFile, AFailedWriteLeavesTheFileWholeAndNothingBeside)
{
    make(bytes);
    const QByteArray before = readBytes(pathOf());
    {
        const FailingDisk disk(500);
        EXPECT_FALSE(cloud::writePointCloud(pathOf(), cloud));
    }
    EXPECT_EQ(readBytes(pathOf()), before);
    EXPECT_EQ(QFileInfo(pathOf()).dir().entryList(QDir::Files), QStringList{QStringLiteral("cloud.tmp")});
}

TEST_F(PointCloudFile, AFolderThatIsGoneFailsTheWrite)
{
    make(bytes);
    EXPECT_FALSE(cloud::writePointCloud(pathOf(QStringLiteral("none/cloud.tmp")), cloud));
}

TEST_F(PointCloudFile, ChangedAndCutBytesNeverPassTheGuards)
{
    std::mt19937 random(7);
    const QByteArray good = bytes.file();
    int accepted = 0;
    for (int round = 0; round < 2000; ++round) {
        QByteArray hostile = good;
        for (unsigned change = random() % 4 + 1; change > 0; --change)
            hostile[int(random() % 56)] = char(random() % 5 == 0 ? 255 : random());
        if (random() % 4 == 0) hostile.truncate(int(random() % unsigned(good.size())));
        if (read(hostile) != ReadStatus::Ok) continue;
        ++accepted;
        ASSERT_EQ(cloud.size(), 100u);
        // What is accepted can be worked with. Grids of a gigabyte are left to their own test.
        const auto cells = cloud::gridCells(cloud.header());
        ASSERT_TRUE(cells);
        if (*cells > (1u << 24)) continue;
        const auto thinned = cloud::thinnedPoints(cloud);
        ASSERT_TRUE(thinned);
        EXPECT_LE(thinned->size(), 100u);
    }
    EXPECT_GT(accepted, 60);
}
