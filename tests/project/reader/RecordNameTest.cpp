// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/RecordName.h"

#include <gtest/gtest.h>

namespace {

QString nameIn(QByteArray bytes)
{
    return tour::nameInField(bytes.append(QByteArray(256 - bytes.size(), '\0')));
}

TEST(RecordName, OrdinaryNamesAreBare)
{
    for (const char* name : {"room.pno", "客厅 1.pno", "café.jpg", "a", "...", "a..b", ".hidden", "1:2.pno",
                             "AAAAAAAAAAAAAA_BBBBBBBBBBBBBB_0.dat", "x-00000000.cld"})
#ifdef Q_OS_WIN
        if (!QByteArray(name).contains(':') && !QByteArray(name).endsWith('.'))
#endif
            EXPECT_TRUE(tour::isBareName(QString::fromUtf8(name))) << name;
}

TEST(RecordName, WhatWouldLeaveTheFolderIsNotBare)
{
    for (const char* name : {"", ".", "..", "/", "/etc/passwd", "a/b", "../a.pno", "a/..", "..\\a.pno", "\\",
                             "a\\b", "C:", "c:a.pno", "C:\\a.pno", "//server/share/a", "Preview/tmp.roa"})
        EXPECT_FALSE(tour::isBareName(QString::fromUtf8(name))) << name;
    EXPECT_FALSE(tour::isBareName(QStringLiteral("a") + QChar(0) + QStringLiteral(".pno")));
}

TEST(RecordName, ANameEndsAtItsFirstZeroByte)
{
    EXPECT_EQ(nameIn(QByteArray("a.pno\0/etc/b", 12)), QStringLiteral("a.pno"));
    EXPECT_EQ(nameIn(""), QString());
    EXPECT_EQ(tour::nameInField(QByteArray(256, 'a')), QString(256, QLatin1Char('a')));
}

TEST(RecordName, ANameInTheLocalEncodingIsReadInIt)
{
    EXPECT_EQ(nameIn("客厅é.pno"), QStringLiteral("客厅é.pno"));
}

TEST(RecordName, ANameWrittenOnAChineseSystemIsReadAsItWasMeant)
{
    EXPECT_EQ(nameIn("\xBF\xCD\xCC\xFC.pno"), QStringLiteral("客厅.pno"));
}

TEST(RecordName, BytesOfNoEncodingStillGiveABareName)
{
    const QString name = tour::nameInField(QByteArray(256, '\xFF'));
    EXPECT_TRUE(name.isEmpty() || tour::isBareName(name));
}

} // namespace
