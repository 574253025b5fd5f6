// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A point-cloud file as the linking library writes one.

#pragma once

#include <QByteArray>
#include <QtEndian>

/// A square of red points on the ground, `side` by `side`, 1 cm apart, in the middle of the view.
inline QByteArray redSquareCloud(int side)
{
    const quint32 points = static_cast<quint32>(side * side);
    const quint32 origin = static_cast<quint32>(side) * 50; // half the side in 0.1 mm
    const quint32 fields[14] = {
        origin, origin, 0, 1,      0,         static_cast<quint32>(side), static_cast<quint32>(side), 0, 1,
        1,      0,      0, points, 9 * points};
    QByteArray bytes;
    for (const quint32 field : fields) {
        const quint32 little = qToLittleEndian(field);
        bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
    }
    QByteArray planes(9 * static_cast<int>(points), '\0');
    for (int i = 0; i < static_cast<int>(points); ++i) {
        const int x = i % side, y = i / side;
        const int values[9] = {x & 255, x >> 8, y & 255, y >> 8, 0, 0, 0, 0, 255};
        for (int plane = 0; plane < 9; ++plane)
            planes[plane * static_cast<int>(points) + i] = static_cast<char>(values[plane]);
    }
    return bytes + planes;
}
