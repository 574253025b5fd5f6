// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Lengths of files and segments, cuts, and panoramas inside larger files.

#include "tests/pno/ReaderFixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>

using pnotest::Bytes;
using pnotest::Segment;

class PnoLengths : public PartsTest
{};

TEST_F(PnoLengths, AnEmptyFileIsRefused)
{
    EXPECT_EQ(open(Bytes()), pno::BadLength);
}

TEST_F(PnoLengths, AFileOf703BytesIsRefusedBeforeItsMagicIsRead)
{
    EXPECT_EQ(open(Bytes(703, 0xEE)), pno::BadLength);
    EXPECT_EQ(open(Bytes(704, 0xEE)), pno::BadMagic);
}

TEST_F(PnoLengths, AFileLargerThan256MiBIsRefusedBeforeItsMagicIsRead)
{
    const std::string path = m_folder.write("large.pno", Bytes(704, 0xEE));
    std::filesystem::resize_file(path, 0x10000000); // sparse: takes no room on the disk
    EXPECT_EQ(m_file->Open(path.c_str()), pno::BadMagic);
    std::filesystem::resize_file(path, 0x10000001);
    EXPECT_EQ(m_file->Open(path.c_str()), pno::BadLength);
}

TEST_F(PnoLengths, AFileBeyond4GiBIsNotMistakenForAShortOne)
{
    const std::string path = m_folder.write("huge.pno", m_plain.bytes());
    const auto length = static_cast<std::uintmax_t>(m_plain.bytes().size());
    std::error_code error;
    std::filesystem::resize_file(path, (std::uintmax_t(1) << 32) + length, error);
    if (error) GTEST_SKIP() << "the file system takes no such file: " << error.message();
    EXPECT_EQ(m_file->Open(path.c_str()), pno::BadLength);
    EXPECT_EQ(m_file->Open(path.c_str(), 0, static_cast<std::int32_t>(length)), pno::Ok);
}

TEST_F(PnoLengths, ASegmentThatEndsWithTheFileEndsTheScan)
{
    std::vector<Segment> segments = m_plain.segments();
    segments.push_back({0x0001, Bytes(10), {}});
    EXPECT_EQ(open(segments), pno::Ok);
    segments.back().statedLength = 11;
    EXPECT_EQ(open(segments), pno::BadLength);
}

TEST_F(PnoLengths, ASegmentOfNoDataMayEndTheFile)
{
    std::vector<Segment> segments = m_plain.segments();
    segments.push_back({0x0001, {}, {}});
    EXPECT_EQ(open(segments), pno::Ok);
}

TEST_F(PnoLengths, ASegmentHeaderCutShortIsRefused)
{
    for (std::size_t extra = 1; extra < 6; ++extra) {
        Bytes bytes = m_plain.bytes();
        bytes.resize(bytes.size() + extra);
        EXPECT_EQ(open(bytes), pno::BadLength) << extra << " bytes";
    }
}

TEST_F(PnoLengths, ASegmentHeaderThatTheGivenLengthCutsIsRefusedUnread)
{
    std::vector<Segment> segments = m_plain.segments();
    segments.push_back({pno::ExtraBlock, {}, {}}); // too short, but that is not ours to see
    const std::string path = m_folder.write("test.pno", pnotest::join(segments));
    const auto whole = static_cast<std::int32_t>(pnotest::join(segments).size());
    EXPECT_EQ(m_file->Open(path.c_str(), 0, whole), pno::BadSegment);
    EXPECT_EQ(m_file->Open(path.c_str(), 0, whole - 1), pno::BadLength);
    EXPECT_EQ(m_file->Open(path.c_str(), 0, whole - 5), pno::BadLength);
    EXPECT_EQ(m_file->Open(path.c_str(), 0, whole - 6), pno::Ok);
}

TEST_F(PnoLengths, ALengthThatDoesNotMoveTheScanForwardIsRefused)
{
    for (const std::int32_t length : {-1, -5, -6, -7, -1000, std::numeric_limits<std::int32_t>::min()}) {
        for (const std::uint16_t marker : {0x0001, 0xFFD0, 0xFFD1}) {
            std::vector<Segment> segments = m_plain.segments();
            Segment bent = marker == 0xFFD0   ? m_plain.captureSegment()
                           : marker == 0xFFD1 ? m_plain.infoSegment()
                                              : Segment{marker, Bytes(500), {}};
            bent.statedLength = length;
            segments.insert(segments.begin(), bent);
            EXPECT_EQ(open(segments), pno::BadLength) << marker << " with length " << length;
        }
    }
}

TEST_F(PnoLengths, NegativeLengthsOfTheOtherSegmentsAreTooShort)
{
    for (std::size_t index = 2; index < 8; ++index) {
        std::vector<Segment> segments = m_lidar.segments();
        segments[index].statedLength = -1;
        EXPECT_EQ(open(segments), pno::BadSegment) << "segment " << index;
    }
}

TEST_F(PnoLengths, TheLargestLengthDoesNotOverflow)
{
    for (std::size_t index = 0; index < 8; ++index) {
        std::vector<Segment> segments = m_lidar.segments();
        segments[index].statedLength = std::numeric_limits<std::int32_t>::max();
        EXPECT_EQ(open(segments), pno::BadLength) << "segment " << index;
    }
}

TEST_F(PnoLengths, EachSegmentOneByteShorterThanItsContentIsRefused)
{
    const std::vector<Segment> whole = m_lidar.segments();
    for (std::size_t index = 0; index < whole.size(); ++index) {
        std::vector<Segment> segments = whole;
        if (segments[index].marker == pno::PointBlock) segments[index].data.resize(1040);
        ASSERT_EQ(open(segments), pno::Ok) << "segment " << index;
        segments[index].data.pop_back();
        EXPECT_EQ(open(segments), pno::BadSegment) << "segment " << index;
    }
}

TEST_F(PnoLengths, TruncationAtEverySegmentBoundaryIsRefused)
{
    const std::vector<Segment> whole = m_lidar.segments();
    for (std::size_t kept = 0; kept < whole.size(); ++kept) {
        const Bytes bytes = pnotest::join({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(kept)});
        const std::int32_t expected = bytes.size() < 704 ? pno::BadLength
                                      : kept < 4         ? pno::MissingSegment
                                                         : pno::Ok;
        EXPECT_EQ(open(bytes), expected) << kept << " segments";
        EXPECT_FALSE(m_file->lidar());
    }
}

TEST_F(PnoLengths, TruncationAnywhereElseIsRefused)
{
    const Bytes whole = m_plain.bytes();
    std::vector<std::size_t> boundaries;
    for (std::size_t kept = 0; kept <= 4; ++kept) {
        const auto segments = m_plain.segments();
        boundaries.push_back(
            pnotest::join({segments.begin(), segments.begin() + static_cast<std::ptrdiff_t>(kept)}).size());
    }
    const auto expectRefused = [&](std::size_t size) {
        if (std::find(boundaries.begin(), boundaries.end(), size) != boundaries.end()) return;
        EXPECT_EQ(open(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))),
                  pno::BadLength)
            << size << " bytes";
    };
    for (std::size_t size = 0; size < whole.size(); size += 97)
        expectRefused(size);
    for (const std::size_t boundary : boundaries) {
        for (std::size_t near = boundary < 8 ? 0 : boundary - 8; near < boundary + 8 && near < whole.size();
             ++near)
            expectRefused(near);
    }
}

TEST_F(PnoLengths, APanoramaInsideAnotherFileIsReadFromItsBaseOffset)
{
    const Bytes panorama = m_lidar.bytes();
    Bytes container(1000 + panorama.size() + 500, 0xC0);
    std::copy(panorama.begin(), panorama.end(), container.begin() + 1000);
    const std::string path = m_folder.write("tour.bin", container);
    const auto length = static_cast<std::int32_t>(panorama.size());
    ASSERT_EQ(m_file->Open(path.c_str(), 1000, length), pno::Ok);
    EXPECT_TRUE(m_file->lidar());
    EXPECT_EQ(tile(10, 5, 6), (Bytes{10, 5, 6, 0xA5}));
    std::uint32_t size = 0;
    EXPECT_EQ(m_file->ReadDepthTile(4, 3, &size)[1], 4);
    EXPECT_EQ(m_file->ReadExtra(&size)[0], 'R');
    EXPECT_EQ(size, 8u);

    EXPECT_EQ(m_file->Open(path.c_str(), 1000, length - 1), pno::BadLength);
    EXPECT_EQ(m_file->Open(path.c_str(), 1000, length + 1), pno::BadLength);
    EXPECT_EQ(m_file->Open(path.c_str(), 999, length), pno::BadMagic);
}

TEST_F(PnoLengths, AMeasuredLengthCountsFromTheFilesStart)
{
    const Bytes panorama = m_plain.bytes();
    Bytes container(10 + panorama.size());
    std::copy(panorama.begin(), panorama.end(), container.begin() + 10);
    // Ten bytes more are expected than are there: a caller with a base offset has to pass the length.
    EXPECT_EQ(m_file->Open(m_folder.write("tour.bin", container).c_str(), 10), pno::BadLength);
}

TEST_F(PnoLengths, GivenLengthsOutOfRangeAreRefused)
{
    const std::string path = m_folder.write("test.pno", m_plain.bytes());
    EXPECT_EQ(m_file->Open(path.c_str(), 0, 0), pno::BadLength);
    EXPECT_EQ(m_file->Open(path.c_str(), 0, 703), pno::BadLength);
    EXPECT_EQ(m_file->Open(path.c_str(), 0, 0x10000001), pno::BadLength);
    EXPECT_EQ(m_file->Open(path.c_str(), 0, std::numeric_limits<std::int32_t>::max()), pno::BadLength);
    EXPECT_EQ(m_file->Open(path.c_str(), 0, std::numeric_limits<std::int32_t>::min()), pno::Ok);
}

TEST_F(PnoLengths, BaseOffsetsOutsideTheFileAreRefused)
{
    const std::string path = m_folder.write("test.pno", m_plain.bytes());
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t base : {std::int64_t(1) << 20, std::int64_t(1) << 33, kLargest, kLargest - 704})
        EXPECT_EQ(m_file->Open(path.c_str(), base, 1000), pno::BadLength) << base;
    for (const std::int64_t base : {std::int64_t(-3), std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(m_file->Open(path.c_str(), base, 1000), pno::BadLength) << base;
}

TEST_F(PnoLengths, APanoramaBeyond2GiBOfAFileIsRead)
{
    const std::string path = m_folder.write("tour.bin", Bytes());
    constexpr std::int64_t kBase = (std::int64_t(5) << 30) + 3;
    const Bytes panorama = m_plain.bytes();
    std::error_code error;
    std::filesystem::resize_file(path, kBase, error);
    if (error) GTEST_SKIP() << "the file system takes no such file: " << error.message();
    std::ofstream(path, std::ios::binary | std::ios::app)
        .write(reinterpret_cast<const char*>(panorama.data()), static_cast<std::streamsize>(panorama.size()));
    EXPECT_EQ(m_file->Open(path.c_str(), kBase, static_cast<std::int32_t>(panorama.size())), pno::Ok);
    EXPECT_EQ(tile(10, 31, 0), (Bytes{10, 31, 0, 0xA5}));
}
