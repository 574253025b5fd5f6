// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/UnpackFolder.h"
#include "tests/project/reader/TourBytes.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

class Unpacking : public testing::Test
{
protected:
    Unpacking() { QDir().mkpath(working()); }

    QString top() const { return m_folder.path() + QLatin1Char('/'); }
    QString working() const { return top() + QStringLiteral("工作 é/Tmp/"); }
    QString inWorking(const char* name) const { return working() + QString::fromUtf8(name); }

    /// Unpacks all records; their paths without the working folder, the last one with "!" when it failed.
    QStringList unpack(const std::vector<RecordBytes>& records, const QString& tourPath = QString())
    {
        const QString path = tourPath.isEmpty() ? top() + QStringLiteral("tour.roa") : tourPath;
        writeBytes(path, tourBytes(records));
        TourReader tour(path);
        EXPECT_EQ(tour.start(), TourReader::Start::Records);
        UnpackFolder folder(working(), path);
        QStringList paths;
        while (tour.next() == TourReader::Step::Record) {
            QString unpacked;
            const bool done = folder.unpack(tour, &unpacked, &error);
            EXPECT_TRUE(unpacked.startsWith(working()));
            paths << unpacked.mid(working().size()) + QLatin1String(done ? "" : "!");
            if (!done) break;
        }
        return paths;
    }

    QStringList filesBelow(const QString& folder) const
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir m_folder;
    QString error;
};

TEST_F(Unpacking, AFileHasTheBytesOfItsRecord)
{
    EXPECT_EQ(unpack({{0xFFE1, "客厅.pno", "bytes"}, {0x9999, "empty.bin", ""}}),
              (QStringList{QStringLiteral("客厅.pno"), QStringLiteral("empty.bin")}));
    EXPECT_EQ(bytesOf(inWorking("客厅.pno")), QByteArray("bytes"));
    EXPECT_EQ(bytesOf(inWorking("empty.bin")), QByteArray());
}

TEST_F(Unpacking, ANameThatIsNoneIsRefusedAndNothingIsWrittenAnywhere)
{
    for (const char* name :
         {"", ".", "..", "../out.pno", "a/b.pno", "/tmp/out.pno", "..\\out.pno", "C:out.pno"}) {
        EXPECT_EQ(unpack({{0xFFE1, name, "bytes"}}), QStringList{QString::fromUtf8(name) + QLatin1Char('!')});
        EXPECT_FALSE(error.isEmpty());
        EXPECT_EQ(filesBelow(working()), QStringList());
        EXPECT_EQ(filesBelow(top()), (QStringList{QStringLiteral("tour.roa"), QStringLiteral("工作 é")}));
    }
}

TEST_F(Unpacking, ANameThatTheFileSystemRefusesFailsWithItsPath)
{
    EXPECT_EQ(unpack({{0xFFE1, QByteArray(256, 'a'), "bytes"}}), QStringList{QString(256, u'a') + u'!'});
    QDir().mkpath(inWorking("Preview"));
    EXPECT_EQ(unpack({{0xFFE1, "Preview", "bytes"}}), QStringList{QStringLiteral("Preview!")});
    EXPECT_TRUE(QFileInfo(inWorking("Preview")).isDir());
}

TEST_F(Unpacking, AFileFromBeforeIsReplaced)
{
    writeBytes(inWorking("a.jpeg"), "something longer from before");
    EXPECT_EQ(unpack({{0xFFE3, "a.jpeg", "new"}}), QStringList{QStringLiteral("a.jpeg")});
    EXPECT_EQ(bytesOf(inWorking("a.jpeg")), QByteArray("new"));
}

#ifndef Q_OS_WIN
TEST_F(Unpacking, ALinkOutOfTheFolderIsReplacedAndItsTargetKeepsItsBytes)
{
    const QString outside = top() + QStringLiteral("outside.jpeg");
    writeBytes(outside, "mine");
    QFile::link(outside, inWorking("soft.jpeg"));
    QFile::link(top() + QStringLiteral("not there"), inWorking("dangling.jpeg"));
    ASSERT_EQ(
        link(QFile::encodeName(outside).constData(), QFile::encodeName(inWorking("hard.jpeg")).constData()),
        0);
    EXPECT_EQ(unpack({{0xFFE3, "soft.jpeg", "1"}, {0xFFE3, "dangling.jpeg", "2"}, {0xFFE3, "hard.jpeg", "3"}})
                  .size(),
              3);
    EXPECT_EQ(bytesOf(outside), QByteArray("mine"));
    EXPECT_FALSE(QFileInfo::exists(top() + QStringLiteral("not there")));
    EXPECT_EQ(bytesOf(inWorking("soft.jpeg")), QByteArray("1"));
    EXPECT_EQ(bytesOf(inWorking("dangling.jpeg")), QByteArray("2"));
    EXPECT_EQ(bytesOf(inWorking("hard.jpeg")), QByteArray("3"));
}
#endif

TEST_F(Unpacking, TwoRecordsOfOneNameWithTheSameBytesAreOneFile)
{
    EXPECT_EQ(unpack({{0xFFE3, "a.jpg", "bytes"}, {0xFFE3, "a.jpg", "bytes"}}),
              (QStringList{QStringLiteral("a.jpg"), QStringLiteral("a.jpg")}));
    EXPECT_EQ(filesBelow(working()), QStringList{QStringLiteral("a.jpg")});
}

TEST_F(Unpacking, ALaterRecordOfTheSameNameWithOtherBytesStandsBesideUnderANameThatEndsAlike)
{
    EXPECT_EQ(
        unpack({{0xFFE1, "room.pno", "one"},
                {0xFFE1, "room.pno", "two"},
                {0xFFE1, "room.pno", "one"},
                {0xFFE1, "room.pno", "three"},
                {0xFFE1, "room.pno", "two"}}),
        (QStringList{QStringLiteral("room.pno"), QStringLiteral("2_room.pno"), QStringLiteral("room.pno"),
                     QStringLiteral("3_room.pno"), QStringLiteral("2_room.pno")}));
    EXPECT_EQ(bytesOf(inWorking("room.pno")), QByteArray("one"));
    EXPECT_EQ(bytesOf(inWorking("2_room.pno")), QByteArray("two"));
    EXPECT_EQ(bytesOf(inWorking("3_room.pno")), QByteArray("three"));
}

TEST_F(Unpacking, ARecordWhoseNameADistinctFileHasTakenStandsBesideIt)
{
    EXPECT_EQ(unpack({{0xFFE1, "room.pno", "one"},
                      {0xFFE1, "room.pno", "two"},
                      {0xFFE1, "2_room.pno", "three"},
                      {0xFFE1, "2_room.pno", "two"}}),
              (QStringList{QStringLiteral("room.pno"), QStringLiteral("2_room.pno"),
                           QStringLiteral("2_2_room.pno"), QStringLiteral("2_room.pno")}));
    EXPECT_EQ(bytesOf(inWorking("2_room.pno")), QByteArray("two"));
    EXPECT_EQ(bytesOf(inWorking("2_2_room.pno")), QByteArray("three"));
}

TEST_F(Unpacking, TheTourFileItselfIsNeverWrittenOver)
{
    const QString tour = inWorking("tour.roa");
    EXPECT_EQ(unpack({{0xFFE3, "tour.roa", "bytes"}, {0xFFE3, "tour.roa", "bytes"}}, tour),
              (QStringList{QStringLiteral("2_tour.roa"), QStringLiteral("2_tour.roa")}));
    EXPECT_TRUE(bytesOf(tour).startsWith("\xC1\x73"));
}

TEST_F(Unpacking, AThousandRecordsOfOneNameKeepAllTheirBytes)
{
    std::vector<RecordBytes> records;
    for (int i = 0; i < 1000; ++i)
        records.push_back({0xFFE3, "a.jpg", QByteArray::number(i)});
    const QStringList paths = unpack(records);
    ASSERT_EQ(paths.size(), 1000);
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(bytesOf(working() + paths[i]), QByteArray::number(i));
}

} // namespace
