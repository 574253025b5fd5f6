// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The run-time binding against linking libraries in plain C.

#include "linking/NexomapLinker.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QByteArray kA("AAAAAAAAAAAAAA");
const QByteArray kB("BBBBBBBBBBBBBB");

QString folderOf(const char* library)
{
    return QString::fromUtf8(library) + QLatin1Char('/');
}

class Binding : public testing::Test
{
protected:
    void SetUp() override { qputenv("STAND_IN_LOG", QFile::encodeName(log())); }
    QString log() const { return m_folder.filePath(QStringLiteral("calls.txt")); }

    QStringList calls() const
    {
        QFile file(log());
        if (!file.open(QIODevice::ReadOnly)) return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    QTemporaryDir m_folder;
};

TEST_F(Binding, EveryOperationReachesItsFunctionWithItsArgumentsInOrder)
{
    NexomapLinker linker(folderOf(STAND_IN_COMPLETE));
    ASSERT_TRUE(linker.available());
    EXPECT_EQ(linker.problem(), QString());

    PanoNodeParas node;
    qstrncpy(node.plan_name, "plan.png", sizeof node.plan_name);
    node.position_x = 1;
    node.position_y = 2;
    node.position_z = 3;
    node.vertex_x = 4;
    node.vertex_y = 5;
    node.direction = 6;
    node.plan_center_x = 7;
    node.plan_center_y = 8;
    PanoMatchParas match;
    qstrncpy(match.name_0, kA.constData(), sizeof match.name_0);
    qstrncpy(match.name_1, kB.constData(), sizeof match.name_1);
    match.rot_0 = 1;
    match.rot_1 = 2;
    match.tilt_x0 = 3;
    match.tilt_x1 = 4;
    match.tilt_y0 = 5;
    match.icon_y0 = 6;
    match.icon_y1 = 7;
    match.spacing = 8;
    match.mode = 9;
    match.reliability = 10;
    PanoNodeParas nodeOut;
    PanoNodeParasB nodeOutB;
    PanoMatchParas matchOut;

    linker.init(QStringLiteral("/w/"));
    linker.reset();
    linker.addNode(QStringLiteral("/p/a.pno"));
    linker.finishAddNode();
    EXPECT_EQ(linker.nodeCount(), 3);
    linker.nodeParas(1, &nodeOut);
    linker.nodeParasB(2, &nodeOutB);
    EXPECT_EQ(linker.matchCount(), 2);
    linker.matchParas(1, &matchOut);
    linker.addMatch(kA, kB);
    linker.addLinkPair(kA, kB, 0.5, 1, -2, 1.25);
    linker.analyzeMatch(kA, kB);
    linker.relocateAll();
    linker.deleteMatch(kA, kB);
    linker.drawMatchPng(kA, kB);
    linker.autoCreateMatch();
    EXPECT_EQ(linker.groupCount(), 4);
    EXPECT_EQ(linker.nodeCountInGroup(0), 5);
    linker.mergePointCloud(1, 3, 1, 2, 0);
    linker.loadNode(QStringLiteral("/p/a.pno"), node);
    linker.loadMatch(match);
    linker.decompressCloud(QStringLiteral("/w/x.cld"));
    linker.compressCloud(QStringLiteral("/w/x.tmp"));
    linker.clean();

    const QStringList expected{
        QStringLiteral("NexomapInit /w/ 0"),
        QStringLiteral("NexomapReset"),
        QStringLiteral("NexomapAddNode /p/a.pno"),
        QStringLiteral("NexomapFinishAddNode"),
        QStringLiteral("NexomapGetPanoNodeNum"),
        QStringLiteral("NexomapGetPanoNodeParas 1"),
        QStringLiteral("NexomapGetPanoNodeParasB 2"),
        QStringLiteral("NexomapGetPanoMatchNum"),
        QStringLiteral("NexomapGetPanoMatchParas 1"),
        QStringLiteral("NexomapAddPanoMatch AAAAAAAAAAAAAA BBBBBBBBBBBBBB"),
        QStringLiteral("NexomapAddPanoLinkPair AAAAAAAAAAAAAA BBBBBBBBBBBBBB 0.5 1 -2 1.25"),
        QStringLiteral("NexomapAnalyzePanoMatchParas AAAAAAAAAAAAAA BBBBBBBBBBBBBB"),
        QStringLiteral("NexomapRelocateAll"),
        QStringLiteral("NexomapDeletePanoMatch AAAAAAAAAAAAAA BBBBBBBBBBBBBB"),
        QStringLiteral("NexomapDrawPanoMatchPng AAAAAAAAAAAAAA BBBBBBBBBBBBBB"),
        QStringLiteral("NexomapAutoCreatePanoMatch"),
        QStringLiteral("NexomapGetPanoGroupNum"),
        QStringLiteral("NexomapGetPanoNodeNumInOneGroup 0"),
        QStringLiteral("NexomapMergePointCloud 1 3 1 2 0"),
        QStringLiteral("NexomapLoadPanoNode /p/a.pno 1 2 3 4 5 6 7 8 plan.png"),
        QStringLiteral("NexomapLoadPanoMatch AAAAAAAAAAAAAA BBBBBBBBBBBBBB 1 2 3 4 5 6 7 8 9 10"),
        QStringLiteral("NexomapDecompressPointCloudFile /w/x.cld"),
        QStringLiteral("NexomapCompressPointCloudFile /w/x.tmp"),
        QStringLiteral("NexomapClean"),
    };
    EXPECT_EQ(calls().join(QLatin1Char('\n')).toStdString(), expected.join(QLatin1Char('\n')).toStdString());
}

TEST_F(Binding, OutputsArriveInTheirFields)
{
    NexomapLinker linker(folderOf(STAND_IN_COMPLETE));
    PanoNodeParasB node;
    linker.nodeParasB(0, &node);
    EXPECT_STREQ(node.name, "BBBBBBBBBBBBBB");
    EXPECT_EQ(node.position_x, 11);
    EXPECT_EQ(node.position_y, 12);
    EXPECT_EQ(node.position_z, 13);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(node.rotation[i], 20 + i);
    EXPECT_EQ(node.plan_center_x, 17);
    EXPECT_EQ(node.plan_center_y, 18);
    EXPECT_STREQ(node.plan_name, "plan.png");

    PanoMatchParas match;
    linker.matchParas(0, &match);
    EXPECT_STREQ(match.name_0, kA.constData());
    EXPECT_STREQ(match.name_1, kB.constData());
    const double values[] = {match.rot_0,   match.rot_1,   match.tilt_x0, match.tilt_x1,
                             match.tilt_y0, match.icon_y0, match.icon_y1, match.spacing};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(values[i], i + 1);
    EXPECT_EQ(match.mode, 9);
    EXPECT_EQ(match.reliability, 10);
}

TEST_F(Binding, ATextThatALibraryFillsToItsLastByteIsTerminated)
{
    NexomapLinker linker(folderOf(STAND_IN_COMPLETE));
    PanoNodeParas node;
    linker.nodeParas(0, &node);
    EXPECT_EQ(qstrlen(node.name), 15u);
    EXPECT_EQ(qstrlen(node.plan_name), 255u);
    EXPECT_EQ(node.direction, 6);
    EXPECT_EQ(node.plan_center_y, 8);
}

TEST_F(Binding, PathsWithChineseSpacesAndAccentsArriveInTheLocalEncoding)
{
    NexomapLinker linker(folderOf(STAND_IN_COMPLETE));
    linker.addNode(QStringLiteral(u"/tmp/全景 café/客厅.pno"));
    EXPECT_EQ(calls().value(0), QStringLiteral(u"NexomapAddNode /tmp/全景 café/客厅.pno"));
}

TEST_F(Binding, AMissingLibraryIsNamedAndTheOperationsFail)
{
    NexomapLinker linker(m_folder.path() + QLatin1Char('/'));
    EXPECT_FALSE(linker.available());
    EXPECT_TRUE(linker.problem().contains(m_folder.filePath(NexomapLinker::libraryFileName())))
        << linker.problem().toStdString();
    EXPECT_LT(linker.init(QStringLiteral("/w/")), 0);
    EXPECT_LT(linker.addNode(QStringLiteral("/p/a.pno")), 0);
    EXPECT_LT(linker.relocateAll(), 0);
    EXPECT_EQ(linker.nodeCount(), 0);
    EXPECT_EQ(linker.matchCount(), 0);
    EXPECT_EQ(linker.groupCount(), 0);
    EXPECT_EQ(linker.nodeCountInGroup(0), 0);
    PanoMatchParas untouched;
    EXPECT_LT(linker.matchParas(0, &untouched), 0);
    EXPECT_EQ(untouched.spacing, 2.0);
}

TEST_F(Binding, AFileThatIsNoLibraryIsSaid)
{
    QFile broken(m_folder.filePath(NexomapLinker::libraryFileName()));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("not a library");
    broken.close();
    NexomapLinker linker(m_folder.path() + QLatin1Char('/'));
    EXPECT_FALSE(linker.available());
    EXPECT_TRUE(linker.problem().contains(QStringLiteral("cannot be loaded")))
        << linker.problem().toStdString();
}

TEST_F(Binding, AMissingFunctionIsNamedAndNothingIsCalled)
{
    NexomapLinker linker(folderOf(STAND_IN_LACKING));
    EXPECT_FALSE(linker.available());
    EXPECT_TRUE(linker.problem().contains(QStringLiteral("lacks NexomapRelocateAll")))
        << linker.problem().toStdString();
    EXPECT_LT(linker.reset(), 0);
    EXPECT_EQ(linker.nodeCount(), 0);
    EXPECT_EQ(calls(), QStringList());
}

} // namespace
