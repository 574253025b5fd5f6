// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Lengths by the levels at which things stand in the world, of cameras that stand at different heights.
#include "nexomap/src/graph/LevelledLengths.h"
#include "tests/nexomap/LengthScene.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace nexomap;

namespace {

constexpr int kStations = 9;

/// A chain of rooms, no two pairs of stations seeing the same, laid out with lengths that are off.
class RoomsInARow : public ::testing::Test
{
protected:
    RoomsInARow()
    {
        constexpr double kCameras[] = {1.5, 1.56, 1.52, 1.6, 1.53, 1.58, 1.5, 1.55, 1.61};
        for (int k = 0; k < kStations; ++k)
            scene.stations.push_back({2.5 * k, k % 2 ? 1.5 : 0.0, kCameras[k]});
    }

    /// @param at_levels  whether things stand at a few heights, or anywhere up a slope
    void furnish(bool at_levels)
    {
        for (int k = 0; k + 1 < kStations; ++k) {
            const Eigen::Vector2d from(2.5 * k - 1.0, -2.0), to(2.5 * k + 3.5, 3.0);
            scene.link(k, k + 1,
                       at_levels ? scene.shelves(70, from, to)
                                 : scene.box(70, {from.x(), from.y(), 0.4 * k - 2.0},
                                             {to.x(), to.y(), 0.4 * k + 2.0}));
        }
    }
    void layOut(const std::vector<double>& factors)
    {
        poses.assign(1, {Eigen::Matrix3d::Identity(), scene.stations[0]});
        for (std::size_t k = 0; k + 1 < std::size_t(kStations); ++k)
            poses.push_back({Eigen::Matrix3d::Identity(),
                             poses[k].t + factors[k] * (scene.stations[k + 1] - scene.stations[k])});
    }
    std::vector<double> level()
    {
        OptimizerOptions options;
        options.tilt_sigma_rad = 0.05 * kDegree;
        return levelLengths(scene.edges, std::vector<char>(scene.edges.size(), 1),
                            std::vector<int>(std::size_t(kStations), 0), options, poses);
    }
    /// Found over true length of each edge, over the median of all.
    std::vector<double> errors() const
    {
        std::vector<double> ratios;
        for (std::size_t e = 0; e < scene.edges.size(); ++e)
            ratios.push_back((poses[e + 1].t - poses[e].t).norm() / scene.length(e));
        std::vector<double> sorted = ratios;
        std::nth_element(sorted.begin(), sorted.begin() + 4, sorted.end());
        for (double& ratio : ratios)
            ratio /= sorted[4];
        return ratios;
    }

    Scene scene;
    std::vector<Pose> poses;
};

TEST_F(RoomsInARow, LengthsThatAreOffByAFewPercentAreFound)
{
    furnish(true);
    layOut({1.0, 1.03, 0.98, 1.01, 0.97, 1.02, 1.0, 0.96});
    const std::vector<double> deviations = level();
    const std::vector<double> found = errors();
    for (std::size_t e = 0; e < found.size(); ++e) {
        EXPECT_NEAR(found[e], 1.0, 0.005) << e;
        EXPECT_LT(deviations[e], 0.01) << e;
    }
}

TEST_F(RoomsInARow, ThingsAnywhereUpASlopeMoveNothing)
{
    furnish(false);
    layOut({1.0, 1.03, 0.98, 1.01, 0.97, 1.02, 1.0, 0.96});
    const std::vector<Pose> before = poses;
    for (const double deviation : level())
        EXPECT_EQ(deviation, kVagueLength);
    for (std::size_t k = 0; k < poses.size(); ++k)
        EXPECT_EQ(poses[k].t, before[k].t) << k;
}

TEST_F(RoomsInARow, ALengthThatIsFarOffIsLeftToOthers)
{
    furnish(true);
    layOut({1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.4});
    const std::vector<double> deviations = level();
    EXPECT_EQ(deviations.back(), kVagueLength);
    EXPECT_NEAR(errors().back(), 1.4, 0.02);
    EXPECT_LT(deviations.front(), 0.01);
}

TEST_F(RoomsInARow, AFewEdgesMakeNoLevels)
{
    furnish(true);
    scene.edges.resize(5);
    layOut({1.0, 1.03, 0.98, 1.01, 0.97, 1.02, 1.0, 0.96});
    const std::vector<Pose> before = poses;
    level();
    for (std::size_t k = 0; k < poses.size(); ++k)
        EXPECT_EQ(poses[k].t, before[k].t) << k;
}

} // namespace
