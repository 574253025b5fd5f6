// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The assembled picture and the thumbnail.

#include "linking/pictures/PanoramaPicture.h"
#include "linking/pictures/Thumbnail.h"
#include "linking/pno/PnoFile.h"
#include "project/LocalText.h"
#include "tests/support/JpegTiles.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QImageWriter>

#include <algorithm>
#include <thread>

using pnotest::Bytes;
using pnotest::PnoOptions;
using pnotest::PnoParts;
using pnotest::Segment;
using pnotest::TileSource;

namespace {

const QColor kBefore(9, 99, 199); ///< what the picture held before

QImage blank(int width, int height, QImage::Format format = QImage::Format_RGB888)
{
    QImage image(width, height, format);
    image.fill(kBefore);
    return image;
}

// Detail in all channels, different for each seed.
QImage texture(int width, int height, int seed)
{
    QImage image(width, height, QImage::Format_RGB888);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* at = image.scanLine(y);
        for (int x = 0; x < width; ++x) {
            *at++ = static_cast<std::uint8_t>(x * 3 + seed * 17);
            *at++ = static_cast<std::uint8_t>((x ^ y) * 2 + seed);
            *at++ = static_cast<std::uint8_t>(y * 5 + x * y / 64);
        }
    }
    return image;
}

Bytes encoded(const QImage& image, const char* format, bool progressive = false)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(progressive);
    writer.setQuality(90);
    EXPECT_TRUE(writer.write(image)) << format;
    return Bytes(bytes.begin(), bytes.end());
}

QImage loaded(const Bytes& bytes)
{
    return QImage::fromData(bytes.data(), static_cast<int>(bytes.size()));
}

// Only the picture's level gets real tiles, the others stay tiny.
TileSource onlyAt(int level, TileSource source)
{
    return [=](int tileLevel, int column, int row) {
        return tileLevel == level ? source(tileLevel, column, row) : Bytes{0};
    };
}

QImage squareOf(const QImage& picture, int column, int row)
{
    return picture.copy(picture.width() - 256 * (column + 1), 256 * row, 256, 256);
}

bool untouched(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != kBefore) return false;
        }
    }
    return true;
}

bool near(QRgb pixel, pnotest::Colour colour)
{
    return std::abs(qRed(pixel) - colour.red) <= 3 && std::abs(qGreen(pixel) - colour.green) <= 3 &&
           std::abs(qBlue(pixel) - colour.blue) <= 3;
}

} // namespace

class Pictures : public testing::Test
{
protected:
    QString write(const PnoOptions& options)
    {
        return QString::fromStdString(m_folder.write("test.pno", pnotest::panorama(options)));
    }

    QString writeTiles(const TileSource& source, std::uint32_t topLevel = 10)
    {
        PnoOptions options;
        options.level = topLevel;
        options.tiles = source;
        return write(options);
    }

    /// The square of column 2, row 1 in a 4096 picture whose tile there has these bytes.
    QImage squareFrom(const Bytes& bytes)
    {
        const QString path = writeTiles([&](int level, int column, int row) {
            if (level == 8 && column == 2 && row == 1) return bytes;
            return Bytes{0};
        });
        QImage picture = blank(4096, 2048);
        EXPECT_TRUE(assemblePanorama(path, &picture));
        EXPECT_TRUE(untouched(squareOf(picture, 1, 1))) << "the neighbour on the right";
        EXPECT_TRUE(untouched(squareOf(picture, 3, 1))) << "the neighbour on the left";
        EXPECT_TRUE(untouched(squareOf(picture, 2, 0))) << "the neighbour above";
        EXPECT_TRUE(untouched(squareOf(picture, 2, 2))) << "the neighbour below";
        return squareOf(picture, 2, 1);
    }

    void expectToolkitsPicture(const Bytes& bytes, const std::string& what)
    {
        const QImage expected = loaded(bytes);
        const QImage square = squareFrom(bytes);
        if (expected.isNull()) {
            EXPECT_TRUE(untouched(square)) << what;
        } else {
            ASSERT_EQ(expected.size(), QSize(256, 256)) << what;
            EXPECT_EQ(square, expected.convertToFormat(QImage::Format_RGB888)) << what;
        }
    }

    pnotest::TemporaryFolder m_folder;
};

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
}

TEST_F(Pictures, TilesGiveTheSamePixelsAsTheToolkitsLoader)
{
    for (const QImage& tile :
         {texture(256, 256, 1), texture(256, 256, 2).convertToFormat(QImage::Format_Grayscale8)}) {
        for (const char* format : {"jpg", "png", "bmp"}) {
            const Bytes bytes = encoded(tile, format);
            EXPECT_EQ(squareFrom(bytes), loaded(bytes).convertToFormat(QImage::Format_RGB888)) << format;
        }
        const Bytes progressive = encoded(tile, "jpg", true);
        EXPECT_EQ(squareFrom(progressive), loaded(progressive).convertToFormat(QImage::Format_RGB888));
    }
    for (const int quality : {50, 90, 100}) {
        const Bytes bytes = pnotest::jpegFromPixels(texture(256, 256, 3).constBits(), 256, 256, quality);
        EXPECT_EQ(squareFrom(bytes), loaded(bytes).convertToFormat(QImage::Format_RGB888)) << quality;
    }
}

TEST_F(Pictures, TilesThatAreNoPictureLeaveTheirSquare)
{
    EXPECT_TRUE(untouched(squareFrom({})));
    EXPECT_TRUE(untouched(squareFrom({0xFF})));
    EXPECT_TRUE(untouched(squareFrom({0xFF, 0xD8, 0xFF, 0xD9})));
    EXPECT_TRUE(untouched(squareFrom(Bytes(5000, 0xFF))));
    Bytes headerOnly = pnotest::solidJpeg({200, 0, 0});
    headerOnly.resize(100);
    EXPECT_TRUE(untouched(squareFrom(headerOnly)));
}

TEST_F(Pictures, TilesThatCannotBeReadLeaveTheirSquare)
{
    PnoOptions options;
    options.tiles = [](int level, int column, int row) {
        return level == 8 ? pnotest::solidJpeg(pnotest::placeColour(level, column, row)) : Bytes{0};
    };
    PnoParts parts = pnotest::parts(options);
    // Data that stands before its directory is not measured against it: the record may point anywhere.
    parts.tiles[parts.tileIndex(8, 5, 3)].offset = 0x08000000;
    const std::string path =
        m_folder.write("test.pno", pnotest::join({parts.captureSegment(), parts.infoSegment(),
                                                  parts.tileDataSegment(), parts.tileDirectorySegment()}));
    QImage picture = blank(4096, 2048);
    ASSERT_TRUE(assemblePanorama(QString::fromStdString(path), &picture));
    EXPECT_TRUE(untouched(squareOf(picture, 5, 3)));
    EXPECT_TRUE(near(squareOf(picture, 6, 3).pixel(128, 128), pnotest::placeColour(8, 6, 3)));
    EXPECT_TRUE(near(squareOf(picture, 5, 4).pixel(128, 128), pnotest::placeColour(8, 5, 4)));
}

TEST_F(Pictures, ATruncatedJpegShowsWhatTheToolkitsLoaderMakesOfIt)
{
    const Bytes whole = encoded(texture(256, 256, 4), "jpg");
    for (const std::size_t size :
         {whole.size() - 2, whole.size() - 1, whole.size() * 3 / 4, whole.size() / 2}) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        expectToolkitsPicture(cut, "bytes left: " + std::to_string(size));
    }
}

TEST_F(Pictures, AJpegWithBentBitsShowsWhatTheToolkitsLoaderMakesOfIt)
{
    const Bytes whole = encoded(texture(256, 256, 5), "jpg");
    for (std::size_t at = 2; at < whole.size(); at += whole.size() / 40) {
        Bytes bent = whole;
        bent[at] ^= 0x55;
        expectToolkitsPicture(bent, "bent byte " + std::to_string(at));
    }
}

TEST_F(Pictures, AJpegThatFailsBehindItsLastRowLeavesItsSquare)
{
    Bytes bytes = pnotest::solidJpeg({200, 0, 0});
    // A second start of frame in place of the end of image: an error only once all rows are out.
    bytes.resize(bytes.size() - 2);
    for (const std::uint8_t byte :
         {0xFF, 0xC0, 0, 17, 8, 1, 0, 1, 0, 3, 1, 0x22, 0, 2, 0x11, 1, 3, 0x11, 1, 0xFF, 0xD9})
        bytes.push_back(byte);
    ASSERT_TRUE(loaded(bytes).isNull());
    EXPECT_TRUE(untouched(squareFrom(bytes)));
}

TEST_F(Pictures, ATileThatClaimsAGiganticPictureLeavesItsSquare)
{
    for (const int side : {4097, 65500}) {
        Bytes bytes = pnotest::solidJpeg({200, 0, 0});
        const std::uint8_t frame[] = {0xFF, 0xC0, 0, 17, 8};
        const auto found = std::search(bytes.begin(), bytes.end(), std::begin(frame), std::end(frame));
        ASSERT_NE(found, bytes.end());
        for (int i = 0; i < 2; ++i) {
            found[5 + 2 * i] = static_cast<std::uint8_t>(side >> 8);
            found[6 + 2 * i] = static_cast<std::uint8_t>(side);
        }
        EXPECT_TRUE(untouched(squareFrom(bytes))) << side;
    }
}

TEST_F(Pictures, TilesOfOtherSizesAreClippedToTheirSquare)
{
    const QImage tile = texture(400, 300, 6);
    for (const char* format : {"jpg", "png"}) {
        const Bytes large = encoded(tile, format);
        EXPECT_EQ(squareFrom(large),
                  loaded(large).convertToFormat(QImage::Format_RGB888).copy(0, 0, 256, 256))
            << format;

        const Bytes small = encoded(tile.copy(0, 0, 100, 50), format);
        const QImage square = squareFrom(small);
        EXPECT_EQ(square.copy(0, 0, 100, 50), loaded(small).convertToFormat(QImage::Format_RGB888)) << format;
        EXPECT_TRUE(untouched(square.copy(100, 0, 156, 256))) << format;
        EXPECT_TRUE(untouched(square.copy(0, 50, 256, 206))) << format;
    }
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
}

TEST_F(Pictures, APictureLowerThanTheTilesIsFilledToItsLastRow)
{
    const QString path = writeTiles(onlyAt(8, pnotest::colouredTiles()));
    QImage picture = blank(4096, 700);
    ASSERT_TRUE(assemblePanorama(path, &picture));
    EXPECT_TRUE(near(picture.pixel(4095, 699), pnotest::placeColour(8, 0, 2)));
    EXPECT_TRUE(near(picture.pixel(0, 699), pnotest::placeColour(8, 15, 2)));
}

TEST_F(Pictures, APictureHigherThanTheTilesKeepsItsRest)
{
    const QString path = writeTiles(onlyAt(8, pnotest::colouredTiles()));
    QImage picture = blank(4096, 2100);
    ASSERT_TRUE(assemblePanorama(path, &picture));
    EXPECT_TRUE(near(picture.pixel(4095, 2047), pnotest::placeColour(8, 0, 7)));
    EXPECT_TRUE(untouched(picture.copy(0, 2048, 4096, 52)));
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
