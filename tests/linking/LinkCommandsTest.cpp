// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Automatic linking, links by hand, deletion, removal of panoramas.

#include "linking/AutoLink.h"
#include "linking/EditLinks.h"
#include "linking/LinkTable.h"
#include "linking/RemovePanorama.h"
#include "tests/linking/support/Projects.h"
#include "tests/linking/support/RecordingLinker.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAA";
constexpr const char* kB = "BBBBBBBBBBBBBB";
constexpr const char* kC = "CCCCCCCCCCCCCC";

QString qs(const char* text)
{
    return QString::fromLatin1(text);
}

class LinkCommands : public testing::Test
{
protected:
    RoamProject project;
    WorkingFolderForTest working{project};
    RecordingLinker linker;

    std::vector<AutoLinkStep> link()
    {
        std::vector<AutoLinkStep> steps;
        linkAutomatically(project, linker, [&](const AutoLinkStep& step) { steps.push_back(step); });
        return steps;
    }
};

TEST_F(LinkCommands, AutoLinkWithOnePanoramaDoesNothing)
{
    addPanorama(project, kA);
    EXPECT_FALSE(linkAutomatically(project, linker, [](const AutoLinkStep&) { ADD_FAILURE(); }));
    EXPECT_EQ(project.stage, NotLinked);
    EXPECT_FALSE(project.modified);
    EXPECT_EQ(linker.calls, QStringList());
}

TEST_F(LinkCommands, AutoLinkOfThreePanoramasShows30And60And90Then100)
{
    for (const char* name : {kA, kB, kC})
        addPanorama(project, name);
    QList<int> progress;
    for (const AutoLinkStep& step : link())
        progress << step.progress;
    EXPECT_EQ(progress, (QList<int>{0, 0, 30, 60, 90, 100}));
}

TEST_F(LinkCommands, AutoLinkProgressIsDividedAsIntegers)
{
    for (const char* name : {"AAAAAAAAAAAAAA", "AAAAAAAAAAAAAB", "AAAAAAAAAAAAAC", "AAAAAAAAAAAAAD",
                             "AAAAAAAAAAAAAE", "AAAAAAAAAAAAAF", "AAAAAAAAAAAAAG"})
        addPanorama(project, name);
    QList<int> progress;
    for (const AutoLinkStep& step : link())
        progress << step.progress;
    EXPECT_EQ(progress, (QList<int>{0, 0, 12, 25, 38, 51, 64, 77, 90, 100}));
}

TEST_F(LinkCommands, AutoLinkShowsAPictureFromTheSecondPanoramaOn)
{
    addPanorama(project, kA);
    addPanorama(project, kB);
    QList<bool> shown;
    for (const AutoLinkStep& step : link())
        shown << step.show_picture;
    EXPECT_EQ(shown, (QList<bool>{false, false, false, true, true}));
}

TEST_F(LinkCommands, AutoLinkCallsTheLibraryInOrder)
{
    addPanorama(project, kB);
    addPanorama(project, kA);
    linker.nodes = {nodeAt(kB, 0, 0, 0), nodeAt(kA, 1, 0, 0)};
    linker.matches = {matchOf(kA, kB)};
    link();
    EXPECT_EQ(linker.calls,
              (QStringList{qs("reset"), qs("matchCount"), qs("addNode /panoramas/BBBBBBBBBBBBBB.pno"),
                           qs("addNode /panoramas/AAAAAAAAAAAAAA.pno"), qs("finishAddNode"), qs("nodeCount"),
                           qs("nodeParas 0"), qs("nodeParas 1"), qs("matchCount"), qs("matchParas 0")}));
    EXPECT_EQ(project.stage, Linked);
    EXPECT_TRUE(project.modified);
    EXPECT_EQ(project.links.size(), 1u);
    EXPECT_EQ(project.panoramas[1]->position_x, 1);
}

TEST_F(LinkCommands, AutoLinkTellsTheWindowBeforeItDestroysTheOldLinks)
{
    addPanorama(project, kA);
    addPanorama(project, kB);
    addLink(project, kA, kB);
    std::vector<std::size_t> links;
    linkAutomatically(project, linker, [&](const AutoLinkStep&) { links.push_back(project.links.size()); });
    EXPECT_EQ(links, (std::vector<std::size_t>{1, 0, 0, 0, 0}));
}

TEST_F(LinkCommands, BThenAGivesTheSameLinkAsAThenB)
{
    for (const bool swapped : {false, true}) {
        RoamProject tour;
        addPanorama(tour, kB);
        addPanorama(tour, kA);
        const AddLinkResult result = addLinkByHand(tour, swapped ? 1 : 0, swapped ? 0 : 1);
        EXPECT_EQ(result.outcome, AddLinkOutcome::Added);
        ASSERT_EQ(tour.links.size(), 1u);
        EXPECT_STREQ(tour.links[0]->name_0, kA);
        EXPECT_STREQ(tour.links[0]->name_1, kB);
        EXPECT_EQ(static_cast<quint64>(tour.links[0]->id_0), panoIdFromName(kA));
        EXPECT_EQ(result.panorama_0, tour.panoramas[1].get());
        EXPECT_TRUE(tour.modified);
    }
}

TEST_F(LinkCommands, ALinkByHandHasTheFixedDefaults)
{
    addPanorama(project, kA);
    addPanorama(project, kB);
    addLinkByHand(project, 0, 1);
    const PanoLink& link = *project.links.at(0);
    EXPECT_EQ(link.rot_0, 1.5707963267948966);
    EXPECT_EQ(link.rot_1, 1.5707963267948966);
    EXPECT_EQ(link.tilt_x0, 0);
    EXPECT_EQ(link.tilt_x1, 0);
    EXPECT_EQ(link.tilt_y0, 0);
    EXPECT_EQ(link.icon_y0, 2.356194490192345);
    EXPECT_EQ(link.icon_y1, 2.356194490192345);
    EXPECT_EQ(link.spacing, 2.0);
    EXPECT_EQ(link.mode, 1);
    EXPECT_EQ(link.reliability, 0);
    EXPECT_EQ(link.match_path_0, QString());
    EXPECT_EQ(link.match_path_1, QString());
    EXPECT_EQ(linker.calls, QStringList());
}

TEST_F(LinkCommands, TheSamePairInEitherOrderIsRefused)
{
    addPanorama(project, kA);
    addPanorama(project, kB);
    addLinkByHand(project, 0, 1);
    project.modified = false;
    EXPECT_EQ(addLinkByHand(project, 0, 1).outcome, AddLinkOutcome::AlreadyLinked);
    EXPECT_EQ(addLinkByHand(project, 1, 0).outcome, AddLinkOutcome::AlreadyLinked);
    EXPECT_EQ(project.links.size(), 1u);
    EXPECT_FALSE(project.modified);
}

TEST_F(LinkCommands, ALibraryLinkWithItsEndsTheOtherWayRoundIsTheSamePairToo)
{
    addPanorama(project, kA);
    addPanorama(project, kB);
    addLink(project, kB, kA);
    EXPECT_EQ(addLinkByHand(project, 0, 1).outcome, AddLinkOutcome::AlreadyLinked);
}

TEST_F(LinkCommands, AddLinkRefusesNoSelectionAndTheSamePanorama)
{
    addPanorama(project, kA);
    addPanorama(project, kB);
    EXPECT_EQ(addLinkByHand(project, -1, 1).outcome, AddLinkOutcome::NothingSelected);
    EXPECT_EQ(addLinkByHand(project, 0, -1).outcome, AddLinkOutcome::NothingSelected);
    EXPECT_EQ(addLinkByHand(project, 0, 2).outcome, AddLinkOutcome::NothingSelected);
    EXPECT_EQ(addLinkByHand(project, 1, 1).outcome, AddLinkOutcome::SamePanorama);
}

TEST_F(LinkCommands, WithLidarALinkByHandNeedsTheEditor)
{
    addPanorama(project, kB, true);
    addPanorama(project, kA, true);
    const AddLinkResult result = addLinkByHand(project, 0, 1);
    EXPECT_EQ(result.outcome, AddLinkOutcome::NeedsEditor);
    EXPECT_EQ(result.panorama_0->name(), QByteArray(kA));
    EXPECT_EQ(result.panorama_1->name(), QByteArray(kB));
    EXPECT_TRUE(project.links.empty());
    EXPECT_FALSE(project.modified);
}

TEST_F(LinkCommands, DeletingTheLastLinkLeavesNoRows)
{
    addPanorama(project, kA);
    addPanorama(project, kB);
    addLinkByHand(project, 0, 1);
    project.modified = false;
    EXPECT_TRUE(deleteLink(project, linker, 0));
    EXPECT_TRUE(linkRows(project).empty());
    EXPECT_TRUE(project.modified);
    EXPECT_EQ(linker.calls, QStringList()); // without lidar the library is never asked about links
}

TEST_F(LinkCommands, WithLidarDeletionGoesThroughTheLibraryAndReadsBack)
{
    addPanorama(project, kA, true);
    addPanorama(project, kB, true);
    addPanorama(project, kC, true);
    linker.matches = {matchOf(kA, kB), matchOf(kB, kC)};
    link();
    linker.calls.clear();
    EXPECT_TRUE(deleteLink(project, linker, 0));
    EXPECT_EQ(linker.calls, (QStringList{qs("deleteMatch AAAAAAAAAAAAAA BBBBBBBBBBBBBB"), qs("relocateAll"),
                                         qs("nodeCount"), qs("matchCount"), qs("matchParas 0")}));
    ASSERT_EQ(project.links.size(), 1u);
    EXPECT_STREQ(project.links[0]->name_0, kB);
}

TEST_F(LinkCommands, DeletingWithoutASelectedRowDoesNothing)
{
    addLink(project, kA, kB);
    EXPECT_FALSE(deleteLink(project, linker, -1));
    EXPECT_FALSE(deleteLink(project, linker, 1));
    EXPECT_EQ(project.links.size(), 1u);
    EXPECT_FALSE(project.modified);
}

TEST_F(LinkCommands, LinksByHandShowNoAndLibraryLinksShowYes)
{
    addPanorama(project, kA);
    addPanorama(project, kB);
    addLink(project, kA, kB);
    addLink(project, kA, kB)->mode = LinkMatched;
    addLink(project, kA, kC)->mode = LinkByPose;
    const std::vector<LinkRow> rows = linkRows(project);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_FALSE(rows[0].automatic);
    EXPECT_TRUE(rows[1].automatic);
    EXPECT_TRUE(rows[2].automatic);
    EXPECT_EQ(rows[0].panorama_0, QStringLiteral("room AAAAAAAAAAAAAA"));
    EXPECT_EQ(rows[0].panorama_1, QStringLiteral("room BBBBBBBBBBBBBB"));
    EXPECT_EQ(rows[2].panorama_1, QString()); // not in the project
}

TEST_F(LinkCommands, AMatchPictureIsDrawnOnlyForLidarInTheLinkedStage)
{
    addPanorama(project, kA, true);
    addPanorama(project, kB, true);
    PanoLink* link = addLink(project, kB, kA);
    EXPECT_FALSE(drawMatchPicture(project, linker, *link));
    project.stage = MapGenerated;
    EXPECT_FALSE(drawMatchPicture(project, linker, *link));
    EXPECT_EQ(linker.calls, QStringList());
    project.stage = Linked;
    EXPECT_TRUE(drawMatchPicture(project, linker, *link));
    EXPECT_EQ(linker.calls, QStringList{qs("drawMatchPng BBBBBBBBBBBBBB AAAAAAAAAAAAAA")});
    project.lidar = false;
    EXPECT_FALSE(drawMatchPicture(project, linker, *link));
}

TEST_F(LinkCommands, ALinkWhosePanoramaWasRemovedHasNoMatchPicture)
{
    addPanorama(project, kA, true);
    project.stage = Linked;
    const PanoLink* link = addLink(project, kA, kB);
    EXPECT_FALSE(endsOf(project, *link).complete());
    EXPECT_FALSE(drawMatchPicture(project, linker, *link));
    EXPECT_EQ(linker.calls, QStringList());
}

TEST_F(LinkCommands, RemovingAPanoramaRemovesItsLinksAndLeavesTheOthers)
{
    for (const char* name : {kA, kB, kC})
        addPanorama(project, name);
    addLink(project, kA, kB);
    addLink(project, kB, kC);
    addLink(project, kC, kA);
    EXPECT_EQ(removePanorama(project, 0), 2);
    ASSERT_EQ(project.links.size(), 1u);
    EXPECT_STREQ(project.links[0]->name_0, kB);
    EXPECT_EQ(project.panoramas.size(), 2u);
    EXPECT_TRUE(project.modified);
}

TEST_F(LinkCommands, RemovingWithoutASelectedRowDoesNothing)
{
    addPanorama(project, kA);
    EXPECT_EQ(removePanorama(project, -1), -1);
    EXPECT_EQ(removePanorama(project, 1), -1);
    EXPECT_EQ(project.panoramas.size(), 1u);
    EXPECT_FALSE(project.modified);
}

TEST_F(LinkCommands, RemovingTheLastPanoramaEndsTheLinkedStage)
{
    addPanorama(project, kA);
    project.stage = Linked;
    removePanorama(project, 0);
    EXPECT_EQ(project.stage, NotLinked);
}

} // namespace
