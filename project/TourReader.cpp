// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/TourReader.h"

#include "project/RecordName.h"
#include "project/StreamCopy.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>

TourReader::TourReader(const QString& path)
    : m_file(path)
{}

TourReader::Start TourReader::start()
{
    // A pipe would wait for a writer, and cannot tell how much is to come.
    if (!QFileInfo(m_file.fileName()).isFile()) return Start::CannotOpen;
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return Start::CannotOpen;
    const QByteArray magic = m_file.read(2);
    if (magic.size() < 2) return Start::Empty;
    return magic == tour::littleEndian16(tour::kMagic) ? Start::Records : Start::NotATour;
}

TourReader::Step TourReader::next()
{
    if (!m_file.seek(m_next)) return Step::CutShort;
    const QByteArray head = m_file.read(tour::kRecordHeadBytes);
    if (head.size() < 2) return Step::End;
    if (head.size() < tour::kRecordHeadBytes) return Step::CutShort;
    m_kind = qFromLittleEndian<quint16>(head.constData());
    m_name = tour::nameInField(head.mid(2, tour::kNameBytes));
    m_length = qFromLittleEndian<qint32>(head.constData() + 2 + tour::kNameBytes);
    m_data = m_next + tour::kRecordHeadBytes;
    if (m_length < 0 || m_length > m_file.size() - m_data) return Step::CutShort;
    m_next = m_data + m_length;
    return Step::Record;
}

bool TourReader::toData()
{
    return m_file.seek(m_data);
}

QByteArray TourReader::data(qint32 most)
{
    return toData() ? m_file.read(std::min(most, m_length)) : QByteArray();
}

QByteArray TourReader::digest()
{
    return toData() ? digestOf(m_file, m_length) : QByteArray();
}

bool TourReader::copyTo(QFile& target, QString* error)
{
    if (toData()) return streamCopy(m_file, target, m_length, error);
    *error = m_file.errorString();
    return false;
}

QByteArray digestOf(QFile& file, qint64 bytes)
{
    constexpr qint64 kStepBytes = qint64(1) << 18;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    while (bytes > 0) {
        const QByteArray step = file.read(std::min(bytes, kStepBytes));
        if (step.isEmpty()) return QByteArray();
        hash.addData(step);
        bytes -= step.size();
    }
    return hash.result();
}
