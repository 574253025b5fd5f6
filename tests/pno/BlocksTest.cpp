// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The rules of the capture block, the image information and the identity number.

#include "tests/pno/ReaderFixture.h"

#include "linking/pno/PnoPyramid.h"
#include "project/PanoIdentity.h"

#include <cmath>
#include <cstring>
#include <limits>

using pnotest::PnoOptions;
using pnotest::PnoParts;

namespace {

struct Bend
{
    const char* what;
    void (*apply)(PnoImageInfo&);
};

// For messages of parameterised cases.
void PrintTo(const Bend& bend, std::ostream* stream)
{
    *stream << bend.what;
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

class PnoBlocks : public ReaderTest
{
protected:
    std::int32_t openWithTime(std::uint32_t pno::CaptureTime::*field, std::uint32_t value)
    {
        PnoParts parts = m_plain;
        parts.capture.*field = value;
        return open(parts);
    }
    const PnoParts m_plain = pnotest::parts();
};

TEST_F(PnoBlocks, AMonthOf0Or13IsRefused)
{
    EXPECT_EQ(openWithTime(&pno::CaptureTime::month, 0), pno::BadSegment);
    EXPECT_EQ(openWithTime(&pno::CaptureTime::month, 1), pno::Ok);
    EXPECT_EQ(openWithTime(&pno::CaptureTime::month, 12), pno::Ok);
    EXPECT_EQ(openWithTime(&pno::CaptureTime::month, 13), pno::BadSegment);
}

TEST_F(PnoBlocks, EachPartOfTheTimeHasItsRange)
{
    using Time = pno::CaptureTime;
    const struct
    {
        std::uint32_t Time::*field;
        std::uint32_t low, high;
    } ranges[] = {{&Time::year, 1970, 2100},   {&Time::month, 1, 12},  {&Time::day, 1, 31},
                  {&Time::hour, 0, 23},        {&Time::minute, 0, 59}, {&Time::second, 0, 59},
                  {&Time::millisecond, 0, 999}};
    for (const auto& range : ranges) {
        EXPECT_EQ(openWithTime(range.field, range.low), pno::Ok) << range.low;
        EXPECT_EQ(openWithTime(range.field, range.high), pno::Ok) << range.high;
        EXPECT_EQ(openWithTime(range.field, range.high + 1), pno::BadSegment) << range.high;
        // Below zero the unsigned comparison sees a huge number.
        EXPECT_EQ(openWithTime(range.field, range.low - 1), pno::BadSegment) << range.low;
        EXPECT_EQ(openWithTime(range.field, 0xFFFFFFFFu), pno::BadSegment) << range.high;
    }
}

TEST_F(PnoBlocks, UnreadBytesMayHoldAnything)
{
    PnoParts parts = m_plain;
    std::memset(parts.capture.unread0, 0xEE, sizeof parts.capture.unread0);
    std::memset(parts.capture.unread36, 0xEE, sizeof parts.capture.unread36);
    std::memset(parts.info.unread48, 0xEE, sizeof parts.info.unread48);
    std::memset(parts.info.unread392, 0xEE, sizeof parts.info.unread392);
    std::memset(parts.info.unread436, 0xEE, sizeof parts.info.unread436);
    parts.info.identity[15] = 'x';
    parts.info.widths[11] = parts.info.columns[15] = 0xEEEEEEEE; // levels above the top one
    for (pno::TileRecord& record : parts.tiles)
        std::memset(record.unread, 0xEE, sizeof record.unread);
    EXPECT_EQ(open(parts), pno::Ok);
    EXPECT_EQ(m_file->imageInfo().unread436[11], 0xEE);
}

class PnoBadInfo : public PnoBlocks, public testing::WithParamInterface<Bend>
{};

TEST_P(PnoBadInfo, IsRefused)
{
    PnoParts parts = m_plain;
    GetParam().apply(parts.info);
    EXPECT_EQ(open(parts), pno::BadSegment) << GetParam().what;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rules, PnoBadInfo, testing::Values(
    Bend{"AnEmptyName", [](PnoImageInfo& i) { std::memset(i.name, 0, 32); }},
    Bend{"ANameOf3Characters", [](PnoImageInfo& i) { std::memset(i.name + 3, 0, 29); }},
    Bend{"ANameThatDoesNotEnd", [](PnoImageInfo& i) { std::memset(i.name, 'n', 32); }},
    Bend{"AByteAtTheNamesEnd", [](PnoImageInfo& i) { i.name[31] = 'n'; }},
    Bend{"AnIdentityOf13Characters", [](PnoImageInfo& i) { i.identity[13] = 0; }},
    Bend{"AnIdentityOf15Characters", [](PnoImageInfo& i) { i.identity[14] = 'A'; }},
    Bend{"AnIdentityThatDoesNotEnd", [](PnoImageInfo& i) { std::memset(i.identity, 'A', 16); }},
    Bend{"AnEmptyIdentity", [](PnoImageInfo& i) { i.identity[0] = 0; }},
    Bend{"Format0", [](PnoImageInfo& i) { i.format = 0; }},
    Bend{"Format2", [](PnoImageInfo& i) { i.format = 2; }},
    Bend{"ATileSizeOf512", [](PnoImageInfo& i) { i.mosaic_pixel_size = 512; }},
    Bend{"TopLevel13", [](PnoImageInfo& i) { i.max_zoom_level = 13; }},
    Bend{"TopLevel9", [](PnoImageInfo& i) { i.max_zoom_level = 9; }},
    Bend{"TopLevel16", [](PnoImageInfo& i) { i.max_zoom_level = 16; }},
    Bend{"TopLevel0", [](PnoImageInfo& i) { i.max_zoom_level = 0; }},
    Bend{"AHugeTopLevel", [](PnoImageInfo& i) { i.max_zoom_level = 0xFFFFFFFF; }},
    Bend{"AWidthOneTooLarge", [](PnoImageInfo& i) { i.widths[5] += 1; }},
    Bend{"AWidthOneTooSmall", [](PnoImageInfo& i) { i.widths[10] -= 1; }},
    Bend{"AHeightOneTooLarge", [](PnoImageInfo& i) { i.heights[0] += 1; }},
    Bend{"AHeightOneTooSmall", [](PnoImageInfo& i) { i.heights[9] -= 1; }},
    Bend{"AColumnTooMany", [](PnoImageInfo& i) { i.columns[10] += 1; }},
    Bend{"NoColumns", [](PnoImageInfo& i) { i.columns[0] = 0; }},
    Bend{"ARowTooMany", [](PnoImageInfo& i) { i.rows[4] += 1; }},
    Bend{"ARowTooFew", [](PnoImageInfo& i) { i.rows[10] -= 1; }},
    Bend{"HugeGrids", [](PnoImageInfo& i) { i.columns[10] = i.rows[10] = 0xFFFFFFFF; }},
    Bend{"APixelScaleOff", [](PnoImageInfo& i) { i.pixel_scale += 2e-9; }},
    Bend{"APixelScaleOfNothing", [](PnoImageInfo& i) { i.pixel_scale = kNaN; }},
    Bend{"OutputMinLongitudeOff", [](PnoImageInfo& i) { i.output_min_x += 2e-9; }},
    Bend{"OutputMaxLongitudeOff", [](PnoImageInfo& i) { i.output_max_x -= 2e-9; }},
    Bend{"OutputLongitudesOfNothing", [](PnoImageInfo& i) { i.output_min_x = i.output_max_x = kNaN; }},
    Bend{"OutputMinPolarBelow", [](PnoImageInfo& i) { i.output_min_y = i.valid_min_y = -0.1002; }},
    Bend{"OutputMinPolarAbove", [](PnoImageInfo& i) { i.output_min_y = i.valid_min_y = 0.5002; }},
    Bend{"OutputMaxPolarBelow", [](PnoImageInfo& i) { i.output_max_y = i.valid_max_y = 2.4583; }},
    Bend{"OutputMaxPolarAbove", [](PnoImageInfo& i) { i.output_max_y = i.valid_max_y = 3.1417; }},
    Bend{"OutputPolarOfNothing", [](PnoImageInfo& i) { i.output_max_y = kNaN; }},
    Bend{"OutputPolarInfinite", [](PnoImageInfo& i) { i.output_min_y = -kInfinity; }},
    Bend{"ValidMinLongitudeOff", [](PnoImageInfo& i) { i.valid_min_x -= 2e-9; }},
    Bend{"ValidMaxLongitudeOff", [](PnoImageInfo& i) { i.valid_max_x += 2e-9; }},
    Bend{"ValidMinPolarAbove", [](PnoImageInfo& i) { i.valid_min_y = 0.5002; }},
    Bend{"ValidMinPolarBelowTheOutput", [](PnoImageInfo& i) { i.valid_min_y = -2e-9; }},
    Bend{"ValidMaxPolarBelow", [](PnoImageInfo& i) { i.valid_max_y = 2.4583; }},
    Bend{"ValidMaxPolarAboveTheOutput", [](PnoImageInfo& i) { i.valid_max_y += 2e-9; }},
    Bend{"ValidPolarOfNothing", [](PnoImageInfo& i) { i.valid_min_y = kNaN; }},
    Bend{"Mode2", [](PnoImageInfo& i) { i.mode_flag = 2; }},
    Bend{"Quality49", [](PnoImageInfo& i) { i.quality = 49; }},
    Bend{"Quality101", [](PnoImageInfo& i) { i.quality = 101; }}),
    [](const testing::TestParamInfo<Bend>& info) { return std::string(info.param.what); });

class PnoGoodInfo : public PnoBlocks, public testing::WithParamInterface<Bend>
{
};

TEST_P(PnoGoodInfo, IsAccepted)
{
    PnoParts parts = m_plain;
    GetParam().apply(parts.info);
    EXPECT_EQ(open(parts), pno::Ok) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(Rules, PnoGoodInfo, testing::Values(
    Bend{"ANameOf4Characters", [](PnoImageInfo& i) { std::memset(i.name + 4, 0, 28); }},
    Bend{"ANameOf31Characters", [](PnoImageInfo& i) { std::memset(i.name, 'n', 31); }},
    Bend{"Mode1", [](PnoImageInfo& i) { i.mode_flag = 1; }},
    Bend{"Quality50", [](PnoImageInfo& i) { i.quality = 50; }},
    Bend{"Quality100", [](PnoImageInfo& i) { i.quality = 100; }},
    Bend{"APixelScaleWithinTolerance", [](PnoImageInfo& i) { i.pixel_scale += 9e-10; }},
    Bend{"LongitudesWithinTolerance", [](PnoImageInfo& i) { i.output_max_x += 9e-10; i.valid_min_x -= 9e-10; }},
    Bend{"AValidExtentWithinTheOutput", [](PnoImageInfo& i) { i.valid_min_y = 0.5; i.valid_max_y = 2.5; }},
    Bend{"AValidExtentATraceOutside", [](PnoImageInfo& i) { i.valid_min_y = -9e-10; i.valid_max_y += 9e-10; }}),
    [](const testing::TestParamInfo<Bend>& info) { return std::string(info.param.what); });
// clang-format on

TEST_F(PnoBlocks, PartialPolarExtentsFollowThePyramidRule)
{
    const double extents[][2] = {{-0.1, 2.46}, {0.5, 2.459}, {0.2, 2.8}, {0.3, 3.1415}, {-0.1, 3.1415}};
    for (const auto& extent : extents) {
        for (const std::uint32_t level : {10u, 11u, 12u}) {
            PnoOptions options;
            options.level = level;
            options.polar_min = extent[0];
            options.polar_max = extent[1];
            const PnoParts parts = pnotest::parts(options);
            EXPECT_EQ(open(parts), pno::Ok) << extent[0] << " to " << extent[1];
            EXPECT_LE(m_file->tileCount(), pno::kMaxTiles);
            const int lastRow = static_cast<int>(parts.info.rows[level]) - 1;
            EXPECT_EQ(tile(static_cast<int>(level), 0, lastRow),
                      (pnotest::Bytes{static_cast<std::uint8_t>(level), 0, static_cast<std::uint8_t>(lastRow),
                                      0xA5}));
        }
    }
}

TEST_F(PnoBlocks, TheFullSphereHasTheKnownGrids)
{
    const pno::Pyramid full = pno::pyramid(12, {-pno::kPi, pno::kPi, 0.0, pno::kPi});
    const std::uint32_t widths[] = {256,  362,  512,  724,  1024,  1448, 2048,
                                    2896, 4096, 5793, 8192, 11585, 16384};
    const std::uint32_t columns[] = {1, 2, 2, 3, 4, 6, 8, 12, 16, 23, 32, 46, 64};
    const std::uint32_t rows[] = {1, 1, 1, 2, 2, 3, 4, 6, 8, 12, 16, 23, 32};
    std::uint32_t first = 0;
    for (std::size_t level = 0; level <= 12; ++level) {
        EXPECT_EQ(full.widths[level], widths[level]) << "level " << level;
        EXPECT_EQ(full.columns[level], columns[level]) << "level " << level;
        EXPECT_EQ(full.rows[level], rows[level]) << "level " << level;
        EXPECT_EQ(full.firsts[level], first) << "level " << level;
        first += columns[level] * rows[level];
    }
    EXPECT_EQ(full.tiles, first);
}

TEST_F(PnoBlocks, TheIdentityNumberReadsLettersAsBase26)
{
    EXPECT_EQ(panoIdFromName("AAAAAAAAAAAAAB"), 1u);
    EXPECT_EQ(panoIdFromName("aaaaaaaaaaaaab"), 1u);
    EXPECT_EQ(panoIdFromName("00000000000000"), 0u);
    EXPECT_EQ(panoIdFromName("BA"), 26u);
    EXPECT_EQ(panoIdFromName("Z9z"), 25u * 26 * 26 + 25);
    EXPECT_EQ(panoIdFromName(""), 0u);
}

TEST_F(PnoBlocks, TheReaderGivesTheIdentityNumber)
{
    for (const char* identity : {"AAAAAAAAAAAAAB", "aaaaaaaaaaaaab"}) {
        PnoOptions options;
        options.identity = identity;
        ASSERT_EQ(open(pnotest::parts(options)), pno::Ok);
        EXPECT_EQ(m_file->panoId(), 1u);
    }
    PnoOptions digits;
    digits.identity = "00000000000000";
    ASSERT_EQ(open(pnotest::parts(digits)), pno::Ok);
    EXPECT_EQ(m_file->panoId(), 0u);
}
