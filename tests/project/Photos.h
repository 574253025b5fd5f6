// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Picture files for tests: good ones, and ones that lie about their size.

#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QString>

namespace photos {

/// Left half red, right half blue.
inline QImage picture(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = width / 2; x < width; ++x)
            line[x] = qRgb(0, 0, 255);
    }
    return image;
}

inline QByteArray encoded(const QImage& image, const char* format = "jpg")
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format, 90)) qFatal("cannot encode a test picture");
    return buffer.data();
}

inline QByteArray jpeg(int width, int height)
{
    return encoded(picture(width, height));
}

/// A JPEG whose header states this size, with the data of a small one behind it.
inline QByteArray jpegThatStates(int width, int height)
{
    QByteArray bytes = jpeg(64, 64);
    const int frame = bytes.indexOf(QByteArray::fromHex("ffc0"));
    if (frame < 0) qFatal("no frame header in a test picture");
    bytes[frame + 5] = static_cast<char>(height >> 8);
    bytes[frame + 6] = static_cast<char>(height & 255);
    bytes[frame + 7] = static_cast<char>(width >> 8);
    bytes[frame + 8] = static_cast<char>(width & 255);
    return bytes;
}

/// The check sum of a PNG chunk, over its name and data.
inline quint32 crc32(const QByteArray& bytes)
{
    quint32 crc = ~quint32(0);
    for (const char byte : bytes) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320u : 0u);
    }
    return ~crc;
}

/// A PNG whose header states this size, with the data of a small one behind it.
inline QByteArray pngThatStates(int width, int height)
{
    const auto number = [](quint32 value) {
        QByteArray bytes;
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes += static_cast<char>(value >> shift);
        return bytes;
    };
    QByteArray bytes = encoded(picture(64, 64), "png");
    bytes.replace(16, 8, number(static_cast<quint32>(width)) + number(static_cast<quint32>(height)));
    return bytes.replace(29, 4, number(crc32(bytes.mid(12, 17))));
}

/// A JPEG with a note that the camera was turned, so that it is shown a quarter turned.
inline QByteArray turnedJpeg(int width, int height)
{
    QByteArray exif = QByteArrayLiteral("Exif");
    exif += QByteArray::fromHex("0000"             // end of the name
                                "4d4d002a00000008" // big-endian TIFF header, first directory at 8
                                "0001"             // one entry
                                "0112000300000001" // orientation, one 16-bit value
                                "00060000"         // turn to the right
                                "00000000");       // no further directory
    QByteArray segment = QByteArray::fromHex("ffe1");
    const int length = exif.size() + 2;
    segment += static_cast<char>(length >> 8);
    segment += static_cast<char>(length & 255);
    QByteArray bytes = jpeg(width, height);
    return bytes.insert(2, segment + exif);
}

} // namespace photos
