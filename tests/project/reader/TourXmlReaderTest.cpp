// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/TourXmlReader.h"
#include "project/PanoIdentity.h"
#include "project/TourXml.h"
#include "tests/project/Tours.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace {

constexpr double kHorizon = 1.5707963267949;

QByteArray description(const QByteArray& panoramas, const QByteArray& links = "",
                       const QByteArray& entry = "<entry_point/>")
{
    return "<pano_group>" + entry + "<panorama_list>" + panoramas + "</panorama_list><pano_link_list>" +
           links + "</pano_link_list></pano_group>";
}

tourxml::Description readXml(const QByteArray& xml)
{
    tourxml::Description said;
    QString error;
    EXPECT_TRUE(tourxml::read(xml, &said, &error)) << error.toStdString();
    return said;
}

std::string refusal(const QByteArray& xml)
{
    tourxml::Description said;
    QString error;
    return tourxml::read(xml, &said, &error) ? "none" : error.toStdString();
}

PanoNode panorama(const QByteArray& inside, const QByteArray& attributes = "")
{
    const auto said = readXml(description("<panorama " + attributes + ">" + inside + "</panorama>"));
    return said.panoramas.size() == 1 ? *said.panoramas[0] : PanoNode();
}

PanoLink link(const QByteArray& attributes)
{
    const auto said = readXml(description("", "<pano_link " + attributes + "/>"));
    return said.links.size() == 1 ? *said.links[0] : PanoLink();
}

TEST(TourXmlReader, TheEntryViewIsReadAndLooksLevelAtTheMiddleByDefault)
{
    const auto plain = readXml(description("")).entry_view;
    EXPECT_EQ(plain.direction, 0.0);
    EXPECT_EQ(plain.elevation, kHorizon);
    EXPECT_EQ(plain.view_angle, 1.5707963267949);
    const auto said =
        readXml(description("", "", "<entry_point direction='-2.5' elevation='1.2' view_angle='x'/>"))
            .entry_view;
    EXPECT_EQ(said.direction, -2.5);
    EXPECT_EQ(said.elevation, 1.2);
    EXPECT_EQ(said.view_angle, 0.0); // no number
}

TEST(TourXmlReader, APanoramaWithoutAnythingHasZeros)
{
    const PanoNode node = panorama("");
    EXPECT_EQ(node.id, 0u);
    EXPECT_FALSE(node.lidar);
    EXPECT_EQ(node.position_x, 0.0);
    EXPECT_EQ(node.direction, 0.0);
    EXPECT_EQ(node.plan_center_x, 0);
    EXPECT_TRUE(node.plan_src.isEmpty());
    EXPECT_TRUE(node.base_name.isEmpty());
    EXPECT_TRUE(node.photos.isEmpty());
    EXPECT_TRUE(node.infos.isEmpty());
}

TEST(TourXmlReader, ALocationWithoutAttributesHasZerosAndNoPlan)
{
    const PanoNode node = panorama("<location/><image_attributes/>");
    EXPECT_EQ(node.vertex_y, 0.0);
    EXPECT_EQ(node.plan_center_y, 0);
    EXPECT_TRUE(node.plan_src.isEmpty());
    EXPECT_FALSE(node.lidar);
}

TEST(TourXmlReader, LocationIsReadWithBlanksAboutTheFirstEqualsSign)
{
    const PanoNode node =
        panorama("<location position_x = \"1.5\" position_y=\"-2\" position_z=\"3e2\" vertex_x=\"4\" "
                 "vertex_y=\"5\" direction=\"-0.25\" plan_center_x=\"-7\" plan_center_y=\"8\" "
                 "plan_src=\"x-00000000.cld\"/>",
                 "pano_id=\"AAAAAAAAAAAABA\"");
    EXPECT_EQ(node.id, 26u);
    EXPECT_EQ(node.position_x, 1.5);
    EXPECT_EQ(node.position_y, -2.0);
    EXPECT_EQ(node.position_z, 300.0);
    EXPECT_EQ(node.vertex_x, 4.0);
    EXPECT_EQ(node.vertex_y, 5.0);
    EXPECT_EQ(node.direction, -0.25);
    EXPECT_EQ(node.plan_center_x, -7);
    EXPECT_EQ(node.plan_center_y, 8);
    EXPECT_EQ(node.plan_src, QStringLiteral("x-00000000.cld"));
}

TEST(TourXmlReader, OnlyTheFirstLocationAndImageAttributesCount)
{
    const PanoNode node = panorama("<location direction=\"1\"/><location direction=\"2\"/>"
                                   "<image_attributes lidar=\"0\"/><image_attributes lidar=\"1\"/>");
    EXPECT_EQ(node.direction, 1.0);
    EXPECT_FALSE(node.lidar);
}

TEST(TourXmlReader, LidarIsSetByOneAndNothingElse)
{
    EXPECT_TRUE(panorama("<image_attributes lidar=\"1\"/>").lidar);
    for (const char* text : {"0", "", "true", "01", " 1", "2"})
        EXPECT_FALSE(panorama(QByteArray("<image_attributes lidar=\"") + text + "\"/>").lidar) << text;
}

TEST(TourXmlReader, BaseNameNotesAndImageAttributesAreLeftToThePanoramaFile)
{
    const PanoNode node = panorama(
        "<image_attributes max_zoom_level=\"12\" pixel_scale=\"1\"/><notes>n</notes>", "base_name=\"room\"");
    EXPECT_TRUE(node.base_name.isEmpty());
    EXPECT_EQ(node.parameters.max_zoom_level, 0u);
}

TEST(TourXmlReader, NumbersThatDoNotConvertAreZero)
{
    for (const char* text : {"", "x", "1,5", "1.5m", "0x10", "nan", "inf", "1e999", "1 2"})
        EXPECT_EQ(panorama(QByteArray("<location position_x=\"") + text + "\"/>").position_x, 0.0) << text;
    for (const char* text : {"", "x", "1.5", "99999999999", "-2147483649"})
        EXPECT_EQ(panorama(QByteArray("<location plan_center_x=\"") + text + "\"/>").plan_center_x, 0)
            << text;
    EXPECT_EQ(panorama("<location plan_center_x=\"-2147483648\"/>").plan_center_x, -2147483647 - 1);
}

TEST(TourXmlReader, APhotoWithoutAttributesHasTheDefaultsOfTheFormat)
{
    const PanoNode node = panorama("<link_photo/>");
    ASSERT_EQ(node.photos.size(), 1);
    EXPECT_EQ(node.photos[0].sphere_x, 0.0);
    EXPECT_EQ(node.photos[0].sphere_y, kHorizon);
    EXPECT_EQ(node.photos[0].caption, QStringLiteral("0"));
    EXPECT_EQ(node.photos[0].photo_path, QStringLiteral("0"));
    EXPECT_EQ(node.photos[0].photo_width, 0);
}

TEST(TourXmlReader, APhotoWithoutSphereYLiesOnTheEquator)
{
    EXPECT_EQ(panorama("<link_photo sphere_x=\"2\"/>").photos[0].sphere_y, kHorizon);
}

TEST(TourXmlReader, ATextWithoutAttributesHasTheDefaultsOfTheFormat)
{
    const PanoNode node = panorama("<link_info/>");
    ASSERT_EQ(node.infos.size(), 1);
    EXPECT_EQ(node.infos[0].sphere_x, 0.0);
    EXPECT_EQ(node.infos[0].sphere_y, kHorizon);
    EXPECT_EQ(node.infos[0].caption, QStringLiteral("0"));
    EXPECT_TRUE(node.infos[0].content.isEmpty());
}

TEST(TourXmlReader, HotspotsAreFoundAtAnyDepthInDocumentOrder)
{
    const PanoNode node = panorama("<link_info caption='1'/><g><link_photo caption='2'/><h><link_info "
                                   "caption='3'/></h></g><link_photo caption='4'/>");
    ASSERT_EQ(node.photos.size(), 2);
    ASSERT_EQ(node.infos.size(), 2);
    EXPECT_EQ(node.photos[0].caption + node.photos[1].caption, QStringLiteral("24"));
    EXPECT_EQ(node.infos[0].caption + node.infos[1].caption, QStringLiteral("13"));
}

TEST(TourXmlReader, ContentIsUnescapedOnceMoreAfterTheParser)
{
    const auto content = [](const QByteArray& text) {
        return panorama("<link_info>" + text + "</link_info>").infos.value(0).content;
    };
    EXPECT_EQ(content("a&lt;b &amp; c&gt;d"), QStringLiteral("a<b & c>d"));
    EXPECT_EQ(content("&amp;lt;"), QStringLiteral("<"));
    EXPECT_EQ(content("&amp;gt;"), QStringLiteral(">"));
    EXPECT_EQ(content("&amp;amp;"), QStringLiteral("&"));
    // In this order, so that what the last step yields stays.
    EXPECT_EQ(content("&amp;amp;lt;"), QStringLiteral("&lt;"));
    EXPECT_EQ(content("  two\nlines "), QStringLiteral("  two\nlines "));
}

TEST(TourXmlReader, NamesOfPlacesInTheFileSystemAreNotTakenOver)
{
    for (const char* name : {"/etc/passwd", "../secret.jpg", "C:secret.jpg", "a\\b.jpg"}) {
        const PanoNode node =
            panorama(QByteArray("<location plan_src=\"") + name + "\"/><link_photo src=\"" + name + "\"/>");
        EXPECT_TRUE(node.plan_src.isEmpty()) << name;
        EXPECT_TRUE(node.photos[0].photo_path.isEmpty()) << name;
    }
}

TEST(TourXmlReader, ALinkWithoutAttributesHasTheDefaultsOfTheFormat)
{
    const PanoLink read = link("");
    EXPECT_STREQ(read.name_0, "aaaaaaaaaaaaaa");
    EXPECT_STREQ(read.name_1, "aaaaaaaaaaaaaa");
    EXPECT_EQ(read.id_0, 0);
    EXPECT_EQ(read.rot_0, kHorizon);
    EXPECT_EQ(read.rot_1, kHorizon);
    EXPECT_EQ(read.tilt_x0, 0.0);
    EXPECT_EQ(read.tilt_x1, 0.0);
    EXPECT_EQ(read.tilt_y0, 0.0);
    EXPECT_EQ(read.icon_y0, 2.356);
    EXPECT_EQ(read.icon_y1, 2.356);
    EXPECT_EQ(read.spacing, 2.0);
    EXPECT_EQ(read.mode, 2);
    EXPECT_EQ(read.reliability, 0.0);
    EXPECT_TRUE(read.match_path_0.isEmpty());
}

TEST(TourXmlReader, ALinksValuesAreItsAttributes)
{
    const PanoLink read = link(
        "pano_id_0='AAAAAAAAAAAAAB' pano_id_1='AAAAAAAAAAAAAC' rot_0='1' rot_1='2' tilt_x0='3' tilt_x1='4' "
        "tilt_y0='5' icon_y0='6' icon_y1='7' spacing='8' mode='2' reliability='0.5'");
    EXPECT_STREQ(read.name_0, "AAAAAAAAAAAAAB");
    EXPECT_STREQ(read.name_1, "AAAAAAAAAAAAAC");
    EXPECT_EQ(read.id_0, 1);
    EXPECT_EQ(read.id_1, 2);
    EXPECT_EQ(read.rot_0, 1.0);
    EXPECT_EQ(read.rot_1, 2.0);
    EXPECT_EQ(read.tilt_x0, 3.0);
    EXPECT_EQ(read.tilt_x1, 4.0);
    EXPECT_EQ(read.tilt_y0, 5.0);
    EXPECT_EQ(read.icon_y0, 6.0);
    EXPECT_EQ(read.icon_y1, 7.0);
    EXPECT_EQ(read.spacing, 8.0);
    EXPECT_EQ(read.reliability, 0.5);
}

TEST(TourXmlReader, ALinkWithoutModeHasModeTwoAndEveryOtherModeIsOne)
{
    EXPECT_EQ(link("").mode, 2);
    EXPECT_EQ(link("mode='2'").mode, 2);
    for (const char* mode : {"0", "1", "3", "-1", "", "2.0", "x"})
        EXPECT_EQ(link(QByteArray("mode='") + mode + "'").mode, 1) << mode;
}

TEST(TourXmlReader, AnIdentityTooLongForItsFieldIsCutAndTerminated)
{
    const PanoLink read = link("pano_id_0='ABCDEFGHIJKLMNOPQRST'");
    EXPECT_STREQ(read.name_0, "ABCDEFGHIJKLMNO");
    EXPECT_EQ(read.id_0, static_cast<qint64>(panoIdFromName("ABCDEFGHIJKLMNO")));
}

TEST(TourXmlReader, LinksAreFoundAtAnyDepthOfTheirListAndNowhereElse)
{
    const auto said =
        readXml("<pano_group><pano_link/><entry_point pano_id='AAAAAAAAAAAAAC'/><panorama_list/>"
                "<pano_link_list><g><pano_link spacing='3'/></g><pano_link spacing='4'/>"
                "</pano_link_list><panorama/></pano_group>");
    EXPECT_TRUE(said.panoramas.empty());
    ASSERT_EQ(said.links.size(), 2u);
    EXPECT_EQ(said.links[0]->spacing, 3.0);
    EXPECT_EQ(said.links[1]->spacing, 4.0);
    EXPECT_EQ(said.entry_id, 2u);
}

TEST(TourXmlReader, AMissingPartIsNamed)
{
    EXPECT_EQ(refusal("<group/>"), "its description has no pano_group");
    EXPECT_EQ(refusal("<pano_group><entry_point/><pano_link_list/></pano_group>"),
              "its description has no panorama_list");
    EXPECT_EQ(refusal("<pano_group><panorama_list/><pano_link_list/></pano_group>"),
              "its description has no entry_point");
    EXPECT_EQ(refusal("<pano_group><entry_point/><panorama_list/></pano_group>"),
              "its description has no pano_link_list");
    EXPECT_EQ(refusal(description("")), "none");
}

TEST(TourXmlReader, APartThatIsNoChildOfTheRootIsMissing)
{
    EXPECT_EQ(refusal("<pano_group><g><entry_point/></g><panorama_list/><pano_link_list/></pano_group>"),
              "its description has no entry_point");
}

TEST(TourXmlReader, AQuotationMarkInACaptionIsARefusal)
{
    EXPECT_NE(refusal(description("<panorama><link_photo caption=\"the \"big\" room\"/></panorama>"))
                  .find("cannot be read"),
              std::string::npos);
}

TEST(TourXmlReader, ARefusedDescriptionLeavesTheRecordAsItWas)
{
    tourxml::Description said = readXml(description("<panorama/>"));
    QString error;
    EXPECT_FALSE(tourxml::read("<pano_group/>", &said, &error));
    EXPECT_EQ(said.panoramas.size(), 1u);
}

TEST(TourXmlReader, ReadsWhatTheProgramWrites)
{
    TourForTest tour;
    PanoNode* node = tour.add("ZZZZZZZZZZZZZZ", QStringLiteral("客厅 '1'"));
    node->lidar = true;
    node->position_z = -0.00000001;
    node->infos.append(InfoHotspot());
    node->infos[0].content = QStringLiteral("<a href=\"x\">&</a>\n");
    tour.link("ZZZZZZZZZZZZZZ", "AAAAAAAAAAAAAB")->mode = LinkByPose;
    const auto said = readXml(tourxml::build(tour.project, 0).toUtf8());
    ASSERT_EQ(said.panoramas.size(), 1u);
    EXPECT_EQ(said.panoramas[0]->id, node->id);
    EXPECT_EQ(said.entry_id, node->id);
    EXPECT_TRUE(said.panoramas[0]->lidar);
    EXPECT_EQ(said.panoramas[0]->infos[0].content, node->infos[0].content);
    ASSERT_EQ(said.links.size(), 1u);
    EXPECT_STREQ(said.links[0]->name_0, "ZZZZZZZZZZZZZZ");
    EXPECT_EQ(said.links[0]->mode, LinkByPose);
}

TEST(TourXmlReader, NumbersIgnoreTheLocale)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(panorama("<location position_x=\"1.5\" position_y=\"1,5\"/>").position_x, 1.5);
    QLocale::setDefault(before);
}

} // namespace
