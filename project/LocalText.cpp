// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/LocalText.h"

#include <QTextCodec>

namespace localtext {

void useSystemEncoding()
{
#ifndef Q_OS_WIN
    // File names of a Unix system are bytes, in practice UTF-8, whatever LANG says: a program started from a
    // service or a bare container runs under "C" and would otherwise not find its own files again.
    constexpr int kUtf8Mib = 106;
    const QTextCodec* codec = QTextCodec::codecForLocale();
    if (!codec || codec->mibEnum() != kUtf8Mib)
        QTextCodec::setCodecForLocale(QTextCodec::codecForMib(kUtf8Mib));
#endif
}

QByteArray toLocal(const QString& text)
{
    return text.toLocal8Bit();
}

QString fromLocal(const QByteArray& bytes)
{
    return QString::fromLocal8Bit(bytes);
}

} // namespace localtext
