// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The order of the segments, repeats, what is missing, and opening again.

#include "tests/pno/ReaderFixture.h"

#include <cstring>

using pnotest::Bytes;
using pnotest::PnoParts;
using pnotest::Segment;

class PnoStructure : public PartsTest
{};

TEST_F(PnoStructure, AValidFileLoads)
{
    EXPECT_FALSE(m_file->loaded());
    EXPECT_EQ(open(m_plain), pno::Ok);
    EXPECT_TRUE(m_file->loaded());
    EXPECT_FALSE(m_file->lidar());
    EXPECT_EQ(m_file->tileCount(), static_cast<std::int32_t>(m_plain.tiles.size()));
    const PnoImageInfo info = m_file->imageInfo();
    EXPECT_EQ(std::memcmp(&info, &m_plain.info, sizeof info), 0);
    const pno::CaptureTime time = m_file->captureTime();
    EXPECT_EQ(std::memcmp(&time, &m_plain.capture, sizeof time), 0);
}

TEST_F(PnoStructure, EveryTopLevelLoads)
{
    for (const std::uint32_t level : {10u, 11u, 12u}) {
        pnotest::PnoOptions options;
        options.level = level;
        EXPECT_EQ(open(pnotest::parts(options)), pno::Ok) << "level " << level;
        EXPECT_EQ(m_file->imageInfo().max_zoom_level, level);
    }
}

TEST_F(PnoStructure, AMissingFileCannotBeOpened)
{
    EXPECT_EQ(m_file->Open(m_folder.path("none.pno").c_str()), pno::CannotOpen);
    EXPECT_EQ(m_file->Open(nullptr), pno::CannotOpen);
    EXPECT_EQ(m_file->Open(""), pno::CannotOpen);
}

TEST_F(PnoStructure, AFolderIsNoPanorama)
{
    EXPECT_LT(m_file->Open(m_folder.path("").c_str()), 0);
    EXPECT_FALSE(m_file->loaded());
}

TEST_F(PnoStructure, AFileThatStartsOtherwiseHasABadMagic)
{
    Bytes bytes = m_plain.bytes();
    bytes[0] = 0xD8;
    bytes[1] = 0xFF;
    EXPECT_EQ(open(bytes), pno::BadMagic);
    bytes[0] = 0x73;
    bytes[1] = 0xC0;
    EXPECT_EQ(open(bytes), pno::BadMagic);
}

TEST_F(PnoStructure, EachRequiredSegmentIsMissed)
{
    for (std::size_t missing = 0; missing < 4; ++missing) {
        std::vector<Segment> segments = m_plain.segments();
        // Without the information block the directory has nothing to be checked against: leave it out, too.
        const bool info = segments[missing].marker == pno::ImageInfo;
        segments.erase(segments.begin() + static_cast<std::ptrdiff_t>(missing));
        if (info) segments.erase(segments.begin() + 1);
        segments.push_back({0x1234, Bytes(1000), {}});
        EXPECT_EQ(open(segments), pno::MissingSegment) << "segment " << missing;
        EXPECT_FALSE(m_file->loaded());
    }
}

TEST_F(PnoStructure, ADirectoryBeforeTheInformationBlockIsRefused)
{
    EXPECT_EQ(open({m_plain.captureSegment(), m_plain.tileDirectorySegment(), m_plain.infoSegment(),
                    m_plain.tileDataSegment()}),
              pno::BadSegment);
}

TEST_F(PnoStructure, TheOtherSegmentsMayStandInAnyOrder)
{
    EXPECT_EQ(open({m_lidar.extraSegment(), m_lidar.tileDataSegment(), m_lidar.infoSegment(),
                    m_lidar.tileDirectorySegment(), m_lidar.pointSegment(), m_lidar.captureSegment(),
                    m_lidar.depthDirectorySegment(), m_lidar.depthDataSegment()}),
              pno::Ok);
    EXPECT_TRUE(m_file->lidar());
    EXPECT_EQ(tile(3, 1, 1), (Bytes{3, 1, 1, 0xA5}));
}

TEST_F(PnoStructure, UnknownMarkersAreSkipped)
{
    std::vector<Segment> segments;
    for (const Segment& segment : m_lidar.segments()) {
        segments.push_back({0xFFD4, Bytes(17, 0xFF), {}});
        segments.push_back(segment);
        segments.push_back({0x0000, {}, {}});
    }
    EXPECT_EQ(open(segments), pno::Ok);
    EXPECT_TRUE(m_file->lidar());
    EXPECT_EQ(tile(10, 31, 15), (Bytes{10, 31, 15, 0xA5}));
}

TEST_F(PnoStructure, LongerSegmentsThanNeededAreAccepted)
{
    std::vector<Segment> segments = m_lidar.segments();
    for (Segment& segment : segments)
        segment.data.resize(segment.data.size() + 100, 0xFF);
    EXPECT_EQ(open(segments), pno::Ok);
    EXPECT_TRUE(m_file->lidar());
}

TEST_F(PnoStructure, TheLastOfRepeatedSegmentsWins)
{
    PnoParts second = m_lidar;
    second.capture.year = 2030;
    std::memcpy(second.info.identity, "ZZZZZZZZZZZZZZ", 14);
    for (std::uint8_t& byte : second.tileData)
        byte ^= 0xFF;
    for (std::uint8_t& byte : second.depthData)
        byte ^= 0xFF;
    second.pointValues = {7, 8, 9, 10};
    second.points[0] = 77;
    second.extra[0] = 'X';
    std::vector<Segment> segments = m_lidar.segments();
    for (const Segment& segment : second.segments())
        segments.push_back(segment);
    ASSERT_EQ(open(segments), pno::Ok);

    EXPECT_EQ(m_file->captureTime().year, 2030u);
    EXPECT_STREQ(m_file->imageInfo().identity, "ZZZZZZZZZZZZZZ");
    EXPECT_EQ(tile(10, 31, 15), (Bytes{245, 224, 240, 0x5A}));
    std::uint32_t size = 0;
    EXPECT_EQ(m_file->ReadDepthTile(31, 15, &size)[0], 245);
    EXPECT_EQ(m_file->pointValues(), (std::array<std::uint32_t, 4>{7, 8, 9, 10}));
    EXPECT_EQ(m_file->ReadPoints(&size)[0], 77);
    EXPECT_EQ(m_file->ReadExtra(&size)[0], 'X');
}

TEST_F(PnoStructure, ALaterInformationBlockOfTheSameGridIsTaken)
{
    PnoParts other = m_plain;
    std::memcpy(other.info.identity, "AAAAAAAAAAAAAC", 14);
    std::vector<Segment> segments = m_plain.segments();
    segments.push_back(other.infoSegment());
    EXPECT_EQ(open(segments), pno::Ok);
    EXPECT_EQ(m_file->panoId(), 2u);
}

TEST_F(PnoStructure, ALaterInformationBlockOfAnotherGridIsRefused)
{
    pnotest::PnoOptions options;
    options.level = 12;
    std::vector<Segment> segments = m_plain.segments();
    segments.push_back(pnotest::parts(options).infoSegment());
    EXPECT_EQ(open(segments), pno::BadSegment);
    EXPECT_TRUE(noTile(0, 0, 0));
}

TEST_F(PnoStructure, ASecondOpenStartsFromAClearedState)
{
    ASSERT_EQ(open(m_lidar), pno::Ok);
    EXPECT_EQ(open(Bytes(1000)), pno::BadMagic);
    EXPECT_FALSE(m_file->loaded());
    EXPECT_FALSE(m_file->lidar());
    EXPECT_EQ(m_file->panoId(), 0u);
    EXPECT_EQ(m_file->tileCount(), 0);
    EXPECT_EQ(m_file->pointValues(), (std::array<std::uint32_t, 4>{}));
    EXPECT_EQ(m_file->imageInfo().max_zoom_level, 0u);
    EXPECT_TRUE(noTile(0, 0, 0));
    EXPECT_EQ(open(m_plain), pno::Ok);
    EXPECT_FALSE(m_file->lidar());
    EXPECT_EQ(m_file->panoId(), 1u);
}

TEST_F(PnoStructure, AFailedOpenLeavesTheReaderUnloaded)
{
    PnoParts bad = m_plain;
    bad.tiles.back().row = 99;
    EXPECT_EQ(open(bad), pno::BadSegment);
    EXPECT_FALSE(m_file->loaded());
    EXPECT_TRUE(noTile(0, 0, 0));
}

TEST_F(PnoStructure, PathsWithChineseSpacesAndAccentsAreRead)
{
    for (const char* name : {"全景 文件夹/客厅.pno", "Éléphant à côté/naïve café.pno", "a b c.pno"}) {
        const std::string path = m_folder.write(name, m_plain.bytes());
        EXPECT_EQ(m_file->Open(path.c_str()), pno::Ok) << name;
        EXPECT_EQ(tile(0, 0, 0), (Bytes{0, 0, 0, 0xA5})) << name;
    }
}
