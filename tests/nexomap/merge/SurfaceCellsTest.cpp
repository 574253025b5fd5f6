// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Cells of a merged cloud: their order, their means, layers drawn together, and parts that fit at their
// seams.

#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/merge/LayerDrawing.h"
#include "nexomap/src/merge/MortonKey.h"
#include "nexomap/src/merge/SurfelBuckets.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>

using namespace nexomap;

namespace {

Surfel facing(double x, double y, double z, int normal_z, float weight = 1.f, std::uint8_t grey = 100)
{
    return {float(x), float(y), float(z),          0, 0, std::int8_t(normal_z), weightCode(weight), grey,
            grey,     grey,     weightCode(weight)};
}

/// A level square of 30 x 30 cells.
void addLayer(std::vector<Surfel>& to, double z, int normal_z, float weight)
{
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 30; ++x)
            to.push_back(facing(0.005 + 0.01 * x, 0.005 + 0.01 * y, z, normal_z, weight));
}

CloudGrid gridOf(double side)
{
    return gridFor(Eigen::Vector3d::Constant(-side), Eigen::Vector3d::Constant(side), 1);
}

std::set<int> layersOf(const std::vector<SurfaceCell>& cells)
{
    std::set<int> layers;
    for (const SurfaceCell& cell : cells) {
        const int x = cellOfMorton(cell.key)[0] % 100, y = cellOfMorton(cell.key)[1] % 100;
        if (x > 5 && x < 25 && y > 5 && y < 25) layers.insert(cellOfMorton(cell.key)[2]);
    }
    return layers;
}

} // namespace

TEST(MortonKey, KeysComeBackAsTheirCells)
{
    std::mt19937 random(1);
    for (int k = 0; k < 1000; ++k) {
        const std::array<std::uint16_t, 3> cell{std::uint16_t(random()), std::uint16_t(random()),
                                                std::uint16_t(random())};
        EXPECT_EQ(cellOfMorton(mortonKey(cell[0], cell[1], cell[2])), cell);
    }
}

TEST(SurfaceCells, SamplesOfACellBecomeOnePointByTheirWeights)
{
    const auto cells = cellsOf({facing(0.001, 0.001, 0.002, 127, 1.f, 20), facing(0.5, 0.5, 0.5, 127),
                                facing(0.005, 0.001, 0.002, 127, 4.f, 120)},
                               gridOf(1.0));
    ASSERT_EQ(cells.size(), 2u);
    EXPECT_LT(cells[0].key, cells[1].key);
    EXPECT_NEAR(double(cells[0].point.x()), 0.0042, 1e-5);
    EXPECT_NEAR(double(cells[0].colour.x()), 100.0, 0.5);
}

TEST(SurfaceCells, PointsOutsideTheGridAreLeftOutAndNeverWrapped)
{
    const CloudGrid grid = gridOf(1.0);
    EXPECT_TRUE(cellsOf({facing(700.0, 0, 0, 127), facing(-1.2, 0, 0, 127), facing(0, 0, 1e9, 127),
                         facing(0, std::nan(""), 0, 127)},
                        grid)
                    .empty());
}

TEST(SurfaceCells, TwoLayersOfOneWallBecomeOneBetweenThem)
{
    std::vector<Surfel> surfels;
    addLayer(surfels, 0.105, 127, 3.f);
    addLayer(surfels, 0.127, 127, 1.f);
    const CloudGrid grid = gridOf(1.0);
    std::vector<SurfaceCell> cells = cellsOf(surfels, grid);
    EXPECT_EQ(layersOf(cells).size(), 2u);
    drawTogether(cells, grid, 3);
    EXPECT_EQ(layersOf(cells), std::set<int>{111}); // at 0.1105: three quarters of the weight stood at 0.105
}

TEST(SurfaceCells, TheTwoFacesOfADoorLeafStayApart)
{
    std::vector<Surfel> surfels;
    addLayer(surfels, 0.105, -127, 1.f);
    addLayer(surfels, 0.125, 127, 1.f);
    const CloudGrid grid = gridOf(1.0);
    std::vector<SurfaceCell> cells = cellsOf(surfels, grid);
    drawTogether(cells, grid, 3);
    EXPECT_EQ(layersOf(cells), (std::set<int>{110, 112}));
}

TEST(SurfelBuckets, ManyPartsOnDiskGiveThePointsOfOnePartInMemory)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(-1.9, 1.9), noise(-0.02, 0.02);
    std::vector<Surfel> surfels;
    SurfaceVolume volume;
    for (int k = 0; k < 60000; ++k) {
        surfels.push_back(facing(place(random), place(random), noise(random), 127, float(1 + k % 5),
                                 std::uint8_t(k % 251)));
        volume.add(surfels.back().point(), 1e-4f);
    }
    const CloudGrid grid = gridOf(2.0);
    const TemporaryFolder folder;
    const auto points = [&](std::size_t most, std::size_t memory, int* parts) {
        SpillFolder spill(folder.path(), memory);
        SurfelBuckets buckets(spill, grid, volume, 0.01, most);
        *parts = buckets.count();
        for (std::size_t from = 0; from < surfels.size(); from += 5000)
            buckets.add(
                {surfels.begin() + std::ptrdiff_t(from), surfels.begin() + std::ptrdiff_t(from + 5000)});
        EXPECT_EQ(buckets.owned(), surfels.size());
        EXPECT_LE(spill.inMemory(), memory);
        std::vector<CloudPoint> all;
        std::size_t owned = 0;
        for (int k = 0; k < buckets.count(); ++k) {
            owned += buckets.readOwned(k).size();
            std::vector<SurfaceCell> cells = cellsOf(buckets.read(k), grid);
            drawTogether(cells, grid, 3);
            const auto part = pointsOf(cells, buckets.rangeOf(k));
            all.insert(all.end(), part.begin(), part.end());
        }
        EXPECT_EQ(owned, surfels.size());
        return all;
    };
    int one = 0, many = 0;
    const auto whole = points(100000000, 100000000, &one), pieces = points(20000, 100000, &many);
    EXPECT_EQ(one, 1);
    EXPECT_GT(many, 5);
    ASSERT_EQ(whole.size(), pieces.size());
    for (std::size_t k = 0; k < whole.size(); ++k) {
        ASSERT_EQ(whole[k].at, pieces[k].at) << k;
        ASSERT_EQ(whole[k].red, pieces[k].red) << k;
    }
    EXPECT_TRUE(folder.names().empty()); // nothing laid aside stays
}

TEST(SpillFolder, WhatAKilledMergeLeftIsRemovedByTheNext)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / SpillFolder::name());
    writeFile(folder / SpillFolder::name() / "7", Bytes(100));
    {
        SpillFolder spill(folder.path(), 1000);
        EXPECT_TRUE(folder.names().empty());
        Spill<int> numbers(spill);
        const int some[] = {1, 2, 3};
        numbers.append(some, 3);
        numbers.flush();
        EXPECT_EQ(folder.names().size(), 1u);
        numbers.append(some, 2);
        std::vector<int> back;
        numbers.forEachBlock([&](const int* n, std::size_t count) { back.insert(back.end(), n, n + count); });
        EXPECT_EQ(back, (std::vector<int>{1, 2, 3, 1, 2}));
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST(SpillFolder, AFolderThatCannotBeWrittenIsAFailureAndNoCrash)
{
    SpillFolder spill("/no such folder", 10);
    Spill<int> numbers(spill);
    const int one = 1;
    numbers.append(&one, 1);
    try {
        numbers.flush();
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status(), NEXOMAP_CANNOT_WRITE);
    }
}
