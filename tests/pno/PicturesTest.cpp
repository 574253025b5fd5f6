// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The assembled picture's places, sizes and formats, and the thumbnail.

#include "tests/pno/PictureFixture.h"

#include "linking/pictures/Thumbnail.h"
#include "linking/pno/PnoFile.h"
#include "project/LocalText.h"

#include <QCoreApplication>

#include <thread>

class PictureWidths : public Pictures, public testing::WithParamInterface<std::tuple<int, int>>
{};

TEST_P(PictureWidths, ColumnsRunFromRightToLeft)
{
    const int width = std::get<0>(GetParam());
    const int level = width == 8192 ? 10 : 8;
    const QString path = writeTiles(onlyAt(level, pnotest::colouredTiles()),
                                    static_cast<std::uint32_t>(std::get<1>(GetParam())));
    QImage picture = blank(width, width / 2);
    ASSERT_TRUE(assemblePanorama(path, &picture));
    EXPECT_EQ(picture.format(), QImage::Format_RGB888);
    for (int row = 0; row < width / 512; ++row) {
        for (int column = 0; column < width / 256; ++column) {
            const int x = width - 256 - 256 * column;
            const int y = 256 * row;
            const auto colour = pnotest::placeColour(level, column, row);
            for (const QPoint corner : {QPoint(0, 0), QPoint(255, 0), QPoint(0, 255), QPoint(255, 255)})
                ASSERT_TRUE(near(picture.pixel(QPoint(x, y) + corner), colour)) << column << ' ' << row;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Levels, PictureWidths,
                         testing::Combine(testing::Values(4096, 8192), testing::Values(10, 11, 12)));

TEST_F(Pictures, OtherWidthsAreLeftUntouched)
{
    const QString path = writeTiles(pnotest::colouredTiles());
    for (const int width : {1, 256, 2048, 4095, 4097, 8191}) {
        QImage picture = blank(width, 16);
        EXPECT_TRUE(assemblePanorama(path, &picture)) << width;
        EXPECT_TRUE(untouched(picture)) << width;
        EXPECT_EQ(overOther(path, width, 16), picture) << width;
    }
    QImage none;
    EXPECT_TRUE(assemblePanorama(path, &none));
    EXPECT_TRUE(none.isNull());
}

TEST_F(Pictures, AFileThatFailsToOpenLeavesThePictureUntouched)
{
    QImage picture = blank(4096, 2048);
    EXPECT_FALSE(assemblePanorama(QStringLiteral("/nowhere/none.pno"), &picture));
    EXPECT_FALSE(assemblePanorama(QString(), &picture));
    PnoParts bad = pnotest::parts();
    bad.tiles.back().row = 0;
    const std::string path = m_folder.write("bad.pno", bad.bytes());
    EXPECT_FALSE(assemblePanorama(QString::fromStdString(path), &picture));
    EXPECT_TRUE(untouched(picture));
    EXPECT_FALSE(assemblePanorama(QString::fromStdString(path), &picture, kBefore));
    EXPECT_EQ(overOther(QString::fromStdString(path), 4096, 2048), picture);
}

TEST_F(Pictures, RowsThatAPartialExtentDoesNotHaveStayAsTheyWere)
{
    PnoOptions options;
    options.polar_min = 0.5;
    options.polar_max = 2.5;
    options.tiles = onlyAt(8, pnotest::colouredTiles());
    const int rows = static_cast<int>(pnotest::parts(options).info.rows[8]);
    ASSERT_LT(rows, 8);
    QImage picture = blank(4096, 2048);
    ASSERT_TRUE(assemblePanorama(write(options), &picture));
    EXPECT_TRUE(near(picture.pixel(4095, 256 * rows - 1), pnotest::placeColour(8, 0, rows - 1)));
    EXPECT_TRUE(untouched(picture.copy(0, 256 * rows, 4096, 2048 - 256 * rows)));
    EXPECT_EQ(overOther(write(options), 4096, 2048), picture);
}

TEST_F(Pictures, APictureLowerThanTheTilesIsFilledToItsLastRow)
{
    const QString path = writeTiles(onlyAt(8, pnotest::colouredTiles()));
    QImage picture = blank(4096, 700);
    ASSERT_TRUE(assemblePanorama(path, &picture));
    EXPECT_TRUE(near(picture.pixel(4095, 699), pnotest::placeColour(8, 0, 2)));
    EXPECT_TRUE(near(picture.pixel(0, 699), pnotest::placeColour(8, 15, 2)));
    EXPECT_EQ(overOther(path, 4096, 700), picture);
}

TEST_F(Pictures, APictureHigherThanTheTilesKeepsItsRest)
{
    const QString path = writeTiles(onlyAt(8, pnotest::colouredTiles()));
    QImage picture = blank(4096, 2100);
    ASSERT_TRUE(assemblePanorama(path, &picture));
    EXPECT_TRUE(near(picture.pixel(4095, 2047), pnotest::placeColour(8, 0, 7)));
    EXPECT_TRUE(untouched(picture.copy(0, 2048, 4096, 52)));
    EXPECT_EQ(overOther(path, 4096, 2100), picture);
    const QImage other = picture.convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(overOther(path, 4096, 2100, QImage::Format_RGB32), other);
}

TEST_F(Pictures, OtherPixelFormatsAreKept)
{
    const QString path = writeTiles(onlyAt(8, [](int, int column, int row) {
        return column == 3 ? Bytes{0} : pnotest::solidJpeg(pnotest::placeColour(8, column, row));
    }));
    for (const QImage::Format format :
         {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA8888}) {
        QImage picture = blank(4096, 2048, format);
        ASSERT_TRUE(assemblePanorama(path, &picture));
        EXPECT_EQ(picture.format(), format);
        EXPECT_TRUE(near(squareOf(picture, 4, 2).pixel(1, 1), pnotest::placeColour(8, 4, 2)));
        EXPECT_TRUE(untouched(squareOf(picture, 3, 2)));
    }
}

TEST_F(Pictures, CopiesOfThePictureKeepTheirPixels)
{
    QImage picture = blank(4096, 2048);
    const QImage copy = picture;
    ASSERT_TRUE(assemblePanorama(writeTiles(onlyAt(8, pnotest::colouredTiles())), &picture));
    EXPECT_TRUE(untouched(copy.copy(0, 0, 4096, 1)));
    EXPECT_FALSE(untouched(picture.copy(0, 0, 4096, 1)));
}

TEST_F(Pictures, TwoPicturesAtOnceAreEachOnesOwn)
{
    const QString path = writeTiles([](int level, int column, int row) {
        return level == 8 || level == 10 ? pnotest::solidJpeg(pnotest::placeColour(level, column, row))
                                         : Bytes{0};
    });
    QImage alone = blank(4096, 2048);
    ASSERT_TRUE(assemblePanorama(path, &alone));
    QImage pictures[] = {blank(4096, 2048), blank(8192, 4096), blank(4096, 2048)};
    std::vector<std::thread> threads;
    for (QImage& picture : pictures)
        threads.emplace_back([&] { assemblePanorama(path, &picture); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(pictures[0], alone);
    EXPECT_EQ(pictures[2], alone);
    EXPECT_TRUE(near(pictures[1].pixel(0, 4095), pnotest::placeColour(10, 31, 15)));
}

TEST_F(Pictures, PathsWithChineseSpacesAndAccentsAreRead)
{
    PnoOptions options;
    options.tiles = onlyAt(8, pnotest::colouredTiles());
    const Bytes bytes = pnotest::panorama(options);
    for (const char* name : {"全景 文件夹/客厅.pno", "Éléphant à côté/naïve café.pno"}) {
        QImage picture = blank(4096, 2048);
        EXPECT_TRUE(assemblePanorama(QString::fromStdString(m_folder.write(name, bytes)), &picture)) << name;
        EXPECT_TRUE(near(picture.pixel(0, 0), pnotest::placeColour(8, 15, 0))) << name;
    }
}

class Thumbnails : public Pictures
{
protected:
    QImage thumbnailOf(const Bytes& smallestTile)
    {
        const auto file = std::make_unique<PnoFile>();
        const QString path =
            writeTiles([&](int level, int, int) { return level == 0 ? smallestTile : Bytes{0}; });
        EXPECT_EQ(file->Open(localtext::toLocal(path).constData()), pno::Ok);
        return panoramaThumbnail(*file);
    }
};

TEST_F(Thumbnails, AreTheStripAboutTheHorizonOfTheSmallestTile)
{
    const Bytes tile = encoded(texture(256, 256, 7), "png");
    const QImage thumbnail = thumbnailOf(tile);
    EXPECT_EQ(thumbnail.size(), QSize(256, 96));
    EXPECT_EQ(thumbnail, loaded(tile).copy(0, 16, 256, 96));
    EXPECT_EQ(thumbnailOf(pnotest::solidJpeg({200, 0, 0})).size(), QSize(256, 96));
}

TEST_F(Thumbnails, AreNullWhenTheTileIsNoPictureOrNotThere)
{
    EXPECT_TRUE(thumbnailOf({}).isNull());
    EXPECT_TRUE(thumbnailOf(Bytes(3000, 0xD8)).isNull());
    const auto unopened = std::make_unique<PnoFile>();
    EXPECT_TRUE(panoramaThumbnail(*unopened).isNull());
}

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    const QCoreApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
