// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Links made by hand in the made-up building: how near picks of a person's precision come to the truth.

#include "nexomap/src/links/HandMadeBearings.h"
#include "tests/nexomap/building/BuildingPicks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace nexomap;

namespace {

constexpr unsigned kDraws = 50;

struct Errors
{
    std::vector<double> degrees, metres;
    double medianTurn() { return medianOf(degrees); }
    double medianShift() { return medianOf(metres); }
    static double medianOf(std::vector<double>& values)
    {
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    }
};

/// Every draw takes the next pair of neighbours.
template <class Solve>
Errors draw(const BuildingPicks& building, int count, double noise_deg, const Solve& solve)
{
    Errors errors;
    const auto pairs = building.neighbours();
    for (unsigned seed = 0; seed < kDraws; ++seed) {
        const auto [a, b] = pairs[seed % pairs.size()];
        const std::optional<PairPose> pose = solve(a, b, building.picks(a, b, count, noise_deg, 1000 + seed));
        const Pose truth = building.truth(a, b);
        errors.degrees.push_back(pose ? rotationAngle(pose->R_0_from_1, truth.R) / kDegree : 180.0);
        errors.metres.push_back(pose ? (pose->t_0_from_1 - truth.t).norm() : 100.0);
    }
    return errors;
}

TEST(HandMadeOnBuilding, PicksAndRangeMeetTheirBarsOfTurnAndPlace)
{
    const BuildingPicks building;
    ASSERT_GE(building.neighbours().size(), 2u);
    struct Bar
    {
        int pairs;
        double noise_deg, degrees, metres;
    };
    for (const Bar bar : {Bar{3, 0.3, 1.0, 0.05}, Bar{8, 0.3, 0.3, 0.02}, Bar{3, 0.1, 0.12, 0.012},
                          Bar{6, 0.1, 0.08, 0.007}}) {
        Errors errors = draw(building, bar.pairs, bar.noise_deg, [&](int a, int b, const auto& picks) {
            return poseFromPicks(building.panorama(a), building.panorama(b), picks);
        });
        const double turn = errors.medianTurn(), shift = errors.medianShift();
        std::printf(
            "%d pairs, %.1f degrees of noise: median %.3f degrees, %.1f mm; 9 of 10 within %.3f degrees, "
            "%.1f mm\n",
            bar.pairs, bar.noise_deg, turn, shift * 1000, errors.degrees[kDraws * 9 / 10],
            errors.metres[kDraws * 9 / 10] * 1000);
        EXPECT_LE(turn, bar.degrees) << bar.pairs << " pairs";
        EXPECT_LE(shift, bar.metres) << bar.pairs << " pairs";
        EXPECT_LT(errors.degrees[kDraws * 9 / 10], 2.0) << "hardly any draw is declined or wrong";
    }
}

TEST(HandMadeOnBuilding, FourPairsWithoutRangeGiveHalfADegreeOfHeading)
{
    const BuildingPicks building;
    const auto pairs = building.neighbours();
    std::vector<double> headings;
    for (unsigned seed = 0; seed < 4 * kDraws; ++seed) {
        const auto [a, b] = pairs[seed % pairs.size()];
        const auto pose = poseFromBearingPicks(building.picks(a, b, 4, 0.1, 1000 + seed));
        const double truth = headingOf(building.truth(a, b).R);
        headings.push_back(pose ? std::abs(wrapAngle(headingOf(pose->R_0_from_1) - truth)) / kDegree : 180.0);
    }
    const double median = Errors::medianOf(headings);
    std::printf("4 pairs without range: median heading %.3f degrees, 9 of 10 within %.3f\n", median,
                headings[headings.size() * 9 / 10]);
    EXPECT_LE(median, 0.45);
}

TEST(HandMadeOnBuilding, ThreePairsWithoutRangeNeverTrustAWrongPose)
{
    const BuildingPicks building;
    const auto pairs = building.neighbours();
    int solved = 0, right = 0;
    for (unsigned seed = 0; seed < 4 * kDraws; ++seed) {
        const auto [a, b] = pairs[seed % pairs.size()];
        const auto pose = poseFromBearingPicks(building.picks(a, b, 3, 0.1, 3000 + seed));
        if (!pose) continue;
        ++solved;
        right += rotationAngle(pose->R_0_from_1, building.truth(a, b).R) < 5.0 * kDegree;
        EXPECT_LE(pose->reliability, 0.5);
    }
    std::printf("3 pairs without range: %d solved, %d of them right\n", solved, right);
    EXPECT_GT(right, solved / 2);
}

TEST(HandMadeOnBuilding, AWrongPoseWithoutRangeIsSeldomTrusted)
{
    const BuildingPicks building;
    const auto pairs = building.neighbours();
    int trusted = 0, wrong = 0;
    for (unsigned seed = 0; seed < 4 * kDraws; ++seed) {
        const auto [a, b] = pairs[seed % pairs.size()];
        const auto pose = poseFromBearingPicks(building.picks(a, b, 4 + int(seed % 4), 0.1, 4000 + seed));
        if (!pose || pose->reliability < 0.9) continue;
        ++trusted;
        wrong += rotationAngle(pose->R_0_from_1, building.truth(a, b).R) > 5.0 * kDegree;
    }
    std::printf("without range: %d trusted, %d of them wrong\n", trusted, wrong);
    EXPECT_GT(trusted, int(kDraws));
    EXPECT_LE(wrong, trusted / 20);
}

TEST(HandMadeOnBuilding, WithoutRangeOneWrongPairAmongSixIsLeftOut)
{
    const BuildingPicks building;
    const auto pairs = building.neighbours();
    int good = 0;
    for (unsigned seed = 0; seed < kDraws; ++seed) {
        const auto [a, b] = pairs[seed % pairs.size()];
        auto picks = building.picks(a, b, 6, 0.1, 5000 + seed);
        picks[seed % 6].polar_1 += (picks[seed % 6].polar_1 < 1.5 ? 8.0 : -8.0) * kDegree;
        const auto pose = poseFromBearingPicks(picks);
        good += pose && rotationAngle(pose->R_0_from_1, building.truth(a, b).R) < 2.0 * kDegree;
    }
    std::printf("without range, one wrong of six: %d of %u right\n", good, kDraws);
    EXPECT_GE(good, int(kDraws) * 8 / 10);
}

TEST(HandMadeOnBuilding, OneMisclickAmongFiveIsFoundAndLeftOut)
{
    const BuildingPicks building;
    const auto pairs = building.neighbours();
    int found = 0;
    for (unsigned seed = 0; seed < kDraws; ++seed) {
        const auto [a, b] = pairs[seed % pairs.size()];
        auto picks = building.picks(a, b, 5, 0.1, 2000 + seed);
        // Another feature than the one meant: eight degrees away in the second picture, anywhere around it.
        PickedPair& wrong = picks[seed % 5];
        const Eigen::Vector3d u = directionFromAngles(wrong.azimuth_1, wrong.polar_1);
        const Eigen::Vector3d side = u.unitOrthogonal();
        const Eigen::Vector3d axis = side * std::cos(seed) + u.cross(side) * std::sin(seed);
        const Eigen::Vector3d v = expRotation(axis * 8.0 * kDegree) * u;
        wrong.azimuth_1 = azimuthOf(v);
        wrong.polar_1 = polarOf(v);
        const auto pose = poseFromPicks(building.panorama(a), building.panorama(b), picks);
        if (!pose) continue;
        const Eigen::Vector3d meant = directionFromAngles(wrong.azimuth_0, wrong.polar_0);
        bool kept = false;
        for (const PairInlier& inlier : pose->inliers)
            kept = kept || inlier.bearing_0.cast<double>().dot(meant) > std::cos(1.0 * kDegree);
        found += !kept && (pose->t_0_from_1 - building.truth(a, b).t).norm() < 0.05;
    }
    std::printf("mis-clicks found: %d of %u\n", found, kDraws);
    EXPECT_GE(found, int(kDraws) * 95 / 100);
}

} // namespace
