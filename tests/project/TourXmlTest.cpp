// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The tour description, byte for byte against text written by hand.

#include "project/TourXml.h"
#include "tests/project/Tours.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";
constexpr const char* kB = "BBBBBBBBBBBBBB";

std::string built(RoamProject& project, int entry = 0)
{
    return tourxml::build(project, entry).toUtf8().toStdString();
}

/// Two panoramas, one with every kind of hotspot, one link.
void fill(TourForTest& tour)
{
    PanoNode* a = tour.add(kA, QStringLiteral("room 1"));
    a->parameters.pixel_scale = 0.0015339807878856;
    a->parameters.output_min_x = -3.141592653589793;
    a->parameters.output_max_x = 3.141592653589793;
    a->parameters.output_min_y = 0;
    a->parameters.output_max_y = 3.141592653589793;
    a->lidar = true;
    a->position_x = 1.5;
    a->position_y = -2.25;
    a->position_z = 0.00000004;
    a->vertex_x = 1234567.12345678;
    a->vertex_y = -0.5;
    a->direction = 3.14159265;
    a->plan_center_x = -1;
    a->plan_center_y = 42;
    a->plan_src = QStringLiteral("/work/Tmp/x-00000000.png");
    a->photos.append(
        {0.25, 1.5, 640, 480, QStringLiteral("a<b & c>d"), QStringLiteral("/p/photo 1.jpg"), {}});
    a->photos.append({0.5, 1.5, 0, 0, QStringLiteral("no file"), QString(), {}});
    a->infos.append({-1.0, 1.5707963267949, QStringLiteral("a<b & c>d"), QStringLiteral("a<b & c>d"), {}});
    tour.add(kB, QStringLiteral(u"客厅"));
    PanoLink* link = tour.link(kA, kB);
    link->rot_0 = 0.1;
    link->rot_1 = -0.2;
    link->tilt_x0 = 0.3;
    link->tilt_x1 = 0.4;
    link->tilt_y0 = 0.5;
    link->icon_y0 = 2.356194490192345;
    link->icon_y1 = 2.0;
    link->spacing = 3.75;
    link->mode = 2;
    link->reliability = 0.987654321;
}

const char* const kExpected =
    "\t<pano_group group_id=\"BBBBBBBBBBBBBB\">\r\n"
    "\t\t<entry_point pano_id=\"BBBBBBBBBBBBBB\" direction=\"0\" elevation=\"1.5707963267949\""
    " view_angle=\"1.5707963267949\"/>\r\n"
    "\t\t<panorama_list>\r\n"
    "\t\t\t<panorama pano_id=\"AAAAAAAAAAAAAB\" base_name=\"room 1\">\r\n"
    "\t\t\t\t<image_attributes max_zoom_level=\"12\" mosaic_pixel_size=\"256\" "
    "pixel_scale=\"0.0015339807879\""
    " output_min_x=\"-3.1415926535898\" output_min_y=\"0.0000000000000\" output_max_x=\"3.1415926535898\""
    " output_max_y=\"3.1415926535898\" lidar=\"1\"/>\r\n"
    "\t\t\t\t<location position_x = \"1.5000000\" position_y=\"-2.2500000\" position_z=\"0.0000000\""
    " vertex_x=\"1234567.1234568\" vertex_y=\"-0.5000000\" direction=\"3.1415927\" plan_center_x=\"-1\""
    " plan_center_y=\"42\" plan_src=\"x-00000000.png\"/>\r\n"
    "\t\t\t\t<notes>room 1</notes>\r\n"
    "\t\t\t\t<link_photo sphere_x=\"0.2500000\" sphere_y=\"1.5000000\" caption=\"a<b & c>d\""
    " src=\"photo 1.jpg\"/>\r\n"
    "\t\t\t\t<link_info sphere_x=\"-1.0000000\" sphere_y=\"1.5707963\" caption=\"a<b & c>d\">"
    "a&lt;b &amp; c&gt;d</link_info>\r\n"
    "\t\t\t</panorama>\r\n"
    "\t\t\t<panorama pano_id=\"BBBBBBBBBBBBBB\" base_name=\"\xE5\xAE\xA2\xE5\x8E\x85\">\r\n"
    "\t\t\t\t<image_attributes max_zoom_level=\"12\" mosaic_pixel_size=\"256\" "
    "pixel_scale=\"0.0000000000000\""
    " output_min_x=\"0.0000000000000\" output_min_y=\"0.0000000000000\" output_max_x=\"0.0000000000000\""
    " output_max_y=\"0.0000000000000\" lidar=\"0\"/>\r\n"
    "\t\t\t\t<location position_x = \"0.0000000\" position_y=\"0.0000000\" position_z=\"0.0000000\""
    " vertex_x=\"0.0000000\" vertex_y=\"0.0000000\" direction=\"0.0000000\" plan_center_x=\"0\""
    " plan_center_y=\"0\" plan_src=\"\"/>\r\n"
    "\t\t\t\t<notes>\xE5\xAE\xA2\xE5\x8E\x85</notes>\r\n"
    "\t\t\t</panorama>\r\n"
    "\t\t</panorama_list>\r\n"
    "\t\t<pano_link_list>\r\n"
    "\t\t\t<pano_link pano_id_0=\"AAAAAAAAAAAAAB\" pano_id_1=\"BBBBBBBBBBBBBB\" rot_0=\"0.1000000\""
    " rot_1=\"-0.2000000\" tilt_x0=\"0.3000000\" tilt_x1=\"0.4000000\" tilt_y0=\"0.5000000\""
    " icon_y0=\"2.3561945\" icon_y1=\"2.0000000\" spacing=\"3.7500000\" mode=\"2\""
    " reliability=\"0.9876543\"/>\r\n"
    "\t\t</pano_link_list>\r\n"
    "\t</pano_group>\r\n";

TEST(TourXml, TheWholeDescriptionByteForByte)
{
    TourForTest tour;
    fill(tour);
    EXPECT_EQ(built(tour.project, 1), kExpected);
}

TEST(TourXml, NumbersNeverUseALocalesDecimalComma)
{
    TourForTest tour;
    fill(tour);
    const QLocale before;
    const std::string numericBefore = std::setlocale(LC_NUMERIC, nullptr);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    if (!std::setlocale(LC_NUMERIC, "de_DE.UTF-8")) std::setlocale(LC_NUMERIC, "de_DE");
    const std::string text = built(tour.project, 1);
    const QString grouped = QLocale().toString(1234567.5, 'f', 1);
    std::setlocale(LC_NUMERIC, numericBefore.c_str());
    QLocale::setDefault(before);
    EXPECT_EQ(grouped, QStringLiteral("1.234.567,5")); // the locale was really in force
    EXPECT_EQ(text, kExpected);
}

TEST(TourXml, OneAndAHalfHasExactlyTheStatedDigits)
{
    EXPECT_EQ(tourxml::fixedPoint(1.5, 7), QStringLiteral("1.5000000"));
    EXPECT_EQ(tourxml::fixedPoint(1.5, 13), QStringLiteral("1.5000000000000"));
    EXPECT_EQ(tourxml::fixedPoint(-0.125, 2).size(), 5);
    EXPECT_EQ(tourxml::fixedPoint(1e20), QStringLiteral("100000000000000000000.0000000"));
    EXPECT_EQ(tourxml::fixedPoint(1e-20), QStringLiteral("0.0000000"));
    EXPECT_EQ(tourxml::fixedPoint(0.99999996), QStringLiteral("1.0000000"));
}

TEST(TourXml, ValuesThatAreNotFiniteAreWrittenAsZero)
{
    EXPECT_EQ(tourxml::fixedPoint(std::nan("")), QStringLiteral("0.0000000"));
    EXPECT_EQ(tourxml::fixedPoint(-std::numeric_limits<double>::infinity()), QStringLiteral("0.0000000"));
}

TEST(TourXml, APhotoHotspotWithoutAPathHasNoElement)
{
    TourForTest tour;
    tour.add(kA, QStringLiteral("a"))->photos.append(PhotoHotspot());
    EXPECT_EQ(built(tour.project).find("link_photo"), std::string::npos);
}

TEST(TourXml, TextContentIsEscapedAndACaptionIsNot)
{
    InfoHotspot info;
    info.caption = QStringLiteral("a<b & c>d");
    info.content = QStringLiteral("a<b & c>d");
    const QString text = tourxml::linkInfo(info);
    EXPECT_TRUE(text.contains(QStringLiteral(">a&lt;b &amp; c&gt;d</link_info>")));
    EXPECT_TRUE(text.contains(QStringLiteral("caption=\"a<b & c>d\"")));
}

TEST(TourXml, AnAmpersandIsEscapedOnceAndFirst)
{
    EXPECT_EQ(tourxml::escapedContent(QStringLiteral("&lt;<")), QStringLiteral("&amp;lt;&lt;"));
}

TEST(TourXml, ANameWithAQuotationMarkIsWrittenAsItStands)
{
    TourForTest tour;
    tour.add(kA, QStringLiteral("a"))->base_name = QStringLiteral("say \"hi\" & <go>");
    const std::string text = built(tour.project);
    EXPECT_NE(text.find("base_name=\"say \"hi\" & <go>\">"), std::string::npos);
    EXPECT_NE(text.find("<notes>say \"hi\" & <go></notes>"), std::string::npos);
}

TEST(TourXml, APathWithoutASlashHasAnEmptyFileName)
{
    TourForTest tour;
    PanoNode* node = tour.add(kA, QStringLiteral("a"));
    node->plan_src = QStringLiteral("plan.png");
    PhotoHotspot photo;
    photo.photo_path = QStringLiteral("photo.jpg");
    node->photos.append(photo);
    const std::string text = built(tour.project);
    EXPECT_NE(text.find("plan_src=\"\""), std::string::npos);
    EXPECT_NE(text.find(" src=\"\"/>"), std::string::npos);
}

TEST(TourXml, TheListsAreWrittenWhenEmpty)
{
    TourForTest tour;
    tour.add(kA, QStringLiteral("a"));
    EXPECT_NE(
        built(tour.project).find("\t\t<pano_link_list>\r\n\t\t</pano_link_list>\r\n\t</pano_group>\r\n"),
        std::string::npos);
}

TEST(TourXml, ANegativeEntrySelectionYieldsTheFirstPanorama)
{
    TourForTest tour;
    fill(tour);
    tour.project.entry_index = 1;
    EXPECT_NE(built(tour.project, -1).find("group_id=\"AAAAAAAAAAAAAB\""), std::string::npos);
    EXPECT_EQ(tour.project.entry_index, 0);
}

TEST(TourXml, TheEntrySelectionIsStored)
{
    TourForTest tour;
    fill(tour);
    built(tour.project, 1);
    EXPECT_EQ(tour.project.entry_index, 1);
}

TEST(TourXml, AnEntrySelectionBehindTheLastPanoramaYieldsTheFirst)
{
    TourForTest tour;
    fill(tour);
    EXPECT_NE(built(tour.project, 2).find("group_id=\"AAAAAAAAAAAAAB\""), std::string::npos);
    EXPECT_EQ(tour.project.entry_index, 0);
}

TEST(TourXml, WithoutPanoramasTheDescriptionIsEmptyAndTheEntrySettled)
{
    RoamProject project;
    project.entry_index = 3;
    EXPECT_EQ(tourxml::build(project, 5), QString());
    EXPECT_EQ(project.entry_index, 0);
}

TEST(TourXml, AnIdentityIsTakenByteByByteAsLatin1AndEndsAtSixteenBytes)
{
    char name[16];
    std::memset(name, 'Z', sizeof name);
    name[0] = static_cast<char>(0xE9);
    EXPECT_EQ(tourxml::identityText(name), QString(QChar(0xE9)) + QString(15, QLatin1Char('Z')));
}

TEST(TourXml, TheUploadsLinkHasNoReliability)
{
    PanoLink link;
    EXPECT_TRUE(tourxml::panoLink(link).endsWith(QStringLiteral(" mode=\"1\" reliability=\"0.0000000\"/>")));
    EXPECT_TRUE(
        tourxml::panoLink(link, tourxml::Reliability::LeftOut).endsWith(QStringLiteral(" mode=\"1\"/>")));
}

} // namespace
