// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Disks that fill up in the middle of a merge, and lidar that is half gone.

#include "nexomap/src/merge/SurfaceMerge.h"
#include "nexomap/src/RangeReading.h"
#include "tests/nexomap/LibraryFixture.h"
#include "tests/nexomap/merge/RayScene.h"
#include "tests/support/PnoParts.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

#ifdef __linux__
#include <sys/mount.h>
#endif

using namespace nexomap;

namespace {

/// A file system of a few mebibytes in memory, gone on destruction.
class SmallDisk
{
public:
    SmallDisk(const std::string& folder, const char* size)
        : m_folder(folder)
    {
#ifdef __linux__
        mounted = mount("tmpfs", m_folder.c_str(), "tmpfs", 0, size) == 0;
#else
        (void)size;
#endif
    }
    ~SmallDisk()
    {
#ifdef __linux__
        if (mounted) umount2(m_folder.c_str(), MNT_DETACH);
#endif
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    bool mounted = false;

private:
    std::string m_folder;
};

std::map<std::string, Bytes> filesOf(const TemporaryFolder& folder)
{
    std::map<std::string, Bytes> files;
    for (const std::string& name : folder.names())
        files[name] = readFile(folder / name);
    return files;
}

class FullDisk : public LibraryTest
{};

/// A hollow ball of 3 m about the scanner: every depth tile is the same.
pnotest::Bytes ballFile(const std::string& identity, const std::function<bool(int column, int row)>& damaged)
{
    std::vector<std::uint8_t> tile;
    cv::imencode(".png", cv::Mat1w(256, 256, std::uint16_t(3000)), tile);
    pnotest::PnoOptions options;
    options.identity = identity;
    options.depthTiles = [=](int, int column, int row) {
        pnotest::Bytes bytes = tile;
        if (damaged(column, row)) bytes.resize(bytes.size() / 2);
        return bytes;
    };
    return pnotest::parts(options).bytes();
}

} // namespace

TEST_F(FullDisk, InMidMergeIsToldAndTheEarlierMapStands)
{
    const SmallDisk disk(folder.path(), "size=3m");
    if (!disk.mounted) GTEST_SKIP() << "no right to mount a small file system";
    MadeUpTour tour;
    tour.half_width_m = 4;
    tour.half_depth_m = 3;
    tour.add(-1.5, 0.5, 0.0);
    tour.add(1.5, -0.5, 2.0);
    link(tour);
    ASSERT_EQ(NexomapMergePointCloud(1, 0, 1, 0, 1), NEXOMAP_OK);
    const auto before = filesOf(folder);
    ASSERT_GE(before.size(), 4u);
    const std::vector<NodeReport> nodes_before = nodes();
    // All points as text, with cells of a centimetre: ten times what is left.
    EXPECT_EQ(NexomapMergePointCloud(1, 3, 1, 2, 0), NEXOMAP_CANNOT_WRITE);
    EXPECT_EQ(filesOf(folder), before);
    EXPECT_EQ(nodes(), nodes_before);
    // And where there is room it goes on.
    EXPECT_EQ(NexomapMergePointCloud(1, 0, 1, 0, 1), NEXOMAP_OK);
}

TEST_F(FullDisk, WhatIsLaidAsideMeetsItTooAndIsClearedAway)
{
    const SmallDisk disk(folder.path(), "size=1m");
    if (!disk.mounted) GTEST_SKIP() << "no right to mount a small file system";
    RayScene scene;
    scene.addRoom({-4, -3, 0}, {4, 3, 2.8});
    scene.stations = {{-2, 0.5, 1.5}, {2, -0.5, 1.5}};
    SurfaceMergeOptions options;
    options.memory_bytes = 1 << 16;
    try {
        const SurfaceMerge merge(scene.mergeStations(), scene.frontEnd(), folder.path(), options);
        FAIL() << merge.cloud().size() << " points";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status(), NEXOMAP_CANNOT_WRITE);
        EXPECT_NE(std::string(failure.what()).find(SpillFolder::name()), std::string::npos);
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST(DamagedLidar, AMergeTakesWhatIsReadableAndSaysWhoseIsNot)
{
    const TemporaryFolder folder("合并 é");
    std::vector<MergeStation> stations;
    const auto add = [&](const std::function<bool(int, int)>& damaged) {
        MergeStation station;
        station.name = MadeUpTour::nameOf(int(stations.size()));
        station.path = (folder / (station.name + ".pno")).string();
        writeFile(station.path, ballFile(station.name, damaged));
        stations.push_back(station);
    };
    add([](int, int) { return false; });
    add([](int column, int row) { return row == 7 && column < 16; });
    add([](int column, int) { return column % 2 == 0; });
    FrontEnd front;
    front.ranges = readRanges;
    std::string error;
    const RangePicture holed = readRanges(stations[1].path, stations[1].name, &error);
    ASSERT_FALSE(holed.empty()) << error;
    EXPECT_EQ(holed.steps(7 * 256 + 100, 31 * 256 + 100), 0); // columns run from the right
    EXPECT_EQ(holed.steps(7 * 256 + 100, 100), 3000);
    SurfaceMergeOptions options;
    options.cell_cm = 5;
    const SurfaceMerge merge(stations, front, folder.path(), options);
    ASSERT_EQ(merge.leftOut().size(), 1u);
    EXPECT_NE(merge.leftOut()[0].find(stations[2].path), std::string::npos);
    EXPECT_NE(merge.leftOut()[0].find("256 of 512 tiles"), std::string::npos);
    // The ball has 45,000 cells, and the first file holds all of it.
    EXPECT_GT(merge.cloud().size(), 40000u);
    merge.cloud().forEachBlock([&](const CloudPoint* points, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k)
            ASSERT_NEAR(worldOf(points[k], merge.cloud().grid()).norm(), 3.0, 0.06);
    });
}
