// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "link" with a linking library that records.

#include "companions/batch/LinkCommand.h"
#include "tests/linking/support/RecordingLinker.h"
#include "tests/support/JpegTiles.h"
#include "tests/support/PnoParts.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAA";
constexpr const char* kB = "BBBBBBBBBBBBBB";
constexpr const char* kC = "CCCCCCCCCCCCCC";

using testing::HasSubstr;

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

class LinkCommand : public testing::Test
{
protected:
    LinkCommand()
    {
        options.work = inFolder("work");
        options.out = inFolder("tour.roa");
        options.report = inFolder("report.json");
    }

    QString inFolder(const std::string& name) const { return QString::fromStdString(m_folder.path(name)); }

    QString panorama(const std::string& name, const char* identity, bool lidar = false)
    {
        pnotest::PnoOptions made;
        made.identity = identity;
        const pnotest::Bytes jpeg = pnotest::solidJpeg({90, 90, 90});
        made.tiles = [jpeg](int level, int, int) { return level == 0 ? jpeg : pnotest::Bytes{1, 2, 3, 4}; };
        if (lidar) made.depthTiles = pnotest::tinyTiles();
        const QString path = QString::fromStdString(m_folder.write(name, pnotest::panorama(made)));
        options.panoramas << path;
        return path;
    }

    QString write(const std::string& name, const QByteArray& text)
    {
        return QString::fromStdString(m_folder.write(name, pnotest::Bytes(text.begin(), text.end())));
    }

    /// Exit status; what was said on standard error lies in `errors`.
    int link()
    {
        testing::internal::CaptureStderr();
        const int status = runLink(options, linker);
        errors = testing::internal::GetCapturedStderr();
        return status;
    }

    QJsonObject report() const
    {
        QFile file(options.report);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QJsonDocument::fromJson(file.readAll()).object();
    }

    pnotest::TemporaryFolder m_folder;
    LinkOptions options;
    RecordingLinker linker;
    std::string errors;
};

TEST_F(LinkCommand, ImportsLinksSavesAndReports)
{
    panorama("客厅 1.pno", kA, true);
    panorama("b.pno", kB, true);
    linker.nodes = {nodeAt(kA, 1, 2, 3), nodeAt(kB, 4, 5, 6)};
    PanoNodeParasB node;
    qstrncpy(node.name, kB, sizeof node.name);
    for (int i = 0; i < 9; ++i)
        node.rotation[i] = i;
    linker.nodesB = {node};
    PanoMatchParas match = matchOf(kA, kB, 2);
    match.rot_0 = 0.5;
    match.reliability = 0.9;
    linker.matches = {match};
    linker.groups = {2};
    options.entry = 1;
    ASSERT_EQ(link(), ExitDone) << errors;
    EXPECT_EQ(errors, "");

    QFile tour(options.out);
    ASSERT_TRUE(tour.open(QIODevice::ReadOnly));
    const QByteArray bytes = tour.readAll();
    EXPECT_TRUE(bytes.startsWith("\xC1\x73\xE0\xFF"));
    EXPECT_TRUE(bytes.contains("group_id=\"BBBBBBBBBBBBBB\""));

    const QJsonObject said = report();
    EXPECT_EQ(said.value(qs("stage")).toInt(), 1);
    EXPECT_TRUE(said.value(qs("lidar")).toBool());
    EXPECT_EQ(said.value(qs("entry")).toInt(), 1);
    EXPECT_EQ(said.value(qs("groups")).toInt(), 1);
    const QJsonArray panoramas = said.value(qs("panoramas")).toArray();
    ASSERT_EQ(panoramas.size(), 2);
    EXPECT_EQ(panoramas[0].toObject().value(qs("id")).toString(), qs(kA));
    EXPECT_EQ(panoramas[0].toObject().value(qs("base_name")).toString(), qs("客厅 1"));
    EXPECT_EQ(panoramas[0].toObject().value(qs("position")).toArray(), (QJsonArray{1, 2, 3}));
    EXPECT_EQ(panoramas[0].toObject().value(qs("vertex")).toArray(), (QJsonArray{1, 2}));
    EXPECT_EQ(panoramas[0].toObject().value(qs("plan_center")).toArray(), (QJsonArray{11, 22}));
    EXPECT_EQ(panoramas[1].toObject().value(qs("rotation")).toArray(),
              (QJsonArray{0, 1, 2, 3, 4, 5, 6, 7, 8}));
    const QJsonObject joined = said.value(qs("links")).toArray().at(0).toObject();
    EXPECT_EQ(joined.value(qs("id0")).toString(), qs(kA));
    EXPECT_EQ(joined.value(qs("rot_0")).toDouble(), 0.5);
    EXPECT_EQ(joined.value(qs("mode")).toInt(), 2);
    EXPECT_EQ(joined.value(qs("reliability")).toDouble(), 0.9);
    for (const char* key : {"tilt_x0", "tilt_x1", "tilt_y0", "icon_y0", "icon_y1", "spacing", "rot_1", "id1"})
        EXPECT_TRUE(joined.contains(qs(key))) << key;
    EXPECT_GT(said.value(qs("seconds")).toObject().value(qs("total")).toDouble(), 0);
    EXPECT_GT(said.value(qs("peak_memory_mib")).toDouble(), 1);
    EXPECT_EQ(said.value(qs("outputs")).toArray().size(), 0);
}

TEST_F(LinkCommand, TheLibraryStartsInTheWorkingFolderAndIsResetBeforeAnything)
{
    const QString a = panorama("a.pno", kA);
    const QString b = panorama("b.pno", kB);
    ASSERT_EQ(link(), ExitDone);
    EXPECT_EQ(linker.commands(),
              (QStringList{qs("init ") + options.work + qs("/Tmp/"), qs("reset"), qs("reset"),
                           qs("addNode ") + a, qs("addNode ") + b, qs("finishAddNode")}));
}

TEST_F(LinkCommand, WhatAnEarlierRunLeftInTheWorkingFolderIsDeletedFirst)
{
    const QString left = write("work/Tmp/left.png", "x");
    const QString kept = write("work/Out/kept.pts", "x");
    panorama("a.pno", kA);
    ASSERT_EQ(link(), ExitDone);
    EXPECT_FALSE(QFile::exists(left));
    EXPECT_TRUE(QFile::exists(kept));
    EXPECT_EQ(report().value(qs("outputs")).toArray(), QJsonArray{kept});
}

TEST_F(LinkCommand, ARefusedPanoramaIsNamedWithItsStatusAndTheOthersGoOn)
{
    options.panoramas << write("broken.pno", QByteArray(1000, 'x'));
    panorama("a.pno", kA);
    ASSERT_EQ(link(), ExitDone);
    EXPECT_THAT(errors, HasSubstr("broken.pno: refused, status -3"));
    EXPECT_EQ(report().value(qs("panoramas")).toArray().size(), 1);
}

TEST_F(LinkCommand, DuplicatesAndLidarMismatchesAreNamed)
{
    panorama("a.pno", kA);
    panorama("again.pno", kA);
    panorama("radar.pno", kB, true);
    ASSERT_EQ(link(), ExitDone);
    EXPECT_THAT(errors, HasSubstr("again.pno: is in the tour already"));
    EXPECT_THAT(errors, HasSubstr("radar.pno: refused, either all panoramas of a tour have lidar or none"));
}

TEST_F(LinkCommand, WhenAllAreRefusedNothingIsSaved)
{
    options.panoramas << write("broken.pno", "x") << inFolder("missing.pno");
    EXPECT_EQ(link(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("none of the panoramas can be used"));
    EXPECT_FALSE(QFile::exists(options.out));
    EXPECT_FALSE(QFile::exists(options.report));
}

TEST_F(LinkCommand, AnEntryBehindTheLastPanoramaIsRefusedBeforeTheWork)
{
    panorama("a.pno", kA);
    panorama("b.pno", kB);
    options.entry = 2;
    EXPECT_EQ(link(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("--entry 2"));
    EXPECT_FALSE(linker.calls.contains(qs("finishAddNode")));
}

TEST_F(LinkCommand, APanoramaInTheWorkingFolderIsRefusedAndNotDeleted)
{
    const QString inside = panorama("work/Tmp/a.pno", kA);
    EXPECT_EQ(link(), ExitFailed);
    EXPECT_TRUE(QFile::exists(inside));
    EXPECT_THAT(errors, HasSubstr("lies in the working folder"));
}

TEST_F(LinkCommand, ATourThatCannotBeSavedIsSaid)
{
    panorama("a.pno", kA);
    options.out = inFolder("no folder/tour.roa");
    EXPECT_EQ(link(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("tour.roa cannot be saved: "));
}

TEST_F(LinkCommand, AReportThatCannotBeWrittenIsSaid)
{
    panorama("a.pno", kA);
    options.report = inFolder("no folder/report.json");
    EXPECT_EQ(link(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("report.json cannot be written"));
}

TEST_F(LinkCommand, APanoramaThatTheLibraryDoesNotTakeIsSaid)
{
    panorama("a.pno", kA);
    panorama("b.pno", kB);
    linker.nodes = {nodeAt(kA, 0, 0, 0)};
    ASSERT_EQ(link(), ExitDone);
    EXPECT_THAT(errors, HasSubstr("took 1 of 2 panoramas"));
}

TEST_F(LinkCommand, PairsBecomeLinksByHandInTheLibrarysOrder)
{
    panorama("a.pno", kA, true);
    panorama("b.pno", kB, true);
    panorama("c.pno", kC, true);
    options.pairs = write("pairs.csv", "id0,id1,azimuth0,polar0,azimuth1,polar1\n"
                                       "BBBBBBBBBBBBBB,AAAAAAAAAAAAAA,1,2,3,4\n"
                                       "# a remark\n\n"
                                       "AAAAAAAAAAAAAA, CCCCCCCCCCCCCC, 0.5, 1.5, -0.5, 1.25\r\n"
                                       "AAAAAAAAAAAAAA,BBBBBBBBBBBBBB,5,6,7,8\n");
    ASSERT_EQ(link(), ExitDone) << errors;
    const QStringList commands = linker.commands();
    EXPECT_EQ(commands.mid(commands.indexOf(qs("finishAddNode")) + 1),
              (QStringList{qs("addMatch AAAAAAAAAAAAAA BBBBBBBBBBBBBB"),
                           qs("addLinkPair AAAAAAAAAAAAAA BBBBBBBBBBBBBB 3 4 1 2"),
                           qs("addLinkPair AAAAAAAAAAAAAA BBBBBBBBBBBBBB 5 6 7 8"),
                           qs("analyzeMatch AAAAAAAAAAAAAA BBBBBBBBBBBBBB"),
                           qs("addMatch AAAAAAAAAAAAAA CCCCCCCCCCCCCC"),
                           qs("addLinkPair AAAAAAAAAAAAAA CCCCCCCCCCCCCC 0.5 1.5 -0.5 1.25"),
                           qs("analyzeMatch AAAAAAAAAAAAAA CCCCCCCCCCCCCC"), qs("relocateAll")}));
}

TEST_F(LinkCommand, BadPairsAreNamedByLine)
{
    panorama("a.pno", kA);
    panorama("b.pno", kB);
    const struct
    {
        const char* text;
        const char* said;
    } cases[] = {
        {"AAAAAAAAAAAAAA,BBBBBBBBBBBBBB,1,2,3\n", "line 1: not id0,id1"},
        {"\nAAAAAAAAAAAAAA,BBBBBBBBBBBBBB,1,2,3,x\n", "line 2: not id0,id1"},
        {"AAAAAAAAAAAAAA,BBBBBBBBBBBBBB,1,2,3,nan\n", "line 1: not id0,id1"},
        {"AAAAAAAAAAAAAA,DDDDDDDDDDDDDD,1,2,3,4\n", "line 1: no panorama DDDDDDDDDDDDDD"},
    };
    for (const auto& bad : cases) {
        options.pairs = write("pairs.csv", bad.text);
        EXPECT_EQ(link(), ExitFailed);
        EXPECT_THAT(errors, HasSubstr(bad.said));
    }
    options.pairs = inFolder("missing.csv");
    EXPECT_EQ(link(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("missing.csv cannot be read"));
}

TEST_F(LinkCommand, PairsThatTheLibraryRefusesAreSaid)
{
    panorama("a.pno", kA);
    panorama("b.pno", kB);
    options.pairs = write("pairs.csv", "AAAAAAAAAAAAAA,BBBBBBBBBBBBBB,1,2,3,4\n");
    linker.status = -6;
    EXPECT_EQ(link(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("cannot be linked, status -6"));
}

TEST(LinkOptions, ACompleteCommandLine)
{
    const Parsed<LinkOptions> parsed =
        parseLinkOptions({qs("a.pno"), qs("--work"), qs("w"), qs("/x/b.pno"), qs("--out=t.roa"),
                          qs("--report"), qs("r.json"), qs("--entry"), qs("1"), qs("--pairs"), qs("p.csv")});
    ASSERT_TRUE(parsed.options) << parsed.error.toStdString();
    EXPECT_EQ(parsed.options->panoramas,
              (QStringList{QDir::current().filePath(qs("a.pno")), qs("/x/b.pno")}));
    EXPECT_EQ(parsed.options->work, QDir::current().filePath(qs("w")));
    EXPECT_EQ(parsed.options->out, QDir::current().filePath(qs("t.roa")));
    EXPECT_EQ(parsed.options->report, QDir::current().filePath(qs("r.json")));
    EXPECT_EQ(parsed.options->pairs, QDir::current().filePath(qs("p.csv")));
    EXPECT_EQ(parsed.options->entry, 1);
}

TEST(LinkOptions, WhatIsMissingOrWrongIsNamed)
{
    const struct
    {
        QStringList arguments;
        const char* said;
    } cases[] = {
        {{}, "no panorama file"},
        {{qs("a.pno"), qs("--out"), qs("t")}, "--work DIR is missing"},
        {{qs("a.pno"), qs("--work"), qs("w")}, "--out TOUR.roa is missing"},
        {{qs("a.pno"), qs("--work"), qs("w"), qs("--out"), qs("t"), qs("--entry"), qs("x")}, "--entry"},
        {{qs("a.pno"), qs("--work"), qs("w"), qs("--out"), qs("t"), qs("--entry=-1")}, "--entry"},
        {{qs("a.pno"), qs("--work"), qs("w"), qs("--out"), qs("t"), qs("--nonsense")}, "nonsense"},
        {{qs("a.pno"), qs("--work"), qs("w"), qs("--out")}, "out"},
    };
    for (const auto& wrong : cases) {
        const Parsed<LinkOptions> parsed = parseLinkOptions(wrong.arguments);
        EXPECT_FALSE(parsed.options);
        EXPECT_THAT(parsed.error.toStdString(), HasSubstr(wrong.said));
    }
}

} // namespace
