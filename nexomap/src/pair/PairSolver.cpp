// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// From two panoramas to one relative pose: the way through the steps.
#include "nexomap/src/pair/PairSolver.h"

#include "nexomap/src/pair/MetricRansac.h"
#include "nexomap/src/pair/OneSidedPair.h"
#include "nexomap/src/pair/PairSteps.h"
#include "nexomap/src/pair/PlaceMatching.h"
#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <cmath>
#include <exception>

namespace nexomap {
namespace {

constexpr double kRatio = 0.85; // Lowe's ratio: wide, geometry decides
/// A pose that says that the camera did not move. What stands in every picture's own frame says so too: the
/// tripod, the operator, a mark of the camera, the border of what a scanner saw.
bool nearIdentity(const PairPose& pose)
{
    const bool turned = Eigen::AngleAxisd(pose.R_0_from_1).angle() > 3.0 * kDegree;
    return !turned && (pose.rotation_only || (pose.metric && pose.t_0_from_1.norm() < 0.2));
}

bool standsStill(const Correspondence& match, const PairPose& identity)
{
    if ((match.bearing_0 - match.bearing_1).norm() < 1.0 * kDegree) return true;
    if (!match.ranged()) return false;
    const RigidPose pose{identity.R_0_from_1, identity.t_0_from_1};
    return (pose * match.point_1() - match.point_0()).norm() < 5.0 * pointTolerance(match);
}

/// Whoever walks along with the camera stands about the same way in every picture's own frame.
bool mayBeCarried(const Eigen::Vector3d& bearing_0, const Eigen::Vector3d& bearing_1)
{
    constexpr double kSway = 20.0 * kDegree;
    return (bearing_0 - bearing_1).squaredNorm() < std::pow(2.0 * std::sin(0.5 * kSway), 2);
}

/// Whether a pose rests on one thing that may have been carried along: a person, a stand, a bag.
bool restsOnCompany(const PairPose& pose, const Evidence& evidence)
{
    constexpr int kAllAround = 10; // cells of 30 degrees: what panoramas with the same heading share
    if (evidence.cells >= kAllAround) return false;
    std::size_t carried = 0;
    for (const PairInlier& inlier : pose.inliers)
        carried += mayBeCarried(inlier.bearing_0.cast<double>(), inlier.bearing_1.cast<double>());
    return 2 * carried > pose.inliers.size();
}

std::optional<double> wallsTurn(const Panorama& p0, const Panorama& p1)
{
    if (!p0.walls_azimuth || !p1.walls_azimuth) return std::nullopt;
    return *p0.walls_azimuth - *p1.walls_azimuth;
}

std::optional<PairPose> solveEither(const Panorama& p0, const Panorama& p1,
                                    const std::vector<Correspondence>& matches, Evidence* evidence)
{
    PairRandom random(p0.id, p1.id);
    auto pose = p0.metric() && p1.metric()   ? solveMetric(p0, p1, matches, random, evidence)
                : p0.metric() || p1.metric() ? solveOneSided(p0, p1, matches, random, evidence)
                                             : solveBearings(matches, wallsTurn(p0, p1), random, evidence);
    if (pose && pose->R_0_from_1.allFinite() && pose->t_0_from_1.allFinite() && pose->information.allFinite())
        return pose;
    return std::nullopt;
}

} // namespace

std::vector<Correspondence> matchFeatures(const Panorama& panorama_0, const Panorama& panorama_1)
{
    return plausibleMatches(panorama_0.features, panorama_1.features,
                            matchPlaces(panorama_0.features, panorama_1.features, kRatio));
}

std::optional<PairPose> solvePair(const Panorama& panorama_0, const Panorama& panorama_1,
                                  const std::vector<Correspondence>& matches, Evidence* evidence)
{
    const auto all = solveEither(panorama_0, panorama_1, matches, evidence);
    std::optional<PairPose> pose = all;
    const bool convincing =
        evidence->inlier_share > 0.5 && (!all || !all->metric || evidence->ranges.violation < 0.05);
    if (all && nearIdentity(*all) && !convincing) {
        std::vector<Correspondence> moving;
        for (const Correspondence& match : matches)
            if (!standsStill(match, *all)) moving.push_back(match);
        *evidence = {};
        pose = solveEither(panorama_0, panorama_1, moving, evidence);
        if (pose && nearIdentity(*pose)) pose = std::nullopt;
    }
    if (pose && restsOnCompany(*pose, *evidence)) {
        std::vector<Correspondence> others;
        for (const Correspondence& match : matches)
            if (!mayBeCarried(match.bearing_0, match.bearing_1)) others.push_back(match);
        *evidence = {};
        pose = solveEither(panorama_0, panorama_1, others, evidence);
    }
    if (pose) pose->matches = int(matches.size());
    return pose;
}

PairPose inverted(const PairPose& pose)
{
    PairPose result = pose;
    result.R_0_from_1 = pose.R_0_from_1.transpose();
    result.t_0_from_1 = -(result.R_0_from_1 * pose.t_0_from_1);
    // An error d of T becomes -Ad(T) d of its inverse.
    Matrix6d back = Matrix6d::Zero(); // from errors of the inverse to errors of the pose
    back.topLeftCorner<3, 3>() = -result.R_0_from_1;
    back.bottomRightCorner<3, 3>() = -result.R_0_from_1;
    back.bottomLeftCorner<3, 3>() = -crossMatrix(result.t_0_from_1) * result.R_0_from_1;
    result.information = back.transpose() * pose.information * back;
    for (PairInlier& inlier : result.inliers) {
        std::swap(inlier.bearing_0, inlier.bearing_1);
        std::swap(inlier.range_0_m, inlier.range_1_m);
    }
    return result;
}

std::optional<PairPose> matchPair(const Panorama& panorama_0, const Panorama& panorama_1)
{
    try {
        // One order for both ways round, so that they agree to the last bit.
        const bool swapped = panorama_1.id < panorama_0.id;
        const Panorama& first = swapped ? panorama_1 : panorama_0;
        const Panorama& second = swapped ? panorama_0 : panorama_1;
        Evidence evidence;
        const auto pose = solvePair(first, second, matchFeatures(first, second), &evidence);
        if (!pose || pose->reliability < kMinReliability) return std::nullopt;
        return swapped ? inverted(*pose) : *pose;
    } catch (const std::exception&) {
        return std::nullopt; // out of memory, or a panorama whose arrays do not fit together
    }
}

} // namespace nexomap
