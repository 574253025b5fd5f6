// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Adding, removing and wording the hotspots of a panorama.

#include "project/HotspotEdits.h"

#include <gtest/gtest.h>

namespace {

QString captions(const PanoNode& panorama)
{
    QString all;
    for (const PhotoHotspot& photo : panorama.photos)
        all += photo.caption;
    for (const InfoHotspot& info : panorama.infos)
        all += info.caption;
    return all;
}

TEST(HotspotEdits, ANewHotspotStandsLastWhereItWasPutAndIsEmpty)
{
    PanoNode panorama;
    hotspots::addPhoto(panorama, 0.5, 1.0);
    hotspots::addPhoto(panorama, -4.0, 3.0);
    hotspots::addInfo(panorama, 4.0, 0.25);
    ASSERT_EQ(panorama.photos.size(), 2);
    const PhotoHotspot& photo = panorama.photos.last();
    EXPECT_EQ(photo.sphere_x, -4.0);
    EXPECT_EQ(photo.sphere_y, 3.0);
    EXPECT_EQ(photo.photo_width, 0);
    EXPECT_EQ(photo.photo_height, 0);
    EXPECT_TRUE(photo.caption.isEmpty() && photo.photo_path.isEmpty());
    ASSERT_EQ(panorama.infos.size(), 1);
    const InfoHotspot& info = panorama.infos.last();
    EXPECT_EQ(info.sphere_x, 4.0);
    EXPECT_EQ(info.sphere_y, 0.25);
    EXPECT_TRUE(info.caption.isEmpty() && info.content.isEmpty());
}

TEST(HotspotEdits, RemovingKeepsTheOrderOfTheRest)
{
    PanoNode panorama;
    for (const char* caption : {"a", "b", "c"}) {
        hotspots::addPhoto(panorama, 0, 1);
        panorama.photos.last().caption = QLatin1String(caption);
        hotspots::addInfo(panorama, 0, 1);
        panorama.infos.last().caption = QString(QLatin1String(caption)).toUpper();
    }
    EXPECT_TRUE(hotspots::removePhoto(panorama, 1));
    EXPECT_TRUE(hotspots::removeInfo(panorama, 0));
    EXPECT_EQ(captions(panorama), QStringLiteral("acBC"));
}

TEST(HotspotEdits, ARowThatIsNotThereChangesNothing)
{
    PanoNode panorama;
    hotspots::addPhoto(panorama, 0, 1);
    hotspots::addInfo(panorama, 0, 1);
    for (const int row : {-1, 1, 1000}) {
        EXPECT_FALSE(hotspots::removePhoto(panorama, row));
        EXPECT_FALSE(hotspots::removeInfo(panorama, row));
        EXPECT_EQ(hotspots::photoAt(&panorama, row), nullptr);
        EXPECT_EQ(hotspots::infoAt(&panorama, row), nullptr);
    }
    EXPECT_EQ(hotspots::photoAt(nullptr, 0), nullptr);
    EXPECT_EQ(hotspots::infoAt(nullptr, 0), nullptr);
    EXPECT_EQ(hotspots::photoAt(&panorama, 0), &panorama.photos[0]);
    EXPECT_EQ(hotspots::infoAt(&panorama, 0), &panorama.infos[0]);
    EXPECT_EQ(panorama.photos.size() + panorama.infos.size(), 2);
}

TEST(HotspotEdits, TheSameTextAgainIsNoChange)
{
    PhotoHotspot photo;
    InfoHotspot info;
    const QString text = QStringLiteral(u"标题 & <é>");
    EXPECT_TRUE(hotspots::setCaption(photo, text));
    EXPECT_FALSE(hotspots::setCaption(photo, text));
    EXPECT_TRUE(hotspots::setCaption(info, text));
    EXPECT_FALSE(hotspots::setCaption(info, text));
    EXPECT_TRUE(hotspots::setContent(info, text));
    EXPECT_FALSE(hotspots::setContent(info, text));
    EXPECT_EQ(photo.caption, text);
    EXPECT_EQ(info.caption, text);
    EXPECT_EQ(info.content, text);
}

TEST(HotspotEdits, TheFirstCellsSayThePictureSizeAndTheLengthInCharacters)
{
    PhotoHotspot photo;
    EXPECT_EQ(hotspots::sizeCell(photo), QStringLiteral("0x0"));
    photo.photo_width = 4096;
    photo.photo_height = 2457;
    EXPECT_EQ(hotspots::sizeCell(photo), QStringLiteral("4096x2457"));
    InfoHotspot info;
    EXPECT_EQ(hotspots::lengthCell(info), QStringLiteral("0"));
    info.content = QStringLiteral(u"五个字的话");
    EXPECT_EQ(hotspots::lengthCell(info), QStringLiteral("5"));
}

} // namespace
