// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the library says is copied into the project.

#include "linking/ReadBack.h"
#include "linking/MatchFiles.h"
#include "tests/linking/support/Projects.h"
#include "tests/linking/support/RecordingLinker.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";
constexpr const char* kB = "BBBBBBBBBBBBBB";

class ReadBack : public testing::Test
{
protected:
    RoamProject project;
    WorkingFolderForTest working{project};
    RecordingLinker linker;

    void SetUp() override { linker.finishAddNode(); }
};

TEST_F(ReadBack, ANodeNameThatMatchesNoPanoramaIsSkipped)
{
    PanoNode* node = addPanorama(project, kA);
    linker.nodes = {nodeAt("ZZZZZZZZZZZZZZ", 9, 9, 9), nodeAt(kA, 1, 2, 3)};
    readBackNodes(project, linker);
    EXPECT_EQ(project.panoramas.size(), 1u);
    EXPECT_EQ(node->position_x, 1);
    EXPECT_EQ(node->position_y, 2);
    EXPECT_EQ(node->position_z, 3);
}

TEST_F(ReadBack, TheSixLocationValuesLandInTheirFields)
{
    PanoNode* node = addPanorama(project, kA);
    PanoNodeParas paras = nodeAt(kA, 1, 2, 3);
    paras.vertex_x = 4;
    paras.vertex_y = 5;
    paras.direction = 6;
    linker.nodes = {paras};
    readBackNodes(project, linker);
    EXPECT_EQ(node->vertex_x, 4);
    EXPECT_EQ(node->vertex_y, 5);
    EXPECT_EQ(node->direction, 6);
}

TEST_F(ReadBack, ANameInTheOtherLetterCaseIsTheSamePanorama)
{
    PanoNode* node = addPanorama(project, kA);
    linker.nodes = {nodeAt("aaaaaaaaaaaaab", 5, 0, 0)};
    readBackNodes(project, linker);
    EXPECT_EQ(node->position_x, 5);
}

TEST_F(ReadBack, APlanPictureThatIsNotInTheWorkingFolderLeavesThePlanValues)
{
    PanoNode* node = addPanorama(project, kA);
    node->plan_center_x = 3;
    node->plan_center_y = 4;
    node->plan_src = QStringLiteral("/earlier.png");
    PanoNodeParas paras = nodeAt(kA, 0, 0, 0);
    paras.plan_center_x = 10;
    paras.plan_center_y = 20;
    qstrncpy(paras.plan_name, "missing.png", sizeof paras.plan_name);
    linker.nodes = {paras};
    readBackNodes(project, linker);
    EXPECT_EQ(node->plan_center_x, 3);
    EXPECT_EQ(node->plan_center_y, 4);
    EXPECT_EQ(node->plan_src, QStringLiteral("/earlier.png"));
}

TEST_F(ReadBack, APresentPlanPictureIsTakenWithItsCentre)
{
    PanoNode* node = addPanorama(project, kA);
    const QString plan = working.make(QStringLiteral(u"平面 00000000.png"));
    PanoNodeParas paras = nodeAt(kA, 0, 0, 0);
    paras.plan_center_x = 0;
    paras.plan_center_y = 20;
    qstrncpy(paras.plan_name, QStringLiteral(u"平面 00000000.png").toLocal8Bit().constData(),
             sizeof paras.plan_name);
    linker.nodes = {paras};
    readBackNodes(project, linker);
    EXPECT_EQ(node->plan_center_x, 0);
    EXPECT_EQ(node->plan_center_y, 20);
    EXPECT_EQ(node->plan_src, plan);
}

TEST_F(ReadBack, ANegativePlanCentreOrAnEmptyNameLeavesThePlanValues)
{
    PanoNode* node = addPanorama(project, kA);
    node->plan_center_x = 3;
    working.make(QStringLiteral("plan.png"));
    PanoNodeParas negative = nodeAt(kA, 0, 0, 0);
    negative.plan_center_x = 5;
    qstrncpy(negative.plan_name, "plan.png", sizeof negative.plan_name); // centre y stays at its preset, -1
    PanoNodeParas nameless = nodeAt(kA, 0, 0, 0);
    nameless.plan_center_x = nameless.plan_center_y = 7;
    linker.nodes = {negative, nameless};
    readBackNodes(project, linker);
    EXPECT_EQ(node->plan_center_x, 3);
    EXPECT_EQ(node->plan_src, QString());
}

TEST_F(ReadBack, AMatchWithoutItsDatFilesGivesALinkWithTwoEmptyPaths)
{
    linker.matches = {matchOf(kA, kB)};
    readBackMatches(project, linker);
    ASSERT_EQ(project.links.size(), 1u);
    EXPECT_EQ(project.links[0]->match_path_0, QString());
    EXPECT_EQ(project.links[0]->match_path_1, QString());
}

TEST_F(ReadBack, EachDatFileIsTakenOnlyWhenItIsThere)
{
    const QString second = working.make(QStringLiteral("AAAAAAAAAAAAAB_BBBBBBBBBBBBBB_1.dat"));
    linker.matches = {matchOf(kB, kA)};
    readBackMatches(project, linker);
    EXPECT_EQ(project.links[0]->match_path_0, QString());
    EXPECT_EQ(project.links[0]->match_path_1, second);
}

TEST_F(ReadBack, TheMatchKeyIsTheSameWhicheverPanoramaComesFirst)
{
    EXPECT_EQ(matchKey(kB, kA), QStringLiteral("AAAAAAAAAAAAAB_BBBBBBBBBBBBBB"));
    EXPECT_EQ(matchKey(kA, kB), QStringLiteral("AAAAAAAAAAAAAB_BBBBBBBBBBBBBB"));
}

TEST_F(ReadBack, MatchesReplaceAllLinksAndKeepTheLibrarysOrderOfEnds)
{
    addLink(project, "CCCCCCCCCCCCCC", "DDDDDDDDDDDDDD");
    PanoMatchParas match = matchOf(kB, kA, LinkByPose);
    match.rot_0 = 1;
    match.rot_1 = 2;
    match.tilt_x0 = 3;
    match.tilt_x1 = 4;
    match.tilt_y0 = 5;
    match.icon_y0 = 6;
    match.icon_y1 = 7;
    match.spacing = 8;
    match.reliability = 0.9;
    linker.matches = {match};
    readBackMatches(project, linker);
    ASSERT_EQ(project.links.size(), 1u);
    const PanoLink& link = *project.links[0];
    EXPECT_EQ(static_cast<quint64>(link.id_0), panoIdFromName(kB));
    EXPECT_EQ(static_cast<quint64>(link.id_1), panoIdFromName(kA));
    EXPECT_STREQ(link.name_0, kB);
    EXPECT_STREQ(link.name_1, kA);
    const double values[] = {link.rot_0,   link.rot_1,   link.tilt_x0, link.tilt_x1,
                             link.tilt_y0, link.icon_y0, link.icon_y1, link.spacing};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(values[i], i + 1);
    EXPECT_EQ(link.mode, LinkByPose);
    EXPECT_EQ(link.reliability, 0.9);
}

TEST_F(ReadBack, OutputsThatTheLibraryLeavesUntouchedKeepTheirPresets)
{
    linker.matches = {matchOf(kA, kB, 2)};
    linker.leavesOutputsUntouched = true;
    readBackMatches(project, linker);
    ASSERT_EQ(project.links.size(), 1u);
    const PanoLink& link = *project.links[0];
    EXPECT_EQ(link.rot_0, 0);
    EXPECT_EQ(link.icon_y0, 2.356194490192345);
    EXPECT_EQ(link.icon_y1, 2.356194490192345);
    EXPECT_EQ(link.spacing, 2.0);
    EXPECT_EQ(link.mode, 0);
    EXPECT_EQ(link.reliability, 0.0);
}

TEST_F(ReadBack, FailureStatusesAreIgnoredAndOnlyTheCountsCount)
{
    linker.status = -9;
    linker.matches = {matchOf(kA, kB)};
    readBackMatches(project, linker);
    EXPECT_EQ(project.links.size(), 1u);
}

TEST_F(ReadBack, AfterAnEditNodesAreReadBeforeMatches)
{
    addPanorama(project, kA);
    linker.nodes = {nodeAt(kA, 0, 0, 0)};
    linker.matches = {matchOf(kA, kB)};
    linker.calls.clear();
    readBackAfterEdit(project, linker);
    EXPECT_EQ(linker.calls, (QStringList{QStringLiteral("nodeCount"), QStringLiteral("nodeParas 0"),
                                         QStringLiteral("matchCount"), QStringLiteral("matchParas 0")}));
}

TEST_F(ReadBack, TheNewestMatchPictureIsTheOneWrittenLast)
{
    project.lidar = true;
    EXPECT_EQ(newestMatchPicture(project), QString());
    const QDateTime now = QDateTime::currentDateTime();
    int age = 30;
    for (const char* name : {"z.png", "b.png", "a.jpg"}) {
        QFile file(working.make(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.setFileTime(now.addSecs(-(age -= 10)), QFileDevice::FileModificationTime);
    }
    EXPECT_EQ(newestMatchPicture(project), working.file(QStringLiteral("b.png")));
}

TEST_F(ReadBack, AProjectWithoutLidarHasNoMatchPicture)
{
    working.make(QStringLiteral("b.png"));
    EXPECT_EQ(newestMatchPicture(project), QString());
}

} // namespace
