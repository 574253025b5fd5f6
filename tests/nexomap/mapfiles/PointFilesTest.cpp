// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// PTS text and binary points, against what the C library prints.

#include "nexomap/src/merge/PointFiles.h"
#include "nexomap/src/Failure.h"
#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/merge/PtsText.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <sstream>

using namespace nexomap;

namespace {

/// Points in blocks of some length, and a count that need not be true.
class SomeSurface : public SurfaceBlocks
{
public:
    SomeSurface(std::size_t points, std::size_t announced)
        : m_points(points)
        , m_announced(announced)
    {
        for (std::size_t k = 0; k < points; ++k)
            m_points[k] = {float(k) * 0.37f - 100.f, -float(k) * 0.0001f, 1234.5678f,
                           std::uint8_t(k),          std::uint8_t(3 * k), std::uint8_t(7 * k)};
    }
    std::uint64_t size() const override { return m_announced; }
    void forEachBlock(const Take& take) const override
    {
        for (std::size_t from = 0; from < m_points.size(); from += 1000)
            take(m_points.data() + from, std::min<std::size_t>(1000, m_points.size() - from));
    }
    std::vector<SurfacePoint> m_points;

private:
    std::size_t m_announced;
};

std::string textOf(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

TEST(PtsText, NumbersAreThoseThatPrintfWrites)
{
    const PtsText text;
    std::mt19937 random(1);
    char ours[PtsText::kMostBytes], theirs[64];
    for (int k = 0; k < 20000; ++k) {
        // Halves of the last digit are left out: there printf rounds the binary number, we the decimal one.
        const double metres = (double(random() % 200000001) - 1e8 + 0.3) / 10000.0 / (k % 3 ? 1.0 : 1000.0);
        const double tail = std::abs(metres) * 1e4 - std::floor(std::abs(metres) * 1e4);
        if (std::abs(tail - 0.5) < 1e-3) continue;
        *text.putMetres(ours, metres) = 0;
        std::snprintf(theirs, sizeof theirs, "%.4f ", metres);
        if (std::strcmp(theirs, "-0.0000 ") == 0) std::strcpy(theirs, "0.0000 ");
        ASSERT_STREQ(ours, theirs) << metres;
    }
    for (int value = 0; value < 256; ++value) {
        *text.putColour(ours, std::uint8_t(value), 0, 255) = 0;
        std::snprintf(theirs, sizeof theirs, "%d %d 0 255\n", (299 * value + 114 * 255) / 1000, value);
        ASSERT_STREQ(ours, theirs);
    }
}

TEST(PtsText, WhatIsNoNumberIsWrittenAsZero)
{
    const PtsText text;
    char to[PtsText::kMostBytes];
    for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300}) {
        *text.putMetres(to, bad) = 0;
        EXPECT_STREQ(to, "0.0000 ");
    }
}

TEST(PointFiles, ACountLineThenALinePerPointWithoutCarriageReturns)
{
    const TemporaryFolder folder(u8"nexomap pts é点");
    const SomeSurface surface(2500, 2500);
    writePts(folder / "a.pts", surface).finish();
    std::string expected = "2500\n";
    char line[128];
    for (const SurfacePoint& p : surface.m_points) {
        std::snprintf(line, sizeof line, "%.4f %.4f %.4f %d %d %d %d\n", double(p.x),
                      p.y == 0.f ? 0.0 : double(p.y), double(p.z),
                      (299 * p.red + 587 * p.green + 114 * p.blue) / 1000, p.red, p.green, p.blue);
        expected += line;
    }
    EXPECT_EQ(textOf(readFile(folder / "a.pts")), expected);
}

TEST(PointFiles, CellsOfAnyGridAreWrittenAtTheirMiddles)
{
    const TemporaryFolder folder;
    std::mt19937 random(2);
    for (const std::uint32_t refinement : {1u, 2u, 3u, 7u})
        for (const std::uint32_t divisor : {1u, 2u, 5u, 10u, 100u}) {
            CloudGrid grid;
            grid.origin = {123457, 0, 41234};
            grid.unit_divisor = divisor;
            grid.refinement = refinement;
            grid.refinement_z = 8 - refinement;
            std::vector<CloudPoint> points(200);
            for (CloudPoint& point : points)
                for (std::uint16_t& number : point.at)
                    number = std::uint16_t(random());
            writePts(folder / "a.pts", CloudInMemory(grid, points)).finish();
            std::istringstream lines(textOf(readFile(folder / "a.pts")));
            std::size_t count = 0;
            ASSERT_TRUE(lines >> count);
            ASSERT_EQ(count, points.size());
            for (const CloudPoint& point : points) {
                Eigen::Vector3d at;
                int colours[4];
                ASSERT_TRUE(lines >> at.x() >> at.y() >> at.z() >> colours[0] >> colours[1] >> colours[2] >>
                            colours[3]);
                EXPECT_LE((at - worldOf(point, grid)).cwiseAbs().maxCoeff(), 0.5001e-4);
            }
        }
}

TEST(PointFiles, BinaryPointsAreSixteenBytesEach)
{
    const TemporaryFolder folder;
    const SomeSurface surface(1001, 1001);
    writePointBinary(folder / "a.bin", surface).finish();
    const Bytes bytes = readFile(folder / "a.bin");
    ASSERT_EQ(bytes.size(), 12u + 16u * 1001u);
    EXPECT_EQ(textOf(Bytes(bytes.begin(), bytes.begin() + 4)), "NXB1");
    EXPECT_EQ(bytes[4] | bytes[5] << 8, 1001);
    for (std::size_t k = 0; k < 1001; ++k) {
        float at[3];
        std::memcpy(at, bytes.data() + 12 + 16 * k, 12);
        EXPECT_EQ(at[0], surface.m_points[k].x);
        EXPECT_EQ(at[2], surface.m_points[k].z);
        EXPECT_EQ(bytes[12 + 16 * k + 12], surface.m_points[k].red);
        EXPECT_EQ(bytes[12 + 16 * k + 15], 255);
    }
}

TEST(PointFiles, ACountThatIsNotKeptFailsAndLeavesNoFile)
{
    const TemporaryFolder folder;
    for (const std::size_t announced : {0, 99, 101})
        EXPECT_THROW(writePts(folder / "a.pts", SomeSurface(100, announced)).finish(), Failure);
    EXPECT_TRUE(folder.names().empty());
}

TEST(PointFiles, AFullDiskIsAFailureThatLeavesNothing)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no full disk at hand";
    const TemporaryFolder folder;
    // Where the file would grow there is a way to the full disk.
    std::filesystem::create_symlink("/dev/full", folder / "a.pts.part");
    try {
        writePts(folder / "a.pts", SomeSurface(5000, 5000)).finish();
        FAIL() << "written to a full disk";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status(), NEXOMAP_CANNOT_WRITE);
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST(PointFiles, FilesThatAreNotFinishedVanish)
{
    const TemporaryFolder folder;
    {
        const PendingFile file = writePts(folder / "a.pts", SomeSurface(10, 10));
        EXPECT_EQ(folder.names(), std::vector<std::string>{"a.pts.part"});
    }
    EXPECT_TRUE(folder.names().empty());
    EXPECT_THROW(writePts(folder / "none" / "a.pts", SomeSurface(1, 1)), Failure);
}

} // namespace
