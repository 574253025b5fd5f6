// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/RecordName.h"

#include <QTextCodec>

namespace tour {

namespace {

bool decodes(QTextCodec* codec, const QByteArray& bytes, QString* text)
{
    if (!codec) return false;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    *text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

#ifdef Q_OS_WIN
bool meansADevice(const QString& text)
{
    static const QLatin1String kDevices[] = {
        QLatin1String("con"), QLatin1String("prn"), QLatin1String("aux"),    QLatin1String("nul"),
        QLatin1String("com"), QLatin1String("lpt"), QLatin1String("conin$"), QLatin1String("conout$")};
    QString stem = text.section(QLatin1Char('.'), 0, 0).trimmed().toLower();
    if (stem.size() == 4 && stem[3].isDigit()) stem.chop(1);
    for (const QLatin1String device : kDevices)
        if (stem == device) return true;
    return false;
}
#endif

} // namespace

bool isBareName(const QString& text)
{
    if (text.isEmpty() || text == QLatin1String(".") || text == QLatin1String("..")) return false;
    for (const QChar c : {QChar(u'/'), QChar(u'\\'), QChar(u'\0')})
        if (text.contains(c)) return false;
    const bool letterFirst = text[0].toUpper() >= QChar(u'A') && text[0].toUpper() <= QChar(u'Z');
    if (letterFirst && text.size() > 1 && text[1] == QChar(u':')) return false;
#ifdef Q_OS_WIN
    if (text.contains(QChar(u':')) || text.endsWith(QChar(u'.')) || text.endsWith(QChar(u' ')) ||
        meansADevice(text))
        return false;
#endif
    return true;
}

QString nameInField(const QByteArray& field)
{
    const QByteArray bytes(field.constData(),
                           static_cast<int>(qstrnlen(field.constData(), static_cast<uint>(field.size()))));
    QString local;
    if (decodes(QTextCodec::codecForLocale(), bytes, &local)) return local;
    QString text;
    for (const char* other : {"UTF-8", "GB18030"})
        if (decodes(QTextCodec::codecForName(other), bytes, &text)) return text;
    return local;
}

} // namespace tour
