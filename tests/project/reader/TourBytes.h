// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Tour files put together byte by byte, sharing no code with the program.

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <optional>
#include <vector>

struct RecordBytes
{
    unsigned kind = 0;
    QByteArray name;
    QByteArray data;
    std::optional<quint32> statedLength = std::nullopt; ///< what the file says instead of the data's length
};

inline QByteArray numberBytes(quint32 value, int bytes)
{
    QByteArray text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i) & 0xFF);
    return text;
}

/// C1 73, then each record: kind (2 bytes), name (256, zero-padded), length (4), data.
inline QByteArray tourBytes(const std::vector<RecordBytes>& records)
{
    QByteArray all("\xC1\x73", 2);
    for (const RecordBytes& record : records) {
        QByteArray name = record.name.left(256);
        name.append(QByteArray(256 - name.size(), '\0'));
        all += numberBytes(record.kind, 2) + name +
               numberBytes(record.statedLength.value_or(static_cast<quint32>(record.data.size())), 4) +
               record.data;
    }
    return all;
}

inline void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile::remove(path);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write a test file");
}

inline QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}
