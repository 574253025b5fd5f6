// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

/// Conversions between the toolkit's texts and the system's 8-bit encoding, for C file functions, the linking
/// library and names inside tour files. One place, because a Unix system under the "C" locale would otherwise
/// turn every non-ASCII path into question marks.
namespace localtext {

/// To be called first in every main(): on systems whose locale is not UTF-8 though their files are (Unix),
/// makes UTF-8 the 8-bit encoding. Leaves Windows code pages alone.
void useSystemEncoding();

QByteArray toLocal(const QString& text);
QString fromLocal(const QByteArray& bytes);

} // namespace localtext
