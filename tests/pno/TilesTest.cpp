// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The tile directories, the lidar segments, and reading what they point to.

#include "tests/pno/ReaderFixture.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>

using pnotest::Bytes;
using pnotest::PnoOptions;
using pnotest::PnoParts;
using pnotest::Segment;

namespace {

PnoParts lidarParts()
{
    PnoOptions options;
    options.depthTiles = [](int, int column, int row) {
        return Bytes{0xDD, static_cast<std::uint8_t>(column), static_cast<std::uint8_t>(row)};
    };
    for (std::size_t i = 0; i < options.points.size(); ++i)
        options.points[i] = static_cast<std::uint8_t>(i * 7);
    return pnotest::parts(options);
}

} // namespace

class PnoTiles : public ReaderTest
{
protected:
    const PnoParts m_plain = pnotest::parts();
    const PnoParts m_lidar = lidarParts();
};

TEST_F(PnoTiles, EveryTileOfEveryLevelIsFound)
{
    ASSERT_EQ(open(m_plain), pno::Ok);
    for (int level = 0; level <= 10; ++level) {
        for (int row = 0; row < static_cast<int>(m_plain.info.rows[level]); ++row) {
            for (int column = 0; column < static_cast<int>(m_plain.info.columns[level]); ++column) {
                const Bytes expected{static_cast<std::uint8_t>(level), static_cast<std::uint8_t>(column),
                                     static_cast<std::uint8_t>(row), 0xA5};
                ASSERT_EQ(tile(level, column, row), expected) << level << ' ' << column << ' ' << row;
            }
        }
    }
}

TEST_F(PnoTiles, PlacesOutsideTheGridGiveNull)
{
    ASSERT_EQ(open(m_plain), pno::Ok);
    constexpr int kLow = std::numeric_limits<std::int32_t>::min();
    constexpr int kHigh = std::numeric_limits<std::int32_t>::max();
    for (const int level : {-1, 11, 15, 16, kLow, kHigh})
        EXPECT_TRUE(noTile(level, 0, 0)) << "level " << level;
    for (const int column : {-1, 32, kLow, kHigh})
        EXPECT_TRUE(noTile(10, column, 0)) << "column " << column;
    for (const int row : {-1, 16, kLow, kHigh})
        EXPECT_TRUE(noTile(10, 0, row)) << "row " << row;
    EXPECT_FALSE(noTile(10, 31, 15));
    EXPECT_TRUE(noTile(0, 1, 0));
    EXPECT_TRUE(noTile(0, 0, 1));
}

TEST_F(PnoTiles, AnUnloadedReaderGivesNull)
{
    std::uint32_t size = 9;
    EXPECT_TRUE(noTile(0, 0, 0));
    EXPECT_EQ(m_file->ReadDepthTile(0, 0, &size), nullptr);
    EXPECT_EQ(m_file->ReadPoints(&size), nullptr);
    EXPECT_EQ(m_file->ReadExtra(&size), nullptr);
    EXPECT_EQ(size, 0u);
}

TEST_F(PnoTiles, ATileWhoseBytesLieBeyondTheFileGivesNull)
{
    const Bytes whole = m_plain.bytes();
    // The length is the caller's word here: the tile data is never looked at until a tile is read.
    m_path = m_folder.write("cut.pno", Bytes(whole.begin(), whole.end() - 2));
    ASSERT_EQ(m_file->Open(m_path.c_str(), 0, static_cast<std::int32_t>(whole.size())), pno::Ok);
    EXPECT_TRUE(noTile(10, 31, 15));
    EXPECT_EQ(tile(10, 30, 15), (Bytes{10, 30, 15, 0xA5}));
}

TEST_F(PnoTiles, AFileThatIsGoneOrCutAfterOpeningGivesNull)
{
    ASSERT_EQ(open(m_plain), pno::Ok);
    m_folder.write("test.pno", Bytes(1000));
    EXPECT_TRUE(noTile(10, 31, 15));
    std::remove(m_path.c_str());
    EXPECT_TRUE(noTile(0, 0, 0));
}

TEST_F(PnoTiles, ATileOfSizeZeroIsReadWhole)
{
    PnoParts parts = m_plain;
    parts.tiles[0].size = 0;
    ASSERT_EQ(open(parts), pno::Ok);
    std::uint32_t size = 1;
    EXPECT_NE(m_file->ReadTile(0, 0, 0, &size), nullptr);
    EXPECT_EQ(size, 0u);
}

TEST_F(PnoTiles, TheLargestTileIsRead)
{
    PnoParts parts = m_plain;
    parts.tileData.resize(0x100000, 0x42);
    parts.tiles[0].offset = 0;
    parts.tiles[0].size = 0x100000;
    ASSERT_EQ(open(parts), pno::Ok);
    EXPECT_EQ(tile(0, 0, 0).size(), 0x100000u);
    parts.tileData.resize(0x100001);
    parts.tiles[0].size = 0x100001;
    EXPECT_EQ(open(parts), pno::BadSegment);
}

TEST_F(PnoTiles, AnOffsetBeyondTheLimitIsRefused)
{
    PnoParts parts = m_plain;
    parts.tiles[0].offset = 0x10000001;
    EXPECT_EQ(open(parts), pno::BadSegment);
    parts.tiles[0].offset = 0xFFFFFFFF;
    EXPECT_EQ(open(parts), pno::BadSegment);
    parts.tiles[0].size = 0xFFFFFFFF;
    EXPECT_EQ(open(parts), pno::BadSegment);
    // Within the limit, but more than the data segment holds.
    parts.tiles[0].offset = 0x10000000;
    parts.tiles[0].size = 0x100000;
    EXPECT_EQ(open(parts), pno::BadSegment);
}

TEST_F(PnoTiles, TheTileDataMustHoldTheFarthestTile)
{
    PnoParts parts = m_plain;
    const auto end = static_cast<std::uint32_t>(parts.tileData.size());
    parts.tiles[3].offset = end - 1;
    parts.tiles[3].size = 1;
    EXPECT_EQ(open(parts), pno::Ok);
    parts.tiles[3].size = 2;
    EXPECT_EQ(open(parts), pno::BadSegment);
}

TEST_F(PnoTiles, ColumnMajorOrderIsRefused)
{
    PnoParts parts = m_plain;
    std::stable_sort(parts.tiles.begin(), parts.tiles.end(), [](const auto& a, const auto& b) {
        return a.level != b.level ? a.level < b.level : a.column < b.column;
    });
    EXPECT_EQ(open(parts), pno::BadSegment);
}

TEST_F(PnoTiles, ARecordOutOfPlaceIsRefused)
{
    for (const std::size_t index : {std::size_t(0), std::size_t(40), m_plain.tiles.size() - 1}) {
        PnoParts parts = m_plain;
        parts.tiles[index].level ^= 1;
        EXPECT_EQ(open(parts), pno::BadSegment);
        parts = m_plain;
        parts.tiles[index].column = -1;
        EXPECT_EQ(open(parts), pno::BadSegment);
        parts = m_plain;
        parts.tiles[index].row += 1;
        EXPECT_EQ(open(parts), pno::BadSegment);
    }
}

TEST_F(PnoTiles, LidarNeedsAllFourSegments)
{
    const std::vector<Segment> all = m_lidar.segments();
    for (unsigned kept = 0; kept < 16; ++kept) {
        std::vector<Segment> segments(all.begin(), all.begin() + 4);
        for (std::size_t i = 0; i < 4; ++i) {
            if (kept & (1u << i)) segments.push_back(all[4 + i]);
        }
        EXPECT_EQ(open(segments), pno::Ok) << "segments " << kept;
        EXPECT_EQ(m_file->lidar(), kept == 15) << "segments " << kept;
    }
}

TEST_F(PnoTiles, AFileLackingOnlyTheExtraBlockHasNoLidar)
{
    std::vector<Segment> segments = m_lidar.segments();
    segments.pop_back();
    EXPECT_EQ(open(segments), pno::Ok);
    EXPECT_FALSE(m_file->lidar());
}

TEST_F(PnoTiles, DepthTilesAreRead)
{
    ASSERT_EQ(open(m_lidar), pno::Ok);
    ASSERT_TRUE(m_file->lidar());
    for (int row = 0; row < 16; ++row) {
        for (int column = 0; column < 32; ++column) {
            std::uint32_t size = 0;
            const PnoBytes bytes = m_file->ReadDepthTile(column, row, &size);
            ASSERT_EQ(size, 3u);
            EXPECT_EQ(bytes[1], column);
            EXPECT_EQ(bytes[2], row);
        }
    }
    for (const auto& place : {std::pair(-1, 0), std::pair(32, 0), std::pair(0, -1), std::pair(0, 16)}) {
        std::uint32_t size = 9;
        EXPECT_EQ(m_file->ReadDepthTile(place.first, place.second, &size), nullptr);
        EXPECT_EQ(size, 0u);
    }
}

TEST_F(PnoTiles, PointAndExtraBlocksAreRead)
{
    ASSERT_EQ(open(m_lidar), pno::Ok);
    EXPECT_EQ(m_file->pointValues(), (std::array<std::uint32_t, 4>{11, 22, 0, 1}));
    std::uint32_t size = 0;
    const PnoBytes points = m_file->ReadPoints(&size);
    EXPECT_EQ(Bytes(points.get(), points.get() + size), m_lidar.points);
    const PnoBytes extra = m_file->ReadExtra(&size);
    EXPECT_EQ(Bytes(extra.get(), extra.get() + size), m_lidar.extra);
}

TEST_F(PnoTiles, APointBlockThatTheFileDoesNotHoldGivesNull)
{
    std::vector<Segment> segments = m_lidar.segments();
    std::swap(segments[6], segments[7]);
    segments.back().statedLength = 0x0F000000;
    Bytes bytes = pnotest::join(segments);
    m_path = m_folder.write("short.pno", bytes);
    const auto claimed = static_cast<std::int32_t>(bytes.size()) - 1040 + 0x0F000000;
    ASSERT_EQ(m_file->Open(m_path.c_str(), 0, claimed), pno::Ok);
    std::uint32_t size = 9;
    EXPECT_EQ(m_file->ReadPoints(&size), nullptr);
    EXPECT_EQ(size, 0u);
}

TEST_F(PnoTiles, DepthDirectoriesOutOfPlaceAreRefused)
{
    PnoParts parts = m_lidar;
    parts.depthTiles[33].level = 9;
    EXPECT_EQ(open(parts), pno::BadSegment);
    parts = m_lidar;
    std::swap(parts.depthTiles[33], parts.depthTiles[34]);
    EXPECT_EQ(open(parts), pno::BadSegment);
    parts = m_lidar;
    parts.depthTiles[511].offset = static_cast<std::uint32_t>(parts.depthData.size());
    EXPECT_EQ(open(parts), pno::BadSegment);
    parts = m_lidar;
    parts.depthTiles[0].size = 0x100001;
    EXPECT_EQ(open(parts), pno::BadSegment);
}

TEST_F(PnoTiles, SeveralThreadsReadTilesOfOneReader)
{
    ASSERT_EQ(open(m_lidar), pno::Ok);
    std::atomic<int> wrong{0};
    const auto readAll = [&](int first) {
        for (int i = 0; i < 512; ++i) {
            const int place = (i * 37 + first) % 512;
            const int column = place % 32;
            const int row = place / 32;
            if (tile(10, column, row) != Bytes{10, std::uint8_t(column), std::uint8_t(row), 0xA5}) ++wrong;
            std::uint32_t size = 0;
            const PnoBytes depth = m_file->ReadDepthTile(column, row, &size);
            if (size != 3 || depth[1] != column || m_file->panoId() != 1 || !m_file->lidar()) ++wrong;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back(readAll, i * 64);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(PnoTiles, ReadsDuringASecondOpenGiveATileOfOneOfTheFilesOrNull)
{
    PnoParts other = m_plain;
    for (std::uint8_t& byte : other.tileData)
        byte ^= 0xFF;
    const std::string paths[] = {m_folder.write("a.pno", m_plain.bytes()),
                                 m_folder.write("b.pno", other.bytes())};
    ASSERT_EQ(m_file->Open(paths[0].c_str()), pno::Ok);
    std::atomic<bool> done{false};
    std::atomic<int> wrong{0};
    std::thread reader([&] {
        while (!done) {
            const Bytes bytes = tile(10, 3, 4);
            if (!bytes.empty() && bytes != Bytes{10, 3, 4, 0xA5} && bytes != Bytes{245, 252, 251, 0x5A})
                ++wrong;
        }
    });
    for (int i = 1; i <= 50; ++i)
        EXPECT_EQ(m_file->Open(paths[i % 2].c_str()), pno::Ok);
    done = true;
    reader.join();
    EXPECT_EQ(wrong, 0);
}
