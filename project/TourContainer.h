// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The tour file's container: a magic word, then named records to the end of the file.
// docs/FORMATS.md describes it for others.

#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

class QIODevice;

namespace tour {

constexpr quint16 kMagic = 0x73C1;
constexpr int kNameBytes = 256;                       ///< record name, NUL-padded
constexpr int kRecordHeadBytes = 2 + kNameBytes + 4;  ///< kind, name, length
constexpr qint64 kLongestRecord = 0x7FFFFFFF;         ///< the length is a signed 32-bit number
inline const char* const kXmlName = "pano_group.xml"; ///< name of the first record

/// Record kinds, in the order in which they stand in a file. Stored in files: never renumber.
enum Kind : quint16
{
    KindXml = 0xFFE0,
    KindPanorama = 0xFFE1,
    KindMatchData = 0xFFE2,
    KindPhoto = 0xFFE3,
    KindPlan = 0xFFE4,
};

/// 2-byte and 4-byte numbers as they stand in the file.
QByteArray littleEndian16(quint16 value);
QByteArray littleEndian32(qint32 value);

/// The 256 bytes of a record's name: local 8-bit encoding, cut or NUL-padded. A name of 256 bytes or more has
/// no terminating NUL.
QByteArray nameField(const QString& name);

/// The part after the last "/"; empty when there is none.
QString fileNameOf(const QString& path);

/// Whether a tour file is complete as a container: magic, then records that end exactly at the file's end,
/// the first of them the XML. Looks at the record heads only. A file without a byte is not whole.
/// @param file  open for reading, seekable
bool isWhole(QIODevice& file);

} // namespace tour
