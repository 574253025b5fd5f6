// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The patterns of account, password and album name.

#include "publish/EntryChecks.h"

#include <gtest/gtest.h>

namespace {

using namespace publish;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

TEST(AccountCheck, LastLabelsOfTwoToFourLettersPass)
{
    for (const char* account : {"a@b.co", "a@b.com", "a@b.info"})
        EXPECT_TRUE(isAccount(text(account))) << account;
}

TEST(AccountCheck, LastLabelsOfOneOrFiveLettersFail)
{
    for (const char* account : {"a@b.c", "a@b.world", "a@b.", "a@b"})
        EXPECT_FALSE(isAccount(text(account))) << account;
}

TEST(AccountCheck, DotsHyphensAndUnderscoresPassOnBothSides)
{
    for (const char* account : {"a.b-c_d@e.f-g_h.com", "-@-.com", "_.@._.org", "UPPER09@Host9.DE"})
        EXPECT_TRUE(isAccount(text(account))) << account;
}

TEST(AccountCheck, APlusSignAnywhereFails)
{
    for (const char* account : {"a+b@c.com", "+a@c.com", "a@b+c.com", "a@b.c+m"})
        EXPECT_FALSE(isAccount(text(account))) << account;
}

TEST(AccountCheck, WhatIsNoAddressFails)
{
    for (const char* account : {"", "@b.com", "a@.com", "a b@c.com", "a@b.com ", " a@b.com", "a@b@c.com",
                                "é@b.com", "a@b.c0m", "a@b.com\n"})
        EXPECT_FALSE(isAccount(text(account))) << account;
}

TEST(AccountCheck, ALongAddressIsCheckedAtOnce)
{
    EXPECT_FALSE(isAccount(QString(5000, QLatin1Char('a'))));
    EXPECT_TRUE(isAccount(QString(5000, QLatin1Char('a')) + text("@b.com")));
}

TEST(PasswordCheck, FourLettersAndThreeDigitsPass)
{
    EXPECT_TRUE(isPassword(text("abcd123")));
    EXPECT_TRUE(isPassword(text("1a23456")));
    EXPECT_TRUE(isPassword(text("a 1!\"§$%&/()+密")));
}

TEST(PasswordCheck, OnlyLettersOrOnlyDigitsFail)
{
    EXPECT_FALSE(isPassword(text("abcdefg")));
    EXPECT_FALSE(isPassword(text("1234567")));
    EXPECT_FALSE(isPassword(text("é密é密é密1"))); // no ASCII letter
    EXPECT_FALSE(isPassword(text("abcdef٣")));    // no ASCII digit
}

TEST(PasswordCheck, FourCharactersAreTooShortAndSixToo)
{
    EXPECT_FALSE(isPassword(text("abc1")));
    EXPECT_FALSE(isPassword(text("abcde1")));
    EXPECT_FALSE(isPassword(QString()));
}

TEST(AlbumNameCheck, ChineseCharactersPass)
{
    EXPECT_TRUE(isAlbumName(text("我的相册")));
    EXPECT_TRUE(isAlbumName(text("一龥_Az09")));
}

TEST(AlbumNameCheck, ASpaceFailsAndSoDoesPunctuation)
{
    for (const char* name : {"My Album", "a-b", "a.b", "a/b", "a^b", "[a]", "a\\b", "\"a\"", "a\nb"})
        EXPECT_FALSE(isAlbumName(text(name))) << name;
}

TEST(AlbumNameCheck, From1To256Characters)
{
    EXPECT_FALSE(isAlbumName(QString()));
    EXPECT_TRUE(isAlbumName(text("a")));
    EXPECT_TRUE(isAlbumName(QString(256, QLatin1Char('a'))));
    EXPECT_FALSE(isAlbumName(QString(257, QLatin1Char('a'))));
    EXPECT_TRUE(isAlbumName(QString(256, QChar(0x4E00))));
    EXPECT_FALSE(isAlbumName(QString(257, QChar(0x4E00))));
}

TEST(AlbumNameCheck, LettersAboveU04BBPassAndU00E9Fails)
{
    EXPECT_TRUE(isAlbumName(QString(QChar(0x04D9))));  // Cyrillic schwa
    EXPECT_TRUE(isAlbumName(QString(QChar(0x1EBF))));  // Latin e with circumflex and acute
    EXPECT_FALSE(isAlbumName(QString(QChar(0x00E9)))); // Latin e with acute
}

TEST(AlbumNameCheck, TheClassReachesFromU04BBToUFFFD)
{
    for (const int inside : {0x04BB, 0x04BC, 0x4E00, 0x9FA5, 0xD2BB, 0xFD9B, 0xFFFC, 0xFFFD, 0x3000})
        EXPECT_TRUE(isAlbumName(QString(QChar(inside)))) << inside;
    for (const int outside : {0x04BA, 0x0400, 0x00D2, 0xFFFE, 0x20, 0x2D, 0x5E, 0x60})
        EXPECT_FALSE(isAlbumName(QString(QChar(outside)))) << outside;
}

TEST(AlbumNameCheck, ARareCharacterWrittenAsTwoUnitsPasses)
{
    EXPECT_TRUE(isAlbumName(text("𠮷")));
}

TEST(EntryCheck, TheFirstProblemIsTold)
{
    const UploadEntries right{text("a@b.com"), text("abcd123"), text("album")};
    UploadEntries entries;
    EXPECT_EQ(checkEntries(entries), EntryProblem::Account);
    entries.account = right.account;
    EXPECT_EQ(checkEntries(entries), EntryProblem::Password);
    entries.password = right.password;
    EXPECT_EQ(checkEntries(entries), EntryProblem::AlbumName);
    EXPECT_EQ(checkEntries(right), EntryProblem::None);
}

} // namespace
