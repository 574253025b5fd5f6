// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A tour saved and loaded again in another working folder.

#include "tests/nexomap/LibraryFixture.h"

#include <fstream>

using namespace nexomap;

namespace {

MadeUpTour flat()
{
    MadeUpTour tour;
    tour.half_width_m = 9;
    tour.half_depth_m = 3;
    tour.walls = {{-3, -0.5, 0.5}, {3, -0.5, 0.5}};
    for (const double x : {-6.0, 0.0, 6.0}) {
        tour.add(x, 0.0, 0.5 * x, 0.01 * x, 0.004, -0.003);
        tour.add(x + 1, 2.0, 1.0 - x, 0.0, -0.005, 0.001);
    }
    return tour;
}

/// Tour files keep seven digits.
double rounded(double value)
{
    return std::round(value * 1e7) / 1e7;
}

class SavedTour : public LibraryTest
{
protected:
    /// What a program does when it opens a tour that it saved before: fresh folder, match files, nodes,
    /// links.
    void reopen(const MadeUpTour& tour, const std::vector<NodeReport>& nodes,
                const std::vector<MatchReport>& links, bool with_files = true)
    {
        if (with_files)
            for (const std::string& name : folder.names())
                if (name.find(".dat") != std::string::npos)
                    std::filesystem::copy(folder / name, second / name);
        NexomapClean();
        setFrontEnd(tour.frontEnd());
        ASSERT_EQ(NexomapInit(second.path().c_str(), 0), NEXOMAP_OK);
        for (const NodeReport& n : nodes)
            ASSERT_EQ(NexomapLoadPanoNode(MadeUpTour::pathOf(indexOf(tour, n.name)).c_str(),
                                          rounded(n.position.x()), rounded(n.position.y()),
                                          rounded(n.position.z()), rounded(n.vertex.x()),
                                          rounded(n.vertex.y()), rounded(n.direction), n.plan_x, n.plan_y,
                                          n.plan_name.c_str()),
                      NEXOMAP_OK);
        for (const MatchReport& m : links)
            ASSERT_EQ(NexomapLoadPanoMatch(m.name_0.c_str(), m.name_1.c_str(), rounded(m.rot_0),
                                           rounded(m.rot_1), rounded(m.tilt_x0), rounded(m.tilt_x1),
                                           rounded(m.tilt_y0), rounded(m.icon_y0), rounded(m.icon_y1),
                                           rounded(m.spacing), m.mode, rounded(m.reliability)),
                      NEXOMAP_OK);
    }
    static void expectSame(const std::vector<NodeReport>& a, const std::vector<NodeReport>& b,
                           double tolerance)
    {
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t k = 0; k < a.size(); ++k) {
            EXPECT_EQ(a[k].name, b[k].name);
            EXPECT_LT((a[k].position - b[k].position).norm(), tolerance) << k;
            EXPECT_LT(rotationAngle(a[k].rotation, b[k].rotation), tolerance) << k;
            EXPECT_LT((a[k].vertex - b[k].vertex).norm(), tolerance) << k;
        }
    }
    static void expectSame(const std::vector<MatchReport>& a, const std::vector<MatchReport>& b,
                           double tolerance)
    {
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t k = 0; k < a.size(); ++k) {
            EXPECT_EQ(a[k].name_0, b[k].name_0);
            EXPECT_EQ(a[k].name_1, b[k].name_1);
            EXPECT_EQ(a[k].mode, b[k].mode);
            EXPECT_NEAR(wrapAngle(a[k].rot_0 - b[k].rot_0), 0, tolerance);
            EXPECT_NEAR(wrapAngle(a[k].rot_1 - b[k].rot_1), 0, tolerance);
            EXPECT_NEAR(a[k].spacing, b[k].spacing, tolerance);
            EXPECT_NEAR(a[k].icon_y0, b[k].icon_y0, tolerance);
        }
    }

    TemporaryFolder second{"nexomap second"};
};

TEST_F(SavedTour, LoadingGivesThePosesLinksAndGroupsOfBefore)
{
    const MadeUpTour tour = flat();
    link(tour);
    const auto nodes_before = nodes();
    const auto links_before = matches();
    reopen(tour, nodes_before, links_before);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    expectSame(nodes(), nodes_before, 1e-6);
    expectSame(matches(), links_before, 1e-6);
}

TEST_F(SavedTour, RelocatingAfterLoadingGivesTheSamePoses)
{
    const MadeUpTour tour = flat();
    link(tour);
    const auto nodes_before = nodes();
    const auto links_before = matches();
    reopen(tour, nodes_before, links_before);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    expectSame(nodes(), nodes_before, 1e-6);
    expectSame(matches(), links_before, 1e-6);
}

TEST_F(SavedTour, DeletingALinkAfterLoadingGivesWhatDeletingBeforeSavingGives)
{
    const MadeUpTour tour = flat();
    link(tour);
    const auto nodes_before = nodes();
    const auto links_before = matches();
    const MatchReport victim = links_before[1];
    reopen(tour, nodes_before, links_before);
    ASSERT_EQ(NexomapDeletePanoMatch(victim.name_0.c_str(), victim.name_1.c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    const auto nodes_reopened = nodes();
    const auto links_reopened = matches();
    NexomapClean();
    link(tour);
    ASSERT_EQ(NexomapDeletePanoMatch(victim.name_0.c_str(), victim.name_1.c_str()), NEXOMAP_OK);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    expectSame(nodes_reopened, nodes(), 1e-6);
    expectSame(links_reopened, matches(), 1e-6);
}

TEST_F(SavedTour, WithoutMatchFilesThePosesComeFromTheNumbers)
{
    const MadeUpTour tour = flat();
    link(tour);
    const auto nodes_before = nodes();
    const auto links_before = matches();
    reopen(tour, nodes_before, links_before, false);
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    for (std::size_t k = 0; k < nodes_before.size(); ++k)
        EXPECT_LT((nodes()[k].position - nodes_before[k].position).norm(), 1e-6);
    ASSERT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
    for (std::size_t k = 0; k < nodes_before.size(); ++k)
        EXPECT_LT((nodes()[k].position - nodes_before[k].position).norm(), 0.15) << k;
}

TEST_F(SavedTour, ALinkByPoseOrByHandComesBackWithItsMode)
{
    const MadeUpTour tour = flat();
    link(tour);
    auto links_before = matches();
    links_before[0].mode = 1;
    links_before[1].mode = 2;
    reopen(tour, nodes(), links_before, false);
    EXPECT_EQ(match(0).mode, 1);
    EXPECT_EQ(match(1).mode, 2);
}

TEST_F(SavedTour, ADamagedMatchFileIsRefusedAndTheStateStays)
{
    const MadeUpTour tour = flat();
    link(tour);
    const auto nodes_before = nodes();
    const auto links_before = matches();
    reopen(tour, nodes_before, {});
    const MatchReport m = links_before[0];
    const std::string key = std::min(m.name_0, m.name_1) + "_" + std::max(m.name_0, m.name_1);
    for (const char* const ending : {"_0.dat", "_1.dat"}) {
        const auto path = second / (key + ending);
        std::filesystem::resize_file(path, std::filesystem::file_size(path) - 3);
        EXPECT_EQ(NexomapLoadPanoMatch(m.name_0.c_str(), m.name_1.c_str(), m.rot_0, m.rot_1, m.tilt_x0,
                                       m.tilt_x1, m.tilt_y0, m.icon_y0, m.icon_y1, m.spacing, 0,
                                       m.reliability),
                  NEXOMAP_BAD_FILE);
        EXPECT_EQ(NexomapGetPanoMatchNum(), 0);
        EXPECT_EQ(NexomapGetPanoNodeNum(), 6);
        std::filesystem::copy_file(folder / (key + ending), path,
                                   std::filesystem::copy_options::overwrite_existing);
    }
    EXPECT_EQ(NexomapLoadPanoMatch(m.name_0.c_str(), m.name_1.c_str(), m.rot_0, m.rot_1, m.tilt_x0, m.tilt_x1,
                                   m.tilt_y0, m.icon_y0, m.icon_y1, m.spacing, 0, m.reliability),
              NEXOMAP_OK);
}

TEST_F(SavedTour, LoadingTwiceOrUnknownNamesIsRefused)
{
    const MadeUpTour tour = flat();
    link(tour);
    const auto nodes_before = nodes();
    const auto links_before = matches();
    reopen(tour, nodes_before, links_before);
    const MatchReport m = links_before[0];
    EXPECT_EQ(NexomapLoadPanoNode(MadeUpTour::pathOf(0).c_str(), 0, 0, 0, 0, 0, 0, -1, -1, ""),
              NEXOMAP_DUPLICATE);
    EXPECT_EQ(NexomapLoadPanoNode("missing.pno", 0, 0, 0, 0, 0, 0, -1, -1, ""), NEXOMAP_BAD_FILE);
    EXPECT_EQ(NexomapLoadPanoMatch(m.name_1.c_str(), m.name_0.c_str(), 0, 0, 0, 0, 0, 2, 2, 2, 0, 1),
              NEXOMAP_DUPLICATE);
    EXPECT_EQ(NexomapLoadPanoMatch(m.name_0.c_str(), "ZZZZZZZZZZZZZZ", 0, 0, 0, 0, 0, 2, 2, 2, 0, 1),
              NEXOMAP_UNKNOWN_NAME);
}

TEST_F(SavedTour, PlacesAndLengthsBeyondAThousandKilometresAreRefused)
{
    const MadeUpTour tour = flat();
    start(tour);
    for (const double far : {1e7, -1e19, 1e308}) {
        EXPECT_EQ(NexomapLoadPanoNode(MadeUpTour::pathOf(0).c_str(), far, 0, 0, 0, 0, 0, -1, -1, ""),
                  NEXOMAP_BAD_ARGUMENT);
        EXPECT_EQ(NexomapLoadPanoNode(MadeUpTour::pathOf(0).c_str(), 0, 0, 0, 0, far, 0, -1, -1, ""),
                  NEXOMAP_BAD_ARGUMENT);
    }
    EXPECT_EQ(NexomapGetPanoNodeNum(), 0);
    for (const int k : {0, 1})
        ASSERT_EQ(NexomapLoadPanoNode(MadeUpTour::pathOf(k).c_str(), 9e5 * k, 0, 0, 0, 0, 0, -1, -1, ""),
                  NEXOMAP_OK);
    const std::string a = MadeUpTour::nameOf(0), b = MadeUpTour::nameOf(1);
    EXPECT_EQ(NexomapLoadPanoMatch(a.c_str(), b.c_str(), 0, 0, 0, 0, 0, 2, 2, 1e160, 0, 1),
              NEXOMAP_BAD_ARGUMENT);
    EXPECT_EQ(NexomapLoadPanoMatch(a.c_str(), b.c_str(), 0, 0, 0, 0, 0, 2, 2, 9e5, 0, 1), NEXOMAP_OK);
}

TEST_F(SavedTour, PlanValuesComeBackAsTheyWereLoaded)
{
    const MadeUpTour tour = flat();
    start(tour);
    ASSERT_EQ(
        NexomapLoadPanoNode(MadeUpTour::pathOf(0).c_str(), 1, 2, 3, 4, 5, 0.5, 17, 23, "plan-00000000.png"),
        NEXOMAP_OK);
    const NodeReport n = node(0);
    EXPECT_EQ(n.position, Eigen::Vector3d(1, 2, 3));
    EXPECT_EQ(n.vertex, Eigen::Vector2d(4, 5));
    EXPECT_NEAR(n.direction, 0.5, 1e-15);
    EXPECT_EQ(n.plan_x, 17);
    EXPECT_EQ(n.plan_y, 23);
    EXPECT_EQ(n.plan_name, "plan-00000000.png");
}

} // namespace
