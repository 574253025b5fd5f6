// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The 24 C functions: arguments, order of calls, and what a failed call leaves behind.

#include "tests/nexomap/LibraryFixture.h"

#include <fstream>

extern "C" int CountMissedBadArguments(void);
extern "C" int CountReadyBeforeInit(void);

using namespace nexomap;

namespace {

MadeUpTour threeRooms()
{
    MadeUpTour tour;
    tour.add(0, 0, 0.3);
    tour.add(3, 1, -1.0);
    tour.add(2, 4, 2.0);
    return tour;
}

class Interface : public LibraryTest
{};

class InterfaceAwkwardFolder : public LibraryTest
{
protected:
    InterfaceAwkwardFolder()
        : LibraryTest(u8"全景 漫游 é")
    {}
};

TEST_F(Interface, EveryFunctionRefusesBadArgumentsFromC)
{
    link(threeRooms());
    const auto nodes_before = nodes();
    const auto matches_before = matches();
    const auto files_before = folder.names();
    EXPECT_EQ(CountMissedBadArguments(), 0);
    EXPECT_EQ(nodes(), nodes_before);
    EXPECT_EQ(matches(), matches_before);
    EXPECT_EQ(folder.names(), files_before);
}

TEST_F(Interface, NothingIsReadyBeforeInitAndAfterClean)
{
    setFrontEnd(threeRooms().frontEnd());
    EXPECT_EQ(CountReadyBeforeInit(), 0);
    start(threeRooms());
    EXPECT_EQ(NexomapGetPanoNodeNum(), 0);
    EXPECT_EQ(NexomapClean(), NEXOMAP_OK);
    EXPECT_EQ(CountReadyBeforeInit(), 0);
}

TEST_F(Interface, InitWantsAFolderThatExistsAndTheReservedZero)
{
    EXPECT_EQ(NexomapInit((folder.path() + "/missing").c_str(), 0), NEXOMAP_BAD_ARGUMENT);
    EXPECT_EQ(NexomapInit(folder.path().c_str(), 1), NEXOMAP_BAD_ARGUMENT);
    EXPECT_EQ(NexomapGetPanoNodeNum(), NEXOMAP_NOT_READY);
    EXPECT_EQ(NexomapInit((folder.path() + "/").c_str(), 0), NEXOMAP_OK);
}

TEST_F(Interface, ReadingWhileAddingIsNotReady)
{
    start(threeRooms());
    EXPECT_EQ(NexomapGetPanoMatchNum(), 0);
    ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(0).c_str()), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoNodeNum(), NEXOMAP_NOT_READY);
    EXPECT_EQ(NexomapGetPanoMatchNum(), NEXOMAP_NOT_READY);
    EXPECT_EQ(NexomapRelocateAll(), NEXOMAP_NOT_READY);
    EXPECT_EQ(NexomapLoadPanoNode(MadeUpTour::pathOf(1).c_str(), 0, 0, 0, 0, 0, 0, 0, 0, ""),
              NEXOMAP_NOT_READY);
    ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoNodeNum(), 1);
}

TEST_F(Interface, NodesKeepTheOrderInWhichTheyWereAdded)
{
    start(threeRooms());
    for (const int k : {2, 0, 1})
        ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(k).c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
    ASSERT_EQ(NexomapGetPanoNodeNum(), 3);
    EXPECT_EQ(node(0).name, MadeUpTour::nameOf(2));
    EXPECT_EQ(node(1).name, MadeUpTour::nameOf(0));
    EXPECT_EQ(node(2).name, MadeUpTour::nameOf(1));
}

TEST_F(Interface, AFailedAddLeavesTheOthersAsTheyWere)
{
    start(threeRooms());
    ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(0).c_str()), NEXOMAP_OK);
    EXPECT_EQ(NexomapAddNode(MadeUpTour::pathOf(0).c_str()), NEXOMAP_DUPLICATE);
    EXPECT_EQ(NexomapAddNode("no such file.pno"), NEXOMAP_BAD_FILE);
    ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(1).c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoNodeNum(), 2);
    EXPECT_EQ(NexomapGetPanoMatchNum(), 1);
}

TEST_F(Interface, AnExceptionFromBelowEndsInAStatus)
{
    FrontEnd front = threeRooms().frontEnd();
    front.match = [](const Panorama&, const Panorama&) -> std::optional<PairPose> { throw std::bad_alloc(); };
    setFrontEnd(front);
    ASSERT_EQ(NexomapInit(folder.path().c_str(), 0), NEXOMAP_OK);
    ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(0).c_str()), NEXOMAP_OK);
    EXPECT_EQ(NexomapAddNode(MadeUpTour::pathOf(1).c_str()), NEXOMAP_NO_MEMORY);
    front.match = [](const Panorama&, const Panorama&) -> std::optional<PairPose> { throw 7; };
    setFrontEnd(front);
    ASSERT_EQ(NexomapInit(folder.path().c_str(), 0), NEXOMAP_OK);
    ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(0).c_str()), NEXOMAP_OK);
    EXPECT_EQ(NexomapAddNode(MadeUpTour::pathOf(1).c_str()), NEXOMAP_INTERNAL);
    ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoNodeNum(), 1);
}

TEST_F(Interface, ResetDropsEverythingButTheFiles)
{
    link(threeRooms());
    const auto files = folder.names();
    EXPECT_FALSE(files.empty());
    EXPECT_EQ(NexomapReset(), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoNodeNum(), 0);
    EXPECT_EQ(NexomapGetPanoMatchNum(), 0);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 0);
    EXPECT_EQ(folder.names(), files);
}

TEST_F(Interface, NoPanoramaAndOnePanoramaAreFine)
{
    start(threeRooms());
    EXPECT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
    EXPECT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    EXPECT_EQ(NexomapAutoCreatePanoMatch(), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 0);
    ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(0).c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    EXPECT_EQ(NexomapGetPanoNodeNumInOneGroup(0), 1);
    EXPECT_EQ(node(0).position, Eigen::Vector3d::Zero());
    EXPECT_EQ(node(0).direction, 0.0);
    EXPECT_EQ(node(0).plan_x, -1);
}

TEST_F(Interface, EveryMatchedLinkHasItsTwoFilesNamedByTheSmallerNameFirst)
{
    link(threeRooms());
    ASSERT_EQ(NexomapGetPanoMatchNum(), 3);
    for (const MatchReport& m : matches()) {
        const std::string key = std::min(m.name_0, m.name_1) + "_" + std::max(m.name_0, m.name_1);
        EXPECT_TRUE(std::filesystem::exists(folder / (key + "_0.dat")));
        EXPECT_TRUE(std::filesystem::exists(folder / (key + "_1.dat")));
        EXPECT_EQ(m.mode, 0);
    }
}

TEST_F(Interface, TheDrawnPictureIsTheNewestOfTheFolder)
{
    link(threeRooms());
    // A picture from the future must not hide the one just drawn.
    std::ofstream(folder / "later.png") << "x";
    const auto future = std::filesystem::file_time_type::clock::now() + std::chrono::seconds(5);
    std::filesystem::last_write_time(folder / "later.png", future);
    ASSERT_EQ(NexomapDrawPanoMatchPng("AAAAAAAAAAAAAC", "AAAAAAAAAAAAAA"), NEXOMAP_OK);
    const auto drawn = std::filesystem::last_write_time(folder / "AAAAAAAAAAAAAA_AAAAAAAAAAAAAC.png");
    EXPECT_GE(drawn, future + std::chrono::milliseconds(10));
    EXPECT_EQ(NexomapDrawPanoMatchPng("AAAAAAAAAAAAAC", "AAAAAAAAAAAAAZ"), NEXOMAP_UNKNOWN_NAME);
}

TEST_F(Interface, AFolderThatVanishedIsAFailureThatKeepsTheState)
{
    link(threeRooms());
    const auto before = matches();
    std::filesystem::remove_all(folder.path());
    EXPECT_EQ(NexomapDrawPanoMatchPng("AAAAAAAAAAAAAC", "AAAAAAAAAAAAAA"), NEXOMAP_CANNOT_WRITE);
    EXPECT_EQ(NexomapRelocateAll(), NEXOMAP_CANNOT_WRITE);
    EXPECT_EQ(matches(), before);
}

TEST_F(InterfaceAwkwardFolder, ChineseSpacesAndAccentsInPathsWork)
{
    link(threeRooms());
    EXPECT_EQ(NexomapGetPanoMatchNum(), 3);
    ASSERT_EQ(NexomapDrawPanoMatchPng("AAAAAAAAAAAAAA", "AAAAAAAAAAAAAB"), NEXOMAP_OK);
    EXPECT_TRUE(std::filesystem::exists(folder / "AAAAAAAAAAAAAA_AAAAAAAAAAAAAB.png"));
    EXPECT_TRUE(std::filesystem::exists(folder / "AAAAAAAAAAAAAA_AAAAAAAAAAAAAB_0.dat"));
}

TEST_F(Interface, ADeletedMatchIsGoneWithItsFilesUnderEitherOrderOfNames)
{
    link(threeRooms());
    ASSERT_EQ(NexomapDeletePanoMatch("AAAAAAAAAAAAAB", "AAAAAAAAAAAAAA"), NEXOMAP_OK);
    EXPECT_EQ(NexomapDeletePanoMatch("AAAAAAAAAAAAAA", "AAAAAAAAAAAAAB"), NEXOMAP_UNKNOWN_NAME);
    EXPECT_EQ(NexomapGetPanoMatchNum(), 2);
    EXPECT_FALSE(std::filesystem::exists(folder / "AAAAAAAAAAAAAA_AAAAAAAAAAAAAB_0.dat"));
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
}

TEST_F(Interface, DeletingTheBridgeSplitsTheGroupAndSetsThePartsApart)
{
    MadeUpTour tour;
    for (const double x : {0.0, 3.0, 9.0, 12.0})
        tour.add(x, 0, 0.1 * x);
    link(tour);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 1);
    for (const MatchReport& m : matches()) {
        const bool crosses = (m.name_0 <= MadeUpTour::nameOf(1)) != (m.name_1 <= MadeUpTour::nameOf(1));
        if (crosses) {
            ASSERT_EQ(NexomapDeletePanoMatch(m.name_0.c_str(), m.name_1.c_str()), NEXOMAP_OK);
        }
    }
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    ASSERT_EQ(NexomapGetPanoGroupNum(), 2);
    EXPECT_EQ(NexomapGetPanoNodeNumInOneGroup(0), 2);
    EXPECT_EQ(node(0).position.norm(), 0.0);
    EXPECT_NEAR((node(3).position - node(2).position).norm(), 3.0, 0.02);
    EXPECT_GE((node(2).position - node(1).position).norm(), 5.0);
    EXPECT_EQ(node(2).direction, 0.0);
}

/// Two pairs of stations in reach of each other by picture, out of sight of the other pair, and what the
/// shape of the rooms offers.
class JoiningByShape : public LibraryTest
{
protected:
    int groupsWithReach(double reach_m)
    {
        MadeUpTour tour;
        tour.add(-9, 0, 0.3);
        tour.add(-6, 0, -1.0);
        tour.add(6, 0, 2.0);
        tour.add(9, 0, 0.0);
        tour.reach_m = reach_m;
        FrontEnd front_end = tour.frontEnd();
        front_end.align = [tour](const Panorama& a, const Panorama& b) -> std::optional<PairPose> {
            return tour.pairPose(stationOf(a.id), stationOf(b.id));
        };
        link(tour, front_end);
        return NexomapGetPanoGroupNum();
    }

private:
    static int stationOf(const std::string& id)
    {
        int station = 0;
        while (MadeUpTour::nameOf(station) != id)
            ++station;
        return station;
    }
};

TEST_F(JoiningByShape, WherePicturesMatchTheyHaveTheSay)
{
    EXPECT_EQ(groupsWithReach(4.0), 2) << "what pictures left apart stays apart";
}

TEST_F(JoiningByShape, WherePicturesDoNotMatchShapesJoin)
{
    EXPECT_EQ(groupsWithReach(-1.0), 1);
}

} // namespace
