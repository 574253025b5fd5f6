// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Names of the files inside a tour file, as they may be used on this system.

#pragma once

#include <QByteArray>
#include <QString>

namespace tour {

/// Whether the text names a plain file in whatever folder it is put: not empty, no "/" and "\\", no zero
/// character, not "." or "..", no drive letter before it, and on Windows nothing that means a device or a
/// stream there.
bool isBareName(const QString& text);

/// The text in a record's name field: the bytes up to the first zero byte in the local 8-bit encoding.
/// Bytes that are none are tried as UTF-8, then as GB 18030, the two in which tour files are written
/// elsewhere; what neither fits keeps a replacement character for each bad byte.
QString nameInField(const QByteArray& field);

} // namespace tour
