// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The earlier tour is never lost: every state that an earlier save can have left.

#include "project/SaveTour.h"
#include "tests/project/TourParts.h"
#include "tests/project/Tours.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";
constexpr const char* kB = "BBBBBBBBBBBBBB";

class SetAside : public TourForTest, public testing::Test
{
protected:
    void SetUp() override
    {
        add(kA, QStringLiteral("a"), "old");
        ASSERT_TRUE(saveTour(project, 0, path()));
        whole = contentOf(path());
        QFile::remove(path());
        half = whole.left(whole.size() - 5);
        project.panoramas[0]->file_path = write(QStringLiteral("new.pno"), "brand new");
    }

    QString path() const { return file(QStringLiteral("tour.roa")); }
    QString kept() const { return path() + QLatin1Char('~'); }

    void stand(const QByteArray& named, const QByteArray& setAside)
    {
        write(QStringLiteral("tour.roa"), named);
        write(QStringLiteral("tour.roa~"), setAside);
    }

    void succeed()
    {
        ASSERT_TRUE(saveTour(project, 0, path()));
        std::vector<TourPart> parts;
        ASSERT_TRUE(takeApart(path(), &parts));
        EXPECT_EQ(parts.at(1).data, QByteArray("brand new"));
    }

    void failToSave()
    {
        add(kB, QStringLiteral("b"))->file_path = file(QStringLiteral("gone.pno"));
        EXPECT_EQ(saveTour(project, 0, path()).outcome, SaveOutcome::Failed);
        EXPECT_FALSE(QFile::exists(path()));
    }

    QByteArray whole, half;
};

TEST_F(SetAside, ASuccessfulSaveLeavesNothingBesideTheNewTour)
{
    write(QStringLiteral("tour.roa"), whole);
    succeed();
    EXPECT_FALSE(QFile::exists(kept()));
}

TEST_F(SetAside, AFailedSaveLeavesTheEarlierTourUnderItsNameAndATilde)
{
    write(QStringLiteral("tour.roa"), whole);
    failToSave();
    EXPECT_EQ(contentOf(kept()), whole);
}

TEST_F(SetAside, AFirstSaveThatFailsLeavesNothing)
{
    failToSave();
    EXPECT_FALSE(QFile::exists(kept()));
}

TEST_F(SetAside, ASecondFailureInARowKeepsTheEarlierTour)
{
    write(QStringLiteral("tour.roa"), whole);
    failToSave();
    failToSave();
    EXPECT_EQ(contentOf(kept()), whole);
}

TEST_F(SetAside, WhatAFailedSaveSetAsideOutlivesTheNextSuccess)
{
    // The name was free, so nobody was asked whether the kept tour may go: it may be another one.
    write(QStringLiteral("tour.roa~"), whole);
    succeed();
    EXPECT_EQ(contentOf(kept()), whole);
}

TEST_F(SetAside, AWholeTourSupersedesAnOlderOneThatWasSetAside)
{
    stand(whole, "older");
    failToSave();
    EXPECT_EQ(contentOf(kept()), whole);
}

TEST_F(SetAside, AWholeTourAndAnOlderOneGiveOneNewTour)
{
    stand(whole, "older");
    succeed();
    EXPECT_FALSE(QFile::exists(kept()));
}

TEST_F(SetAside, AHalfWrittenTourNeverReplacesTheWholeOneThatWasSetAside)
{
    stand(half, whole);
    failToSave();
    EXPECT_EQ(contentOf(kept()), whole);
}

TEST_F(SetAside, AfterAKilledSaveASuccessfulOneCleansUp)
{
    stand(half, whole);
    succeed();
    EXPECT_FALSE(QFile::exists(kept()));
}

TEST_F(SetAside, ATourWithoutItsMagicCountsAsHalfWritten)
{
    QByteArray unfinished = whole;
    unfinished[0] = unfinished[1] = '\0';
    stand(unfinished, whole);
    failToSave();
    EXPECT_EQ(contentOf(kept()), whole);
}

TEST_F(SetAside, AnEmptyFileNeverReplacesTheWholeTourThatWasSetAside)
{
    stand("", whole);
    failToSave();
    EXPECT_EQ(contentOf(kept()), whole);
}

TEST_F(SetAside, AFileThatIsNoTourIsKeptAsWell)
{
    write(QStringLiteral("tour.roa"), "somebody's notes");
    failToSave();
    EXPECT_EQ(contentOf(kept()), QByteArray("somebody's notes"));
}

TEST_F(SetAside, AFolderInTheWayOfTheSetAsideNameStopsTheSaveBeforeAnythingIsTouched)
{
    write(QStringLiteral("tour.roa"), whole);
    QDir().mkpath(kept() + QStringLiteral("/inside"));
    EXPECT_EQ(saveTour(project, 0, path()).outcome, SaveOutcome::CannotOpen);
    EXPECT_EQ(contentOf(path()), whole);
}

} // namespace
