// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Takes a tour file apart, byte by byte, sharing no code with the program that wrote it.

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <vector>

struct TourPart
{
    unsigned kind = 0;
    QByteArray nameField; ///< all 256 bytes
    QByteArray data;

    QByteArray name() const
    {
        return QByteArray(nameField.constData(), static_cast<int>(qstrnlen(nameField.constData(), 256)));
    }
};

/// Whether the file is a tour file to its last byte: C1 73, then kind (2 bytes), name (256), length (4),
/// data.
inline bool takeApart(const QString& path, std::vector<TourPart>* parts)
{
    parts->clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    const QByteArray all = file.readAll();
    const auto byte = [&](int at) { return static_cast<unsigned>(static_cast<unsigned char>(all[at])); };
    if (all.size() < 2 || byte(0) != 0xC1 || byte(1) != 0x73) return false;
    int at = 2;
    while (at < all.size()) {
        if (all.size() - at < 262) return false;
        TourPart part;
        part.kind = byte(at) | byte(at + 1) << 8;
        part.nameField = all.mid(at + 2, 256);
        const unsigned length =
            byte(at + 258) | byte(at + 259) << 8 | byte(at + 260) << 16 | byte(at + 261) << 24;
        at += 262;
        if (length > 0x7FFFFFFFu || static_cast<unsigned>(all.size() - at) < length) return false;
        part.data = all.mid(at, static_cast<int>(length));
        at += static_cast<int>(length);
        parts->push_back(part);
    }
    return true;
}

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
