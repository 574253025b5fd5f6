// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/views/cloud/CloudBytes.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QtEndian>

#include <random>

bool operator==(const CloudDot& a, const CloudDot& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.red == b.red && a.green == b.green && a.blue == b.blue;
}

QByteArray CloudBytes::file() const
{
    const auto count = quint32(points.size());
    QByteArray bytes;
    for (const quint32 field : {originX, originY, originZ, divisor, unknown16, gridWidth, gridHeight,
                                unknown28, refinement, refinementZ, unknown40, unknown44, count, 9 * count}) {
        const quint32 little = qToLittleEndian(field);
        bytes.append(reinterpret_cast<const char*>(&little), 4);
    }
    for (int plane = 0; plane < 9; ++plane) {
        for (const CloudDot& dot : points) {
            const unsigned values[] = {dot.x,      dot.x >> 8, dot.y,     dot.y >> 8, dot.z,
                                       dot.z >> 8, dot.blue,   dot.green, dot.red};
            bytes.append(char(values[plane] & 255));
        }
    }
    return bytes;
}

std::vector<CloudDot> CloudBytes::randomPoints(std::size_t count, unsigned width, unsigned height,
                                               unsigned top, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<CloudDot> points(count);
    for (CloudDot& dot : points)
        dot = {unsigned(random() % width), unsigned(random() % height), unsigned(random() % top),
               unsigned(random() % 256),   unsigned(random() % 256),    unsigned(random() % 256)};
    return points;
}

std::vector<CloudDot> dotsOf(const QByteArray& file)
{
    const std::size_t count = std::size_t(file.size() - 56) / 9;
    std::vector<CloudDot> points(count);
    const auto byte = [&](std::size_t plane, std::size_t i) {
        return unsigned(quint8(file[int(56 + plane * count + i)]));
    };
    for (std::size_t i = 0; i < count; ++i)
        points[i] = {byte(0, i) + 256 * byte(1, i),
                     byte(2, i) + 256 * byte(3, i),
                     byte(4, i) + 256 * byte(5, i),
                     byte(8, i),
                     byte(7, i),
                     byte(6, i)};
    return points;
}

QByteArray withField(QByteArray file, int offset, quint32 value)
{
    qToLittleEndian(value, file.data() + offset);
    return file;
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}
