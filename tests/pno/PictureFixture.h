// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pictures/PanoramaPicture.h"
#include "tests/support/JpegTiles.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImageWriter>

using pnotest::Bytes;
using pnotest::PnoOptions;
using pnotest::PnoParts;
using pnotest::TileSource;

inline const QColor kBefore(9, 99, 199); ///< what the picture held before

inline QImage blank(int width, int height, QImage::Format format = QImage::Format_RGB888)
{
    QImage image(width, height, format);
    image.fill(kBefore);
    return image;
}

// Detail in all channels, different for each seed.
inline QImage texture(int width, int height, int seed)
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

inline Bytes encoded(const QImage& image, const char* format, bool progressive = false)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(progressive);
    writer.setQuality(90);
    EXPECT_TRUE(writer.write(image)) << format;
    return Bytes(bytes.begin(), bytes.end());
}

inline QImage loaded(const Bytes& bytes)
{
    return QImage::fromData(bytes.data(), static_cast<int>(bytes.size()));
}

// Only the picture's level gets real tiles, the others stay tiny.
inline TileSource onlyAt(int level, TileSource source)
{
    return [=](int tileLevel, int column, int row) {
        return tileLevel == level ? source(tileLevel, column, row) : Bytes{0};
    };
}

inline QImage squareOf(const QImage& picture, int column, int row)
{
    return picture.copy(picture.width() - 256 * (column + 1), 256 * row, 256, 256);
}

inline bool untouched(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != kBefore) return false;
        }
    }
    return true;
}

inline bool near(QRgb pixel, pnotest::Colour colour)
{
    return std::abs(qRed(pixel) - colour.red) <= 3 && std::abs(qGreen(pixel) - colour.green) <= 3 &&
           std::abs(qBlue(pixel) - colour.blue) <= 3;
}

/// Panorama files with given tiles, and what their pictures show.
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

    /// The picture with kBefore where there is none, over one that held something else.
    static QImage overOther(const QString& path, int width, int height,
                            QImage::Format format = QImage::Format_RGB888)
    {
        QImage picture(width, height, format);
        picture.fill(QColor(250, 0, 125));
        assemblePanorama(path, &picture, kBefore);
        return picture;
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
        EXPECT_EQ(overOther(path, 4096, 2048), picture) << "where the colour is given";
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
