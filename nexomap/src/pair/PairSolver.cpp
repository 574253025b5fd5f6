// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// From two panoramas to one relative pose: the way through the steps.
#include "nexomap/src/pair/PairSolver.h"

#include "nexomap/src/pair/BearingRansac.h"
#include "nexomap/src/pair/BearingRefinement.h"
#include "nexomap/src/pair/MetricRefinement.h"
#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <exception>

namespace nexomap {
namespace {

constexpr double kRatio = 0.85;           // Lowe's ratio: wide, geometry decides
constexpr double kInflation = 1.0 / 6.25; // errors of model and calibration: 2.5 times what noise explains
constexpr double kRotationShare = 0.8;    // of the inliers that a rotation alone may explain
constexpr int kSurfaceSamples = 3000;

std::vector<bool> flags(std::size_t count, const std::vector<int>& set)
{
    std::vector<bool> result(count, false);
    for (const int i : set)
        result[std::size_t(i)] = true;
    return result;
}

std::vector<PairInlier> toInliers(const std::vector<Correspondence>& matches, const std::vector<int>& inliers)
{
    std::vector<PairInlier> result;
    for (const int i : inliers)
        result.push_back({matches[i].bearing_0.cast<float>(), matches[i].bearing_1.cast<float>(),
                          float(matches[i].range_0), float(matches[i].range_1)});
    return result;
}

std::optional<PairPose> solveMetric(const Panorama& p0, const Panorama& p1,
                                    const std::vector<Correspondence>& matches, PairRandom& random,
                                    Evidence* evidence)
{
    const auto hypothesis = estimateMetricPose(matches, {}, random);
    if (!hypothesis) return std::nullopt;
    const auto other = estimateMetricPose(
        matches, flags(matches.size(), rangedInliers(matches, hypothesis->pose, 3.0)), random);
    evidence->second_share = other ? double(other->inliers.size()) / double(hypothesis->inliers.size()) : 0.0;

    RefinedPose refined =
        refineMetricPose(matches, hypothesis->inliers, hypothesis->pose, nullptr, nullptr, nullptr, nullptr);
    std::vector<int> inliers = rangedInliers(matches, refined.pose, 1.0);
    refined = refineMetricPose(matches, inliers, refined.pose, nullptr, nullptr, nullptr, nullptr);

    // The surfaces hold what few matches leave open; where they pull away from the matches they are not
    // followed.
    const auto surfaces_0 = sampleSurfaces(p0.range, kSurfaceSamples);
    const auto surfaces_1 = sampleSurfaces(p1.range, kSurfaceSamples);
    const RefinedPose aligned =
        refineMetricPose(matches, inliers, refined.pose, &p0.range, &p1.range, &surfaces_0, &surfaces_1);
    const auto aligned_inliers = rangedInliers(matches, aligned.pose, 1.0);
    if (aligned.surface_pairs > 0 && aligned_inliers.size() * 10 >= inliers.size() * 9) {
        refined = aligned;
        inliers = aligned_inliers;
    }

    countPlaces(matches, inliers, evidence);
    evidence->lean = leanOf(refined.pose.R);
    evidence->rms = refined.rms;
    evidence->ranges = checkRanges(p0.range, p1.range, refined.pose);

    PairPose pose;
    pose.R_0_from_1 = refined.pose.R;
    pose.t_0_from_1 = refined.pose.t;
    pose.metric = true;
    pose.information = refined.information * kInflation;
    pose.reliability = metricReliability(*evidence);
    pose.inliers = toInliers(matches, inliers);
    return pose;
}

std::optional<PairPose> solveBearings(const std::vector<Correspondence>& matches, PairRandom& random,
                                      Evidence* evidence)
{
    const auto hypothesis = estimateBearingPose(matches, {}, random);
    const auto rotation = estimateRotation(matches);
    PairPose pose;
    if (rotation && (!hypothesis || double(rotation->inliers.size()) >=
                                        kRotationShare * double(hypothesis->inliers.size()))) {
        countPlaces(matches, rotation->inliers, evidence);
        evidence->lean = leanOf(rotation->pose.R);
        pose.R_0_from_1 = rotation->pose.R;
        pose.rotation_only = true;
        pose.information = rotationInformation(matches, rotation->inliers, rotation->pose.R) * kInflation;
        pose.reliability = rotationReliability(*evidence);
        pose.inliers = toInliers(matches, rotation->inliers);
        return pose;
    }
    if (!hypothesis) return std::nullopt;
    const auto other = estimateBearingPose(
        matches, flags(matches.size(), epipolarInliers(matches, hypothesis->pose, 3.0 * kEpipolarTolerance)),
        random);
    evidence->second_share = other ? double(other->inliers.size()) / double(hypothesis->inliers.size()) : 0.0;
    RefinedBearingPose refined = refineBearingPose(matches, hypothesis->inliers, hypothesis->pose, 10);
    const auto inliers = epipolarInliers(matches, refined.pose, kEpipolarTolerance);
    refined = refineBearingPose(matches, inliers, refined.pose, 10);

    countPlaces(matches, inliers, evidence);
    evidence->lean = leanOf(refined.pose.R);
    evidence->rms = refined.rms / (0.1 * kDegree);
    pose.R_0_from_1 = refined.pose.R;
    pose.t_0_from_1 = refined.pose.t;
    pose.information = refined.information * kInflation;
    pose.reliability = bearingReliability(*evidence);
    pose.inliers = toInliers(matches, inliers);
    return pose;
}

} // namespace

std::vector<Correspondence> matchFeatures(const Panorama& panorama_0, const Panorama& panorama_1)
{
    return plausibleMatches(
        panorama_0.features, panorama_1.features,
        matchDescriptors(panorama_0.features.descriptors, panorama_1.features.descriptors, kRatio));
}

std::optional<PairPose> solvePair(const Panorama& panorama_0, const Panorama& panorama_1,
                                  const std::vector<Correspondence>& matches, Evidence* evidence)
{
    PairRandom random(panorama_0.id, panorama_1.id);
    std::optional<PairPose> pose;
    if (panorama_0.metric() && panorama_1.metric())
        pose = solveMetric(panorama_0, panorama_1, matches, random, evidence);
    else
        pose = solveBearings(matches, random, evidence);
    if (!pose || !pose->R_0_from_1.allFinite() || !pose->t_0_from_1.allFinite() ||
        !pose->information.allFinite())
        return std::nullopt;
    pose->matches = int(matches.size());
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
