// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The enabling rules, every combination that matters.

#include "linking/CommandState.h"
#include "tests/linking/support/Projects.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* kNames[] = {"AAAAAAAAAAAAAA", "BBBBBBBBBBBBBB", "CCCCCCCCCCCCCC"};

void fill(RoamProject& project, int count, bool lidar, qint32 stage)
{
    for (int i = 0; i < count; ++i)
        addPanorama(project, kNames[i], lidar);
    project.lidar = lidar;
    project.stage = stage;
}

TEST(CommandState, AnEmptyProjectOnlyTakesPanoramas)
{
    const CommandState state = commandState(RoamProject(), -1, -1);
    EXPECT_TRUE(state.add_panorama);
    EXPECT_FALSE(state.delete_panorama || state.panorama || state.auto_link || state.add_link ||
                 state.generate_map || state.delete_link);
}

TEST(CommandState, OnePanoramaCanBeDeletedAndDecoratedButNotLinked)
{
    RoamProject project;
    fill(project, 1, true, NotLinked);
    const CommandState state = commandState(project, 0, -1);
    EXPECT_TRUE(state.add_panorama && state.delete_panorama && state.panorama);
    EXPECT_FALSE(state.auto_link || state.add_link || state.generate_map);
}

TEST(CommandState, TwoPanoramasCanBeLinkedAutomatically)
{
    RoamProject project;
    fill(project, 2, true, NotLinked);
    const CommandState state = commandState(project, 1, -1);
    EXPECT_TRUE(state.auto_link);
    EXPECT_FALSE(state.add_link || state.generate_map);
}

TEST(CommandState, OnceLinkedTheSetOfPanoramasIsFrozen)
{
    for (const qint32 stage : {Linked, MapGenerated}) {
        RoamProject project;
        fill(project, 2, true, stage);
        const CommandState state = commandState(project, 0, 0);
        EXPECT_FALSE(state.add_panorama || state.delete_panorama);
        EXPECT_TRUE(state.panorama && state.auto_link && state.add_link && state.generate_map &&
                    state.delete_link);
    }
}

TEST(CommandState, TheMapNeedsLidar)
{
    RoamProject project;
    fill(project, 2, false, Linked);
    const CommandState state = commandState(project, 0, -1);
    EXPECT_TRUE(state.add_link);
    EXPECT_FALSE(state.generate_map);
}

TEST(CommandState, LinksOfOneSinglePanoramaAreNotOffered)
{
    RoamProject project;
    fill(project, 1, true, Linked);
    const CommandState state = commandState(project, 0, -1);
    EXPECT_FALSE(state.add_link || state.generate_map || state.auto_link);
}

TEST(CommandState, DeletingALinkNeedsARowAndWithLidarALinkedProject)
{
    RoamProject lidar;
    fill(lidar, 2, true, NotLinked);
    EXPECT_FALSE(commandState(lidar, 0, 0).delete_link);
    lidar.stage = Linked;
    EXPECT_TRUE(commandState(lidar, 0, 0).delete_link);
    EXPECT_FALSE(commandState(lidar, 0, -1).delete_link);

    RoamProject plain;
    fill(plain, 2, false, NotLinked);
    EXPECT_TRUE(commandState(plain, 0, 0).delete_link);
    EXPECT_FALSE(commandState(plain, 0, -1).delete_link);
}

TEST(CommandState, NoSelectedRowDisablesWhatActsOnAPanorama)
{
    RoamProject project;
    fill(project, 2, false, NotLinked);
    const CommandState state = commandState(project, -1, -1);
    EXPECT_FALSE(state.delete_panorama || state.panorama);
}

TEST(CommandState, ARefreshSelectsTheRememberedRowOrTheFirstAndNeverOneBehindTheLast)
{
    EXPECT_EQ(rowAfterRefresh(-1, 3), 0);
    EXPECT_EQ(rowAfterRefresh(1, 3), 1);
    EXPECT_EQ(rowAfterRefresh(5, 3), 2);
    EXPECT_EQ(rowAfterRefresh(0, 0), -1);
    EXPECT_EQ(rowAfterRefresh(-1, 0), -1);
}

TEST(CommandState, AnEmptyListEndsTheLinkedStageAndAnyOtherKeepsIt)
{
    RoamProject project;
    project.stage = MapGenerated;
    settleStage(project);
    EXPECT_EQ(project.stage, NotLinked);
    fill(project, 1, false, Linked);
    settleStage(project);
    EXPECT_EQ(project.stage, Linked);
}

} // namespace
