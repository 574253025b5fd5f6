// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which stations of a tour a map is made of.

#include "nexomap/src/merge/MergeGroup.h"
#include "nexomap/src/files/WorkingFolder.h"
#include "tests/nexomap/MadeUpTour.h"
#include "tests/nexomap/merge/RayScene.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace nexomap;

namespace {

/// Least and greatest x of the points in a PTS file.
std::pair<double, double> extentOf(const std::filesystem::path& pts)
{
    std::ifstream file(pts);
    std::size_t count = 0;
    file >> count;
    std::pair<double, double> extent{1e9, -1e9};
    double x = 0.0;
    std::string rest;
    while (file >> x && std::getline(file, rest))
        extent = {std::min(extent.first, x), std::max(extent.second, x)};
    return extent;
}

} // namespace

TEST(MergeGroup, AStationOfAnotherGroupIsInNoMap)
{
    RayScene scene;
    scene.addRoom({-4, -3, 0}, {4, 3, 2.8});
    scene.addRoom({6, -3, 0}, {14, 3, 2.8}); // the other group's room, wherever that group thinks it stands
    scene.stations = {{-2, 0.5, 1.5}, {2, -0.5, 1.5}, {9, 0.3, 1.5}};
    for (const int apart : {2, -1}) {
        const TemporaryFolder folder;
        const WorkingFolder working(folder.path());
        Model model = scene.linkedModel(apart);
        MergeOptions options;
        options.density = 0;
        options.pts = true;
        ASSERT_TRUE(mergeGroup(model, {working, scene.frontEnd()}, options).empty());
        const std::string name = MadeUpTour::nameOf(0) + "_" + MadeUpTour::nameOf(apart == 2 ? 1 : 2) +
                                 (apart == 2 ? "_2" : "_3") + "-concise.pts";
        const auto [from, to] = extentOf(folder / name);
        EXPECT_NEAR(from, -4.0, 0.1);
        EXPECT_NEAR(to, apart == 2 ? 4.0 : 14.0, 0.1);
        EXPECT_NE(model.nodes[0].plan_x, -1);
        EXPECT_EQ(model.nodes[2].plan_x == -1, apart == 2);
        EXPECT_EQ(model.nodes[2].plan_name.empty(), apart == 2);
    }
}
