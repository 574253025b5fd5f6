// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A link's eight numbers against the geometry that they stand for.

#include "nexomap/src/links/LinkValues.h"

#include <gtest/gtest.h>

#include <random>

using namespace nexomap;

namespace {

Pose leaning(double x, double y, double z, double heading, double lean_x, double lean_y)
{
    return {rotationAboutZ(heading) * expRotation({lean_x, lean_y, 0}), {x, y, z}};
}

double angleBetween(const Eigen::Vector3d& a, const Eigen::Vector3d& b)
{
    return std::atan2(a.cross(b).norm(), a.dot(b));
}

TEST(LinkValues, MarkersPointAtTheFloorBelowTheOtherStation)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> unit(-1, 1);
    for (int k = 0; k < 500; ++k) {
        const double h0 = 1.5 + 0.3 * unit(random), h1 = 1.5 + 0.3 * unit(random);
        const Pose a =
            leaning(0, 0, 0.2 * unit(random), 3 * unit(random), 0.01 * unit(random), 0.01 * unit(random));
        const Pose b = leaning(3 + unit(random), 2 * unit(random), 0.2 * unit(random), 3 * unit(random),
                               0.01 * unit(random), 0.01 * unit(random));
        const LinkValues v = linkValues(a, b, h0, h1, Eigen::Vector3d::UnitZ());
        const Eigen::Vector3d floor_1 = a.inverse() * (b.t - h1 * Eigen::Vector3d::UnitZ());
        const Eigen::Vector3d floor_0 = b.inverse() * (a.t - h0 * Eigen::Vector3d::UnitZ());
        // As the views draw: side 0 at -rot_0 with icon_y1, side 1 at -rot_1 - pi with icon_y0.
        EXPECT_LT(angleBetween(directionFromAngles(-v.rot_0, v.icon_y1), floor_1), 0.5 * kDegree);
        EXPECT_LT(angleBetween(directionFromAngles(-v.rot_1 - kPi, v.icon_y0), floor_0), 0.5 * kDegree);
        EXPECT_NEAR(v.spacing, (a.t - b.t).norm(), 1e-12);
    }
}

TEST(LinkValues, OnLevelPanoramasTheMarkersAreExact)
{
    const Pose a = leaning(1, 2, 0, 0.7, 0, 0), b = leaning(4, -1, 0, -2.0, 0, 0);
    const LinkValues v = linkValues(a, b, 1.5, 1.5, Eigen::Vector3d::UnitZ());
    const Eigen::Vector3d floor_1 = a.inverse() * (b.t - Eigen::Vector3d(0, 0, 1.5));
    EXPECT_LT(angleBetween(directionFromAngles(-v.rot_0, v.icon_y1), floor_1), 1e-7);
    EXPECT_NEAR(wrapAngle(v.rot_0 - v.rot_1 - (0.7 + 2.0)), 0.0, 1e-9); // difference of the headings
    EXPECT_NEAR(v.tilt_x0, 0.0, 1e-12);
    EXPECT_NEAR(v.tilt_y0, 0.0, 1e-12);
}

TEST(LinkValues, RotationsLieInTheHalfOpenTurn)
{
    for (int k = -8; k <= 8; ++k) {
        const Pose a = leaning(0, 0, 0, k * kPi / 4, 0, 0), b = leaning(2, 0, 0, -k * kPi / 4, 0, 0);
        const LinkValues v = linkValues(a, b, 1.5, 1.5, Eigen::Vector3d::UnitZ());
        for (const double r : {v.rot_0, v.rot_1}) {
            EXPECT_GT(r, -kPi);
            EXPECT_LE(r, kPi);
        }
    }
}

TEST(LinkValues, RollAboutTheWalkIsWhatTiltXSays)
{
    const Eigen::Vector3d walk = Eigen::Vector3d(3, 1, 0).normalized();
    Pose a = leaning(0, 0, 0, 0.4, 0, 0), b = leaning(3, 1, 0, 1.9, 0, 0);
    a.R = expRotation(0.05 * walk) * a.R;
    b.R = expRotation(-0.02 * walk) * b.R;
    const LinkValues v = linkValues(a, b, 1.5, 1.5, Eigen::Vector3d::UnitZ());
    EXPECT_NEAR(v.tilt_x0, 0.05, 1e-9);
    EXPECT_NEAR(v.tilt_x1, -0.02, 1e-9);
    const Pose back = relativePose(v), truth = a.inverse() * b;
    EXPECT_LT(rotationAngle(back.R, truth.R), 1e-9);
    EXPECT_LT((back.t - truth.t).norm(), 1e-9);
}

TEST(LinkValues, StationsAboveEachOtherOrAtOnePlaceGiveFiniteNumbers)
{
    for (const double z : {0.0, 3.0}) {
        const LinkValues v =
            linkValues({}, {Eigen::Matrix3d::Identity(), {0, 0, z}}, 1.5, 1.5, Eigen::Vector3d::UnitZ());
        for (const double x :
             {v.rot_0, v.rot_1, v.tilt_x0, v.tilt_x1, v.tilt_y0, v.icon_y0, v.icon_y1, v.spacing})
            EXPECT_TRUE(std::isfinite(x));
        EXPECT_TRUE(relativePose(v).R.allFinite());
    }
}

TEST(LinkValues, AnglesOfAnySizeMakeARotation)
{
    for (const double angle : {1e160, -1e308, 7.0, -1e-300}) {
        LinkValues values;
        values.spacing = 2.0;
        values.rot_0 = values.rot_1 = values.tilt_x0 = values.tilt_x1 = values.tilt_y0 = angle;
        const Pose pose = relativePose(values);
        EXPECT_LT((pose.R * pose.R.transpose() - Eigen::Matrix3d::Identity()).norm(), 1e-9) << angle;
        EXPECT_NEAR(pose.t.norm(), 2.0, 1e-9) << angle;
    }
}

} // namespace
