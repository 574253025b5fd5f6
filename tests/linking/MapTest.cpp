// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Making the navigation map: what the library is asked, which files go where, the pose table.

#include "linking/map/GenerateMap.h"
#include "linking/map/MapFiles.h"
#include "linking/map/PoseTable.h"
#include "tests/linking/support/Projects.h"
#include "tests/linking/support/RecordingLinker.h"

#include <QDateTime>
#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAA";
constexpr const char* kB = "BBBBBBBBBBBBBB";

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class MapGeneration : public testing::Test
{
protected:
    MapGeneration()
    {
        root = temporary.path() + QStringLiteral(u"/漫游 été/");
        project.folders = {root, root + QStringLiteral("Tmp/"), root + QStringLiteral("Out/"), QString()};
        QDir().mkpath(project.folders.working);
        QDir().mkpath(project.folders.output);
        addPanorama(project, kA, true);
        addPanorama(project, kB, true);
        linker.groups = {2};
        linker.finishAddNode();
        linker.calls.clear();
    }

    QString tmp(const QString& name) const { return project.folders.working + name; }
    QString out(const QString& name) const { return project.folders.output + name; }
    QStringList filesIn(const QString& folder) const
    {
        return QDir(folder).entryList(QDir::Files, QDir::Name);
    }

    static void write(const QString& path, const QByteArray& content = "new")
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    std::vector<MapStep> make()
    {
        std::vector<MapStep> steps;
        status = generateMap(project, linker, [&](const MapStep& step) { steps.push_back(step); });
        return steps;
    }

    QString mergeCall()
    {
        linker.calls.clear();
        make();
        return linker.calls.filter(qs("mergePointCloud")).value(0);
    }

    static PanoNodeParasB poseOf(const char* name)
    {
        PanoNodeParasB pose;
        qstrncpy(pose.name, name, sizeof pose.name);
        pose.rotation[0] = pose.rotation[4] = pose.rotation[8] = 1;
        return pose;
    }

    QTemporaryDir temporary;
    QString root;
    RoamProject project;
    RecordingLinker linker;
    int status = 0;
};

TEST_F(MapGeneration, AsksTheLibraryInOrder)
{
    linker.nodes = {nodeAt(kA, 0, 0, 0), nodeAt(kB, 1, 0, 0)};
    linker.matches = {matchOf(kA, kB)};
    make();
    EXPECT_EQ(linker.calls,
              (QStringList{qs("autoCreateMatch"), qs("matchCount"), qs("matchParas 0"),
                           qs("mergePointCloud 1 0 1 2 1"), qs("nodeCount"), qs("nodeParas 0"),
                           qs("nodeParas 1"), qs("nodeCount"), qs("nodeParasB 0"), qs("nodeParasB 1")}));
    EXPECT_EQ(project.stage, MapGenerated);
    EXPECT_TRUE(project.modified);
    EXPECT_EQ(project.links.size(), 1u);
    EXPECT_EQ(project.panoramas[1]->position_x, 1);
}

TEST_F(MapGeneration, TellsEachStepBeforeAndAfterTheLongCalls)
{
    QStringList told;
    linker.onCall = [&](const QString& call) {
        if (call == qs("autoCreateMatch") || call.startsWith(qs("mergePointCloud"))) told << call.left(5);
    };
    int last = -1;
    generateMap(project, linker, [&](const MapStep& step) {
        told << QString::number(static_cast<int>(step.kind));
        EXPECT_GE(step.progress, last);
        last = step.progress;
    });
    EXPECT_EQ(told,
              (QStringList{qs("0"), qs("autoC"), qs("1"), qs("2"), qs("merge"), qs("3"), qs("4"), qs("5")}));
    EXPECT_EQ(last, 100);
}

TEST_F(MapGeneration, TheWindowHearsOfNewLinksBeforeTheOldOnesAreDestroyed)
{
    addLink(project, kA, kB);
    std::vector<std::size_t> links;
    generateMap(project, linker, [&](const MapStep&) { links.push_back(project.links.size()); });
    EXPECT_EQ(links, (std::vector<std::size_t>{1, 1, 0, 0, 0, 0}));
}

TEST_F(MapGeneration, DensityLowIsZeroMidIsOneHighIsTwo)
{
    for (const auto& [density, number] : {std::pair(MapOptions::Low, "0"), std::pair(MapOptions::Mid, "1"),
                                          std::pair(MapOptions::High, "2")}) {
        project.map_options.density = density;
        EXPECT_EQ(mergeCall(), qs("mergePointCloud 1 0 1 ") + qs(number) + qs(" 1"));
    }
}

TEST_F(MapGeneration, CloudBoxesAreBitsOfTheSecondArgument)
{
    for (const int bits : {0, 1, 2, 3}) {
        project.map_options.fullCloud = bits & 1;
        project.map_options.binaryCloud = bits & 2;
        EXPECT_EQ(mergeCall(), qs("mergePointCloud 1 %1 1 2 1").arg(bits));
    }
}

TEST_F(MapGeneration, OutdoorIsZeroAndThePlanIsZero)
{
    project.map_options.scene = MapOptions::Outdoor;
    EXPECT_EQ(mergeCall(), qs("mergePointCloud 0 0 1 2 1"));
    project.map_options.mode = MapOptions::Plan2D;
    EXPECT_EQ(mergeCall(), qs("mergePointCloud 0 0 1 2 0"));
}

TEST_F(MapGeneration, AFailingMergeLeavesFewerFilesAndTheStageAllTheSame)
{
    linker.status = -4;
    linker.nodesB = {poseOf(kA), poseOf(kB)};
    make();
    EXPECT_EQ(status, -4);
    EXPECT_EQ(project.stage, MapGenerated);
    EXPECT_TRUE(project.modified);
    EXPECT_EQ(filesIn(project.folders.output), QStringList{qs("AAAAAAAAAAAAAA_BBBBBBBBBBBBBB_2.csv")});
}

TEST_F(MapGeneration, OneGroupWithAllPanoramasIsConnected)
{
    EXPECT_TRUE(isConnected(project, linker));
}

TEST_F(MapGeneration, TwoGroupsAreNotConnected)
{
    linker.groups = {1, 1};
    EXPECT_FALSE(isConnected(project, linker));
    linker.groups = {2, 1}; // the library knows more than the project
    EXPECT_FALSE(isConnected(project, linker));
}

TEST_F(MapGeneration, AGroupThatLacksAPanoramaIsNotConnected)
{
    linker.groups = {1};
    EXPECT_FALSE(isConnected(project, linker));
    linker.groups = {};
    EXPECT_FALSE(isConnected(project, linker));
}

TEST_F(MapGeneration, TheTopViewIsCopiedAndTheFullCloudMoved)
{
    write(tmp(qs("a-color.png")));
    write(tmp(qs("a-group.pts")));
    make();
    EXPECT_EQ(filesIn(project.folders.output), (QStringList{qs("a-color.png"), qs("a-group.pts")}));
    EXPECT_EQ(filesIn(project.folders.working), QStringList{qs("a-color.png")});
}

TEST_F(MapGeneration, EveryFileGoesByItsEnding)
{
    const QStringList moved{qs("房间 é-concise.pts"), qs("房间 é-group.bin"), qs("房间 é-group.pts")};
    const QStringList copied{qs("房间 é-color.png"), qs("房间 é-gray.png")};
    const QStringList kept{qs("a-00000000.cld"),  qs("a-00000000.png"), qs("a-00000000.tmp"),
                           qs("a-color.png.bak"), qs("a-group.txt"),    qs("color.png"),
                           qs("group.pts")};
    for (const QString& name : moved + copied + kept)
        write(tmp(name));
    QDir(project.folders.working).mkdir(qs("folder-group.pts"));
    moveMapOutputs(project.folders);

    QStringList expected = moved + copied;
    expected.sort();
    QStringList found = filesIn(project.folders.output);
    found.sort();
    EXPECT_EQ(found, expected);
    expected = copied + kept;
    expected.sort();
    found = filesIn(project.folders.working);
    found.sort();
    EXPECT_EQ(found, expected);
    EXPECT_TRUE(QFileInfo(tmp(qs("folder-group.pts"))).isDir());
}

TEST_F(MapGeneration, AnEarlierFileInTheOutputFolderStays)
{
    for (const char* name : {"a-color.png", "a-gray.png", "a-group.pts", "a-concise.pts", "a-group.bin"}) {
        write(tmp(qs(name)), "new");
        write(out(qs(name)), "earlier");
    }
    moveMapOutputs(project.folders);
    for (const char* name : {"a-color.png", "a-gray.png", "a-group.pts", "a-concise.pts", "a-group.bin"}) {
        EXPECT_EQ(bytesOf(out(qs(name))), "earlier") << name;
        EXPECT_EQ(bytesOf(tmp(qs(name))), "new") << name;
    }
}

TEST_F(MapGeneration, AnOutputFolderThatIsGoneLosesNothing)
{
    write(tmp(qs("a-group.pts")));
    QDir(project.folders.output).removeRecursively();
    linker.nodesB = {poseOf(kA)};
    make();
    EXPECT_EQ(filesIn(project.folders.working), QStringList{qs("a-group.pts")});
    EXPECT_EQ(project.stage, MapGenerated);
}

TEST_F(MapGeneration, TheNewestCloudIsTheOneWrittenLast)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    int age = 0;
    for (const char* name : {"b.tmp", "a.tmp", "c.tmp"}) {
        write(tmp(qs(name)));
        QFile file(tmp(qs(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(now.addSecs(qs(name) == qs("a.tmp") ? 100 : --age),
                                     QFileDevice::FileModificationTime));
    }
    write(tmp(qs("newer.png")));
    EXPECT_EQ(newestCloud(project), tmp(qs("a.tmp")));
}

TEST_F(MapGeneration, WithoutLidarNoWorkingCloudIsLoaded)
{
    write(tmp(qs("a.tmp")));
    project.lidar = false;
    EXPECT_EQ(newestCloud(project), QString());
}

TEST_F(MapGeneration, WithoutACloudThereIsNoneToLoad)
{
    EXPECT_EQ(newestCloud(project), QString());
}

class PoseTable : public MapGeneration
{
protected:
    /// The table's lines without their ends, and whether each ended in CR LF.
    QStringList lines(const QByteArray& table) const
    {
        EXPECT_TRUE(table.endsWith("\r\n"));
        EXPECT_EQ(table.count('\n'), table.count("\r\n"));
        QStringList lines = QString::fromUtf8(table).split(qs("\r\n"));
        lines.removeLast();
        return lines;
    }
};

TEST_F(PoseTable, ThreePanoramasGiveFourLinesUnderTheNameOfTheFirstTheLastAndTheCount)
{
    linker.nodesB = {poseOf("P1"), poseOf("P2"), poseOf("P3")};
    make();
    EXPECT_EQ(filesIn(project.folders.output), QStringList{qs("P1_P3_3.csv")});
    const QStringList rows = lines(bytesOf(out(qs("P1_P3_3.csv"))));
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[0],
              qs("INDEX,ID,FILE_NAME,POSITION_X,POSITION_Y,POSITION_Z,MATRIX_X_X,MATRIX_X_Y,MATRIX_X_Z,"
                 "MATRIX_Y_X,MATRIX_Y_Y,MATRIX_Y_Z,MATRIX_Z_X,MATRIX_Z_Y,MATRIX_Z_Z,PLAN_CENTER_X,"
                 "PLAN_CENTER_Y,PLAN_FILE_NAME"));
    EXPECT_TRUE(rows[1].startsWith(qs("1,P1,")));
    EXPECT_TRUE(rows[3].startsWith(qs("3,P3,")));
}

TEST_F(PoseTable, PositionsHaveFourDecimalsAndTheMatrixSix)
{
    PanoNodeParasB pose = poseOf(kB);
    pose.position_x = 1.5;
    pose.position_y = -12.345678;
    pose.position_z = 1e6;
    pose.rotation[1] = -0.00000049;
    pose.rotation[2] = 0.12345678;
    pose.plan_center_x = 640;
    pose.plan_center_y = 0;
    qstrncpy(pose.plan_name, "B-00000000.png", sizeof pose.plan_name);
    linker.nodesB = {pose};
    project.panoramas[1]->base_name = qs("客厅 é, \"quoted\"");
    make();
    const QStringList rows = lines(bytesOf(out(qs("BBBBBBBBBBBBBB_BBBBBBBBBBBBBB_1.csv"))));
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[1], qs("1,BBBBBBBBBBBBBB,客厅 é, \"quoted\",1.5000,-12.3457,1000000.0000,"
                          "1.000000,-0.000000,0.123457,0.000000,1.000000,0.000000,0.000000,0.000000,1.000000,"
                          "640,0,B-00000000.png"));
}

TEST_F(PoseTable, APanoramaThatTheProjectDoesNotHaveHasNoFileName)
{
    linker.nodesB = {poseOf(kA), poseOf("ZZZZZZZZZZZZZZ")};
    make();
    const QStringList rows = lines(bytesOf(out(qs("AAAAAAAAAAAAAA_ZZZZZZZZZZZZZZ_2.csv"))));
    EXPECT_TRUE(rows.value(1).startsWith(qs("1,AAAAAAAAAAAAAA,room AAAAAAAAAAAAAA,0.0000,")));
    EXPECT_TRUE(rows.value(2).startsWith(qs("2,ZZZZZZZZZZZZZZ,,0.0000,")));
}

TEST_F(PoseTable, ALibraryThatLeavesThePlanCentreUntouchedGivesMinusOne)
{
    linker.nodesB = {poseOf(kA)};
    linker.leavesOutputsUntouched = true;
    make();
    const QStringList tables = filesIn(project.folders.output);
    ASSERT_EQ(tables, QStringList{qs("__1.csv")});
    EXPECT_TRUE(lines(bytesOf(out(tables[0]))).value(1).endsWith(qs(",-1,-1,")));
}

TEST_F(PoseTable, ATableOfAnEarlierRunIsReplaced)
{
    write(out(qs("AAAAAAAAAAAAAA_AAAAAAAAAAAAAA_1.csv")), QByteArray(5000, 'x'));
    linker.nodesB = {poseOf(kA)};
    make();
    EXPECT_EQ(lines(bytesOf(out(qs("AAAAAAAAAAAAAA_AAAAAAAAAAAAAA_1.csv")))).size(), 2);
}

TEST_F(PoseTable, AFileThatCannotBeOpenedIsPassedOver)
{
    QDir(project.folders.output).mkdir(qs("AAAAAAAAAAAAAA_AAAAAAAAAAAAAA_1.csv"));
    linker.nodesB = {poseOf(kA)};
    make();
    EXPECT_EQ(project.stage, MapGenerated);
    EXPECT_EQ(filesIn(project.folders.output), QStringList());
}

TEST_F(PoseTable, AnIdentityWithAFolderInItLeadsNowhere)
{
    linker.nodesB = {poseOf("../evil"), poseOf(kB)};
    make();
    EXPECT_EQ(filesIn(root), QStringList());
    EXPECT_EQ(filesIn(project.folders.output), QStringList());
}

TEST_F(PoseTable, ALibraryWithoutPanoramasWritesNoTable)
{
    make();
    EXPECT_EQ(filesIn(project.folders.output), QStringList());
}

} // namespace
