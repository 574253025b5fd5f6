// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/TourContainer.h"

#include "project/LocalText.h"

#include <QIODevice>
#include <QtEndian>

namespace tour {

QByteArray littleEndian16(quint16 value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray littleEndian32(qint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray nameField(const QString& name)
{
    QByteArray bytes = localtext::toLocal(name).left(kNameBytes);
    return bytes.append(QByteArray(kNameBytes - bytes.size(), '\0'));
}

QString fileNameOf(const QString& path)
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? QString() : path.mid(slash + 1);
}

bool isWhole(QIODevice& file)
{
    const qint64 size = file.size();
    if (!file.seek(0) || file.read(2) != littleEndian16(kMagic)) return false;

    qint64 position = 2;
    while (position < size) {
        const QByteArray head = file.read(kRecordHeadBytes);
        if (head.size() != kRecordHeadBytes) return false;
        const auto kind = qFromLittleEndian<quint16>(head.constData());
        const auto length = qFromLittleEndian<qint32>(head.constData() + 2 + kNameBytes);
        if (length < 0 || kind < KindXml || kind > KindPlan) return false;
        if (position == 2 && kind != KindXml) return false;
        position += kRecordHeadBytes + length;
        if (position > size || !file.seek(position)) return false;
    }
    return position == size && size > 2;
}

} // namespace tour
