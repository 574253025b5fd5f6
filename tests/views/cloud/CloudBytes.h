// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// A point as the file counts it.
struct CloudDot
{
    unsigned x = 0, y = 0, z = 0;
    unsigned red = 255, green = 255, blue = 255;
};
bool operator==(const CloudDot& a, const CloudDot& b);

/// Point-cloud files byte by byte, made without the code under test.
struct CloudBytes
{
    quint32 originX = 0, originY = 0, originZ = 0; ///< 0.0001 scene units
    quint32 divisor = 1;
    quint32 gridWidth = 1000, gridHeight = 1000;
    quint32 refinement = 1, refinementZ = 1;
    quint32 unknown16 = 0x11223344, unknown28 = 0x55667788, unknown40 = 0x99AABBCC, unknown44 = 0xDDEEFF01;
    std::vector<CloudDot> points;

    QByteArray file() const;
    /// Random points of these limits, not included.
    static std::vector<CloudDot> randomPoints(std::size_t count, unsigned width, unsigned height,
                                              unsigned top, unsigned seed = 1);
};

/// The points of a file, read anew.
std::vector<CloudDot> dotsOf(const QByteArray& file);
/// The file with one 32-bit field of its header replaced.
QByteArray withField(QByteArray file, int offset, quint32 value);

void writeBytes(const QString& path, const QByteArray& bytes);
QByteArray readBytes(const QString& path);
