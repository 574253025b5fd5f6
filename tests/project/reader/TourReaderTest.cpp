// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/TourReader.h"
#include "tests/project/reader/TourBytes.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

using Start = TourReader::Start;
using Step = TourReader::Step;

class Reading : public testing::Test
{
protected:
    QString write(const QByteArray& bytes)
    {
        const QString path = m_folder.filePath(QStringLiteral("旅程 é.roa"));
        writeBytes(path, bytes);
        return path;
    }

    Start startOf(const QByteArray& bytes) { return TourReader(write(bytes)).start(); }

    /// How the walk over all records of a file of these bytes ends.
    Step endOf(const QByteArray& bytes, int* records = nullptr)
    {
        TourReader tour(write(bytes));
        EXPECT_EQ(tour.start(), Start::Records);
        int count = 0;
        Step step = tour.next();
        for (; step == Step::Record; step = tour.next())
            ++count;
        if (records) *records = count;
        return step;
    }

    QTemporaryDir m_folder;
};

TEST_F(Reading, FewerThanTwoBytesAreAnEmptyTour)
{
    EXPECT_EQ(startOf(""), Start::Empty);
    EXPECT_EQ(startOf("\xC1"), Start::Empty);
}

TEST_F(Reading, AnyOtherFirstTwoBytesAreNoTour)
{
    for (const char* first : {"\x73\xC1", "\xC0\x73", "\xC1\x74", "PK", "\0\0"})
        EXPECT_EQ(startOf(QByteArray(first, 2) + tourBytes({}).mid(2)), Start::NotATour);
}

TEST_F(Reading, MissingFilesFoldersAndPipesCannotBeOpened)
{
    EXPECT_EQ(TourReader(m_folder.filePath(QStringLiteral("none.roa"))).start(), Start::CannotOpen);
    EXPECT_EQ(TourReader(m_folder.path()).start(), Start::CannotOpen);
#ifndef Q_OS_WIN
    const QString pipe = m_folder.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(TourReader(pipe).start(), Start::CannotOpen);
#endif
}

TEST_F(Reading, RecordsComeInTheirOrderWithKindNameAndLength)
{
    TourReader tour(write(tourBytes({{0xFFE0, "pano_group.xml", "<x/>"}, {0x1234, "客厅.bin", ""}})));
    ASSERT_EQ(tour.start(), Start::Records);
    ASSERT_EQ(tour.next(), Step::Record);
    EXPECT_EQ(tour.kind(), 0xFFE0);
    EXPECT_EQ(tour.name(), QStringLiteral("pano_group.xml"));
    EXPECT_EQ(tour.length(), 4);
    EXPECT_EQ(tour.data(100), QByteArray("<x/>"));
    EXPECT_EQ(tour.data(2), QByteArray("<x"));
    ASSERT_EQ(tour.next(), Step::Record);
    EXPECT_EQ(tour.kind(), 0x1234);
    EXPECT_EQ(tour.name(), QStringLiteral("客厅.bin"));
    EXPECT_EQ(tour.length(), 0);
    EXPECT_EQ(tour.next(), Step::End);
}

TEST_F(Reading, AKindCutShortEndsTheRecordsAndAnythingMoreIsCutShort)
{
    const QByteArray whole = tourBytes({{0xFFE1, "a.pno", "data"}});
    int records = 0;
    EXPECT_EQ(endOf(whole, &records), Step::End);
    EXPECT_EQ(records, 1);
    EXPECT_EQ(endOf(whole + '\xE1', &records), Step::End);
    EXPECT_EQ(records, 1);
    for (int size = 4; size < whole.size(); ++size)
        EXPECT_EQ(endOf(whole.left(size)), Step::CutShort) << size;
}

TEST_F(Reading, ALengthThatTheFileDoesNotHoldIsCutShortWithoutAnAllocation)
{
    for (const quint32 length : {5u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(endOf(tourBytes({{0xFFE1, "a.pno", "data", length}})), Step::CutShort) << length;
}

TEST_F(Reading, TheDigestIsThatOfTheData)
{
    TourReader tour(write(tourBytes({{0xFFE1, "a", "data"}, {0xFFE1, "b", "data"}, {0xFFE1, "c", "date"}})));
    ASSERT_EQ(tour.start(), Start::Records);
    std::vector<QByteArray> digests;
    while (tour.next() == Step::Record)
        digests.push_back(tour.digest());
    ASSERT_EQ(digests.size(), 3u);
    EXPECT_EQ(digests[0].size(), 32);
    EXPECT_EQ(digests[0], digests[1]);
    EXPECT_NE(digests[0], digests[2]);
}

} // namespace
