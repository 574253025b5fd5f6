// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Walks over the records of a tour file without ever holding one in memory.

#pragma once

#include "project/TourContainer.h"

#include <QFile>
#include <QString>

/// Lengths that the file states are held against what it has before anything is read or written for them.
class TourReader
{
public:
    enum class Start
    {
        Records,    ///< `next` gives the first record
        Empty,      ///< fewer than two bytes
        CannotOpen, ///< or not a plain file
        NotATour    ///< other magic word
    };
    enum class Step
    {
        Record, ///< `kind`, `name` and `length` tell what stands at the present position
        End,
        CutShort ///< a name, length or data that the file does not hold, or a negative length
    };

    explicit TourReader(const QString& path);

    [[nodiscard]] Start start();

    /// Goes to the next record, whatever was read of the one before.
    [[nodiscard]] Step next();

    /// Of the present record; name as in `tour::nameInField`.
    quint16 kind() const { return m_kind; }
    const QString& name() const { return m_name; }
    qint32 length() const { return m_length; }

    /// The record's data, or its first `most` bytes when it is longer. Shorter than that after a read error.
    QByteArray data(qint32 most);

    /// SHA-256 of the record's data; empty after a read error.
    QByteArray digest();

    /// Copies the record's data to the present position of `target`, opened unbuffered.
    [[nodiscard]] bool copyTo(QFile& target, QString* error);

    QString error() const { return m_file.errorString(); }

private:
    bool toData();

    QFile m_file;
    qint64 m_data = 0; ///< where the record's data begins
    qint64 m_next = 2; ///< where the next record begins
    quint16 m_kind = 0;
    QString m_name;
    qint32 m_length = 0;
};

/// SHA-256 of the next `bytes` bytes; empty when fewer can be read.
QByteArray digestOf(QFile& file, qint64 bytes);
