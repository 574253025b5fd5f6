// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What pictures say of themselves: EXIF time, GPano crop; and times as people write them.
#include "tests/pnomaker/Metadata.h"
#include "companions/pnotool/input/Exif.h"
#include "companions/pnotool/input/SphereFacts.h"

#include <gtest/gtest.h>

namespace {

using namespace pnotest;
using namespace pnotool;

void expectMoment(const std::optional<CaptureMoment>& moment, std::uint32_t year, std::uint32_t month,
                  std::uint32_t day, std::uint32_t hour, std::uint32_t minute, std::uint32_t second,
                  std::uint32_t millisecond)
{
    ASSERT_TRUE(moment.has_value());
    EXPECT_EQ(moment->year, year);
    EXPECT_EQ(moment->month, month);
    EXPECT_EQ(moment->day, day);
    EXPECT_EQ(moment->hour, hour);
    EXPECT_EQ(moment->minute, minute);
    EXPECT_EQ(moment->second, second);
    EXPECT_EQ(moment->millisecond, millisecond);
}

TEST(Exif, TheOriginalTimeWithItsFractionIsTakenInBothByteOrders)
{
    for (const bool bigEndian : {false, true})
        expectMoment(momentFromExif(exifBlock("2021:03:04 05:06:07", "89", bigEndian)), 2021, 3, 4, 5, 6, 7,
                     890);
}

TEST(Exif, AFractionOfFiveDigitsIsCutToMilliseconds)
{
    expectMoment(momentFromExif(exifBlock("2021:03:04 05:06:07", "12345", false)), 2021, 3, 4, 5, 6, 7, 123);
}

TEST(Exif, TimesThatAreNoneAreNotTaken)
{
    EXPECT_FALSE(momentFromExif(exifBlock("0000:00:00 00:00:00", "", false)));
    EXPECT_FALSE(momentFromExif(exifBlock("2021:13:04 05:06:07", "", false)));
    EXPECT_FALSE(momentFromExif(exifBlock("1969:12:31 23:59:59", "", false)));
    EXPECT_FALSE(momentFromExif(exifBlock("yesterday", "", false)));
    EXPECT_FALSE(momentFromExif(""));
}

TEST(Exif, BlocksCutAnywhereOrBentNeverCrash)
{
    const std::string whole = exifBlock("2021:03:04 05:06:07", "89", true);
    for (std::size_t size = 0; size < whole.size(); ++size)
        (void)momentFromExif(whole.substr(0, size));
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const char value : {'\x00', '\x7F', '\xFF'}) {
            std::string bent = whole;
            bent[at] = value;
            (void)momentFromExif(bent);
        }
}

TEST(Iso8601, IsReadWithMoreOrLessOfIt)
{
    expectMoment(momentFromIso8601("2024-05-31"), 2024, 5, 31, 0, 0, 0, 0);
    expectMoment(momentFromIso8601("2024-05-31T14:30"), 2024, 5, 31, 14, 30, 0, 0);
    expectMoment(momentFromIso8601("2024-05-31 14:30:59"), 2024, 5, 31, 14, 30, 59, 0);
    expectMoment(momentFromIso8601("2024-05-31T14:30:59.25"), 2024, 5, 31, 14, 30, 59, 250);
    expectMoment(momentFromIso8601("2024-05-31T14:30:59.123456Z"), 2024, 5, 31, 14, 30, 59, 123);
    expectMoment(momentFromIso8601("2024-05-31T14:30:59+08:00"), 2024, 5, 31, 14, 30, 59, 0);
    expectMoment(momentFromIso8601("2024-05-31T14:30:59-0330"), 2024, 5, 31, 14, 30, 59, 0);
}

TEST(Iso8601, AnythingElseIsNotATime)
{
    for (const char* text :
         {"", "today", "2024", "2024-13-01", "2024-00-01", "2024-01-32", "2024-01-01T", "2024-01-01T24:00",
          "2024-01-01T10:60", "2024-01-01T10:00:60", "2024-01-01T10:00x", "2024-01-01x", "1969-01-01",
          "2101-01-01", "2024-01-01T10:00:00+", "2024-01-01T10:00:00+08:"})
        EXPECT_FALSE(momentFromIso8601(text)) << text;
}

TEST(SphereFacts, AreReadAsAttributesUnderAnyPrefix)
{
    for (const char* prefix : {"GPano", "p"}) {
        const SphereFacts facts = sphereFacts(gpanoPacket(prefix, {4000, 2000, 4000, 1500, 0, 100}));
        EXPECT_EQ(facts.projection, "equirectangular");
        ASSERT_TRUE(facts.crop.has_value());
        EXPECT_EQ(facts.crop->full_width, 4000);
        EXPECT_EQ(facts.crop->full_height, 2000);
        EXPECT_EQ(facts.crop->width, 4000);
        EXPECT_EQ(facts.crop->height, 1500);
        EXPECT_EQ(facts.crop->left, 0);
        EXPECT_EQ(facts.crop->top, 100);
    }
}

TEST(SphereFacts, AreReadAsElements)
{
    const std::string packet = "<rdf:Description xmlns:GPano=\"http://ns.google.com/photos/1.0/panorama/\">"
                               "<GPano:ProjectionType>equirectangular</GPano:ProjectionType>"
                               "<GPano:FullPanoWidthPixels>100</GPano:FullPanoWidthPixels>"
                               "<GPano:FullPanoHeightPixels>50</GPano:FullPanoHeightPixels>"
                               "<GPano:CroppedAreaImageWidthPixels> 100 </GPano:CroppedAreaImageWidthPixels>"
                               "<GPano:CroppedAreaImageHeightPixels>40</GPano:CroppedAreaImageHeightPixels>"
                               "<GPano:CroppedAreaLeftPixels>0</GPano:CroppedAreaLeftPixels>"
                               "<GPano:CroppedAreaTopPixels>5</GPano:CroppedAreaTopPixels></rdf:Description>";
    const SphereFacts facts = sphereFacts(packet);
    ASSERT_TRUE(facts.crop.has_value());
    EXPECT_EQ(facts.crop->width, 100);
    EXPECT_EQ(facts.crop->top, 5);
    for (std::size_t size = 0; size < packet.size(); ++size)
        (void)sphereFacts(packet.substr(0, size));
}

TEST(SphereFacts, APacketWithoutThemSaysNothing)
{
    EXPECT_FALSE(sphereFacts("").crop);
    EXPECT_FALSE(sphereFacts("<x xmlns:dc=\"http://purl.org/dc/elements/1.1/\" dc:title=\"a\"/>").crop);
    EXPECT_FALSE(sphereFacts("http://ns.google.com/photos/1.0/panorama/").crop);
}

} // namespace
