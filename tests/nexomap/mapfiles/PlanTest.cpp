// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The plan of a made-up flat of two rooms: walls straight and closed where they are, doors open, furniture
// gone.

#include "nexomap/src/Geometry.h"
#include "nexomap/src/merge/PlanPicture.h"
#include "tests/nexomap/mapfiles/MadeUpCloud.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nexomap;

namespace {

constexpr double kCeiling_m = 2.55; // its last 5 cm are taken away with it

/// A wall along y = line from x = from to x = to, or along x = line: whole, with a door or with a window in
/// it.
void wallAlongX(MadeUpCloud& made, double line, double from, double to)
{
    made.add({from, line, 0}, {to, line, kCeiling_m});
}
void wallAlongY(MadeUpCloud& made, double line, double from, double to)
{
    made.add({line, from, 0}, {line, to, kCeiling_m});
}

/// Two rooms, 4 m by 3.5 m each, with a wall of 14 cm between them in which there is a door.
MadeUpCloud flat(double turn_rad, int cell_cm = 1)
{
    MadeUpCloud made(cell_cm, turn_rad);
    made.add({-4, -1.75, 0}, {0, 1.75, 0}, 120, 90, 60);
    made.add({0.14, -1.75, 0}, {4.14, 1.75, 0}, 120, 90, 60);
    made.add({0, -0.5, 0}, {0.14, 0.4, 0}, 120, 90, 60);
    wallAlongX(made, -1.75, -4, 0);
    wallAlongX(made, -1.75, 0.14, 4.14);
    wallAlongX(made, 1.75, -4, -3);
    made.add({-3, 1.75, 0}, {-1.5, 1.75, 0.9}); // a window from x = -3 to -1.5
    made.add({-3, 1.75, 2.25}, {-1.5, 1.75, kCeiling_m});
    wallAlongX(made, 1.75, -1.5, 0);
    wallAlongX(made, 1.75, 0.14, 4.14);
    wallAlongY(made, -4, -1.75, 1.75);
    wallAlongY(made, 4.14, -1.75, 1.75);
    for (const double face : {0.0, 0.14}) { // a door from y = -0.5 to 0.4
        wallAlongY(made, face, -1.75, -0.5);
        wallAlongY(made, face, 0.4, 1.75);
        made.add({face, -0.5, 2.05}, {face, 0.4, kCeiling_m});
    }
    made.add({2, -1.2, 0}, {3.2, -1.2, 2.1}, 80, 60, 40);     // a wardrobe's front
    made.add({-2.5, 0, 0.75}, {-1, 0.8, 0.75});               // a table
    made.add({-3.2, 1.63, 0}, {-2.9, 1.63, 2.3}, 30, 60, 90); // a curtain
    return made;
}

struct Plan
{
    PlanRaster raster;
    cv::Mat1b picture;
    const MadeUpCloud& made;

    bool black(double x, double y, double within_m = 0.05) const
    {
        const Eigen::Vector2i at = raster.pixelOf(made.world({x, y, 0}));
        const int r = int(within_m / raster.pixel_m);
        for (int v = -r; v <= r; ++v)
            for (int u = -r; u <= r; ++u)
                if (raster.has(at + Eigen::Vector2i(u, v)) && picture(at.y() + v, at.x() + u) == 0)
                    return true;
        return false;
    }
};

Plan planOf(const MadeUpCloud& made, double pixel_m = 0.02)
{
    const CloudInMemory cloud = made.cloud();
    const std::vector<PlanStation> stations{{made.world({-2, -0.5, 1.6}), Eigen::Vector3d::UnitZ(), 1.6},
                                            {made.world({2, 0.5, 1.5}), Eigen::Vector3d::UnitZ(), 1.5}};
    const PlanRaster raster = planRaster(cloud, stations, pixel_m);
    return {raster, wallPlan(cloud, raster, stations), made};
}

TEST(Plan, WallsAreClosedDoorsOpenAndFurnitureGoneHoweverTheFlatIsTurned)
{
    for (const double turn_deg : {0.0, 17.3, 123.0}) {
        const MadeUpCloud made = flat(turn_deg * kDegree);
        const Plan plan = planOf(made);
        int missing = 0, all = 0;
        for (double x = -3.95; x < 4.1; x += 0.02)
            for (const double y : {-1.75, 1.75})
                ++all, missing += !plan.black(x, y);
        for (double y = -1.7; y < 1.7; y += 0.02)
            for (const double x : {-4.0, 4.14})
                ++all, missing += !plan.black(x, y);
        EXPECT_LT(missing, all / 100) << turn_deg;
        for (double y = -0.4; y < 0.3; y += 0.02)
            EXPECT_FALSE(plan.black(0.07, y)) << turn_deg << " door at " << y;
        for (double x = 2.05; x < 3.15; x += 0.02)
            EXPECT_FALSE(plan.black(x, -1.2)) << turn_deg << " wardrobe at " << x;
        EXPECT_FALSE(plan.black(-2, 0.4, 0.3)) << turn_deg << " table";
        EXPECT_FALSE(plan.black(-3.05, 1.6, 0.03)) << turn_deg << " curtain";
        // Between its faces a wall is black.
        EXPECT_TRUE(plan.black(0.07, 1.0, 0.0)) << turn_deg;
        EXPECT_TRUE(plan.black(0.07, -1.2, 0.0)) << turn_deg;
    }
}

TEST(Plan, ThePictureIsTurnedToTheWalls)
{
    for (const double turn_deg : {0.0, -40.0, 44.0}) {
        const MadeUpCloud made = flat(turn_deg * kDegree);
        const Plan plan = planOf(made);
        const double heading = std::atan2(plan.raster.right.y(), plan.raster.right.x()) / kDegree;
        EXPECT_LE(std::abs(heading), 45.01);
        double off = std::fmod(heading - turn_deg, 90.0);
        if (off > 45.0) off -= 90.0;
        if (off < -45.0) off += 90.0;
        EXPECT_NEAR(off, 0.0, 0.2) << turn_deg;
        EXPECT_NEAR(plan.raster.right.cross(plan.raster.down).z(), -1.0, 1e-9);
    }
}

TEST(Plan, AllWallsAreAsThickAsThoseThatAreSeenFromBothSides)
{
    const MadeUpCloud made = flat(0.0);
    const Plan plan = planOf(made);
    for (const double behind : {0.03, 0.11}) {
        EXPECT_TRUE(plan.black(2, 1.75 + behind, 0.0)) << behind;
        EXPECT_TRUE(plan.black(-2, -1.75 - behind, 0.0)) << behind;
        EXPECT_TRUE(plan.black(-4 - behind, 0.5, 0.0)) << behind;
        EXPECT_TRUE(plan.black(-4 - behind, 1.75 + behind, 0.0)) << "corner " << behind;
        EXPECT_TRUE(plan.black(4.14 + behind, -1.75 - behind, 0.0)) << "corner " << behind;
    }
    for (const double before : {0.06, 0.3}) {
        EXPECT_FALSE(plan.black(2, 1.75 - before, 0.0)) << before;
        EXPECT_FALSE(plan.black(-4 + before, 0.5, 0.0)) << before;
    }
    EXPECT_FALSE(plan.black(2, 1.75 + 0.25, 0.05));
}

TEST(Plan, AtLowDensityWallsAreWholeAndDoorsOpenToo)
{
    const MadeUpCloud made = flat(0.0, 5);
    const Plan plan = planOf(made, 0.05);
    int missing = 0, all = 0;
    for (double x = -3.9; x < -0.1; x += 0.05)
        ++all, missing += !plan.black(x, -1.75 - 0.05, 0.06);
    for (double x = 0.3; x < 4.0; x += 0.05)
        for (const double y : {-1.8, 1.8})
            ++all, missing += !plan.black(x, y, 0.06);
    for (double y = -1.6; y < 1.6; y += 0.05)
        for (const double x : {-4.05, 4.19})
            ++all, missing += !plan.black(x, y, 0.06);
    EXPECT_LT(missing, all / 50);
    for (double y = -0.35; y < 0.25; y += 0.05)
        EXPECT_FALSE(plan.black(0.07, y, 0.0)) << "door at " << y;
    EXPECT_TRUE(plan.black(0.07, 1.0, 0.0));
    EXPECT_TRUE(plan.black(0.07, -1.2, 0.0));
}

TEST(Plan, AWindowIsALineWhereItsFrameIs)
{
    MadeUpCloud made = flat(0.0);
    made.add({-3, 1.75, 0.9}, {-1.5, 1.92, 0.9}); // the sill, both sides and the frame
    made.add({-3, 1.75, 0.9}, {-3, 1.92, 2.25});
    made.add({-1.5, 1.75, 0.9}, {-1.5, 1.92, 2.25});
    for (const double from : {-3.0, -2.28, -1.56})
        made.add({from, 1.92, 0.9}, {from + 0.06, 1.92, 2.25});
    const Plan plan = planOf(made);
    for (double x = -2.7; x < -1.6; x += 0.02) {
        EXPECT_TRUE(plan.black(x, 1.92, 0.03)) << x;
        EXPECT_FALSE(plan.black(x, 1.8, 0.03)) << x;
    }
    EXPECT_TRUE(plan.black(-3.5, 1.8, 0.0));
    EXPECT_TRUE(plan.black(-1.3, 1.8, 0.0));
    EXPECT_TRUE(plan.black(-1.3, 1.91, 0.0)) << "thinner than to hold the window";
    // The walls between rooms stay as they are.
    EXPECT_FALSE(plan.black(0.07 + 0.14, 1.2, 0.03));
}

TEST(Plan, BlackLiesOnWallsOnly)
{
    const MadeUpCloud made = flat(17.3 * kDegree);
    const Plan plan = planOf(made);
    const Eigen::Matrix3d flat_from_world = rotationAboutZ(17.3 * kDegree).transpose();
    int wrong = 0, all = 0;
    for (int y = 0; y < plan.raster.legend_top; ++y)
        for (int x = 0; x < plan.raster.width; ++x) {
            if (plan.picture(y, x)) continue;
            const Eigen::Vector3d at =
                flat_from_world * (plan.raster.right * (plan.raster.left + (x + 0.5) * 0.02) +
                                   plan.raster.down * (plan.raster.top + (y + 0.5) * 0.02));
            const double between = std::max(0.0, std::abs(at.x() - 0.07) - 0.07);
            // Outer walls are drawn outwards from their faces.
            const auto outer = [](double beyond) { return std::max(0.0, std::abs(beyond - 0.07) - 0.07); };
            const double off =
                std::min({outer(-4 - at.x()), outer(at.x() - 4.14), between, outer(std::abs(at.y()) - 1.75)});
            ++all;
            wrong += off > 0.05;
        }
    EXPECT_GT(all, 1000);
    EXPECT_LE(wrong, all / 50);
}

TEST(Plan, TheScaleBarIsAsLongAsItSays)
{
    const MadeUpCloud made = flat(0.0);
    const Plan plan = planOf(made);
    int longest = 0;
    for (int y = plan.raster.legend_top; y < plan.raster.height; ++y) {
        int run = 0;
        for (int x = 0; x < plan.raster.width; ++x)
            longest = std::max(longest, run = plan.picture(y, x) == 0 ? run + 1 : 0);
    }
    EXPECT_NEAR(longest * plan.raster.pixel_m, 2.0, 0.021);
}

TEST(Plan, AnEmptyCloudGivesAWhitePlanAboutItsStations)
{
    const CloudInMemory cloud(gridFor({-1, -1, -1}, {1, 1, 1}, 1), {});
    const std::vector<PlanStation> stations{{Eigen::Vector3d(0.3, 0.2, 0), Eigen::Vector3d::UnitZ(), 0.0}};
    const PlanRaster raster = planRaster(cloud, stations, 0.02);
    EXPECT_TRUE(raster.has(raster.pixelOf(stations[0].position)));
    const cv::Mat1b plan = wallPlan(cloud, raster, stations);
    EXPECT_EQ(cv::countNonZero(plan.rowRange(0, raster.legend_top) == 0), 0);
}

} // namespace
