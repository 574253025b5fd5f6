// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the picture shows of whole, damaged and foreign tiles.

#include "tests/pno/PictureFixture.h"

#include <algorithm>

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
