// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "open" with a linking library that records.

#include "companions/batch/OpenCommand.h"
#include "tests/linking/support/TourFolders.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";
constexpr const char* kB = "BBBBBBBBBBBBBB";

using testing::HasSubstr;

class OpenCommand : public testing::Test
{
protected:
    OpenCommand()
    {
        options.tour = file(QStringLiteral("旅程.roa"));
        options.work = file(QStringLiteral("工作 é"));
        options.report = file(QStringLiteral("report.json"));
        options.out = file(QStringLiteral("copy.roa"));
    }

    QString file(const QString& name) const { return m_folder.path() + QLatin1Char('/') + name; }
    QString working() const { return options.work + QStringLiteral("/Tmp/"); }

    static QByteArray tour()
    {
        const QByteArray xml =
            xmlOf("<panorama pano_id='AAAAAAAAAAAAAB'/><panorama pano_id='BBBBBBBBBBBBBB'/>",
                  "<pano_link pano_id_0='AAAAAAAAAAAAAB' pano_id_1='BBBBBBBBBBBBBB'/>",
                  "<entry_point pano_id='BBBBBBBBBBBBBB'/>");
        return tourBytes({{0xFFE0, "pano_group.xml", xml},
                          {0xFFE1, "客厅.pno", panoramaBytes(kA)},
                          {0xFFE1, "b.pno", panoramaBytes(kB)}});
    }

    int open(const QByteArray& bytes)
    {
        writeBytes(options.tour, bytes);
        linker.nodes = {nodeAt(kA, 1, 2, 3), nodeAt(kB, 4, 5, 6)};
        testing::internal::CaptureStderr();
        const int status = runOpen(options, linker);
        errors = testing::internal::GetCapturedStderr();
        return status;
    }

    QJsonObject report() const { return QJsonDocument::fromJson(bytesOf(options.report)).object(); }

    QTemporaryDir m_folder;
    OpenOptions options;
    RecordingLinker linker;
    std::string errors;
};

TEST_F(OpenCommand, ReadsReportsAndSavesAgain)
{
    ASSERT_EQ(open(tour()), ExitDone) << errors;
    EXPECT_EQ(errors, "");
    const QJsonObject said = report();
    EXPECT_EQ(said.value(QStringLiteral("entry")).toInt(), 1);
    EXPECT_EQ(said.value(QStringLiteral("stage")).toInt(), 1);
    const QJsonArray panoramas = said.value(QStringLiteral("panoramas")).toArray();
    ASSERT_EQ(panoramas.size(), 2);
    EXPECT_EQ(panoramas[0].toObject().value(QStringLiteral("base_name")).toString(), QStringLiteral("客厅"));
    EXPECT_EQ(said.value(QStringLiteral("links")).toArray().size(), 1);
    EXPECT_TRUE(said.value(QStringLiteral("seconds")).toObject().contains(QStringLiteral("open")));
    EXPECT_TRUE(bytesOf(options.out).contains("group_id=\"BBBBBBBBBBBBBB\""));

    // The copy, opened and saved in turn, is the same file.
    const QByteArray copy = bytesOf(options.out);
    ASSERT_EQ(open(copy), ExitDone) << errors;
    EXPECT_TRUE(bytesOf(options.out) == copy);
}

TEST_F(OpenCommand, TheLibraryStartsInTheWorkingFolderAndIsResetBeforeAnything)
{
    ASSERT_EQ(open(tour()), ExitDone);
    const QStringList calls = linker.commands();
    ASSERT_EQ(calls.size(), 5);
    EXPECT_EQ(calls[0], QStringLiteral("init ") + working());
    EXPECT_EQ(calls[1], QStringLiteral("reset"));
    EXPECT_TRUE(calls[2].startsWith(QStringLiteral("loadNode ") + working() + QStringLiteral("客厅.pno ")));
    EXPECT_TRUE(calls[4].startsWith(QLatin1String("loadMatch ")));
}

TEST_F(OpenCommand, WithoutReportAndCopyItOnlyReads)
{
    options.report.clear();
    options.out.clear();
    ASSERT_EQ(open(tour()), ExitDone);
    EXPECT_EQ(bytesOf(working() + QStringLiteral("b.pno")), panoramaBytes(kB));
}

TEST_F(OpenCommand, ATourCutShortIsRefusedByNameAndNothingIsSaved)
{
    const QByteArray whole = tour();
    EXPECT_EQ(open(whole.left(whole.size() - 1)), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("旅程.roa cannot be opened: it is cut short"));
    EXPECT_FALSE(QFile::exists(options.out));
    EXPECT_FALSE(QFile::exists(options.report));
}

TEST_F(OpenCommand, ANameThatIsNoneIsRefusedWithWhatWouldHaveBeenWritten)
{
    EXPECT_EQ(open(tourBytes({{0xFFE1, "../x.pno", "x"}})), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("Tmp/../x.pno cannot be opened"));
}

TEST_F(OpenCommand, AnEmptyTourIsSaidToBeEmptyAndSavedAsSuch)
{
    linker.nodes.clear();
    EXPECT_EQ(open(""), ExitDone);
    EXPECT_THAT(errors, HasSubstr("旅程.roa is empty"));
    EXPECT_EQ(bytesOf(options.out), QByteArray());
    EXPECT_TRUE(QFile::exists(options.out));
}

TEST_F(OpenCommand, APanoramaWithoutItsFileIsNamed)
{
    options.out.clear();
    EXPECT_EQ(open(tourBytes({{0xFFE0, "x", xmlOf("<panorama pano_id='AAAAAAAAAAAAAB'/>")}})), ExitDone);
    EXPECT_THAT(errors, HasSubstr("panorama 1 of the description has no file"));
}

TEST_F(OpenCommand, ATourInTheWorkingFolderIsRefusedAndStays)
{
    QDir().mkpath(working() + QStringLiteral("Preview"));
    options.tour = working() + QStringLiteral("Preview/tmp.roa");
    EXPECT_EQ(open(tour()), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("lies in the working folder"));
    EXPECT_TRUE(QFile::exists(options.tour));
}

TEST_F(OpenCommand, WhatAnEarlierRunLeftInTheWorkingFolderIsDeletedFirst)
{
    QDir().mkpath(working());
    writeBytes(working() + QStringLiteral("left.png"), "x");
    ASSERT_EQ(open(tour()), ExitDone);
    EXPECT_FALSE(QFile::exists(working() + QStringLiteral("left.png")));
}

TEST(OpenOptions, WantOneTourAndAWorkingFolder)
{
    const auto parse = [](const QStringList& arguments) { return parseOpenOptions(arguments); };
    EXPECT_FALSE(parse({}).options);
    EXPECT_FALSE(parse({QStringLiteral("a.roa")}).options);
    EXPECT_FALSE(parse({QStringLiteral("--work"), QStringLiteral("w")}).options);
    EXPECT_FALSE(
        parse({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("--work"), QStringLiteral("w")})
            .options);
    EXPECT_FALSE(parse({QStringLiteral("a"), QStringLiteral("--work"), QStringLiteral("w"),
                        QStringLiteral("--entry"), QStringLiteral("1")})
                     .options);
    const auto parsed = parse({QStringLiteral("a.roa"), QStringLiteral("--work"), QStringLiteral("w")});
    ASSERT_TRUE(parsed.options);
    EXPECT_EQ(parsed.options->tour, QDir::current().absoluteFilePath(QStringLiteral("a.roa")));
    EXPECT_TRUE(parsed.options->out.isEmpty());
}

} // namespace
