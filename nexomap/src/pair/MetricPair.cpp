// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Relative pose of two panoramas that both carry range.
#include "nexomap/src/pair/GuidedMatching.h"
#include "nexomap/src/pair/MetricRansac.h"
#include "nexomap/src/pair/MetricRefinement.h"
#include "nexomap/src/pair/PairSolver.h"
#include "nexomap/src/pair/PairSteps.h"
#include "nexomap/src/pair/Sphere.h"
#include "nexomap/src/pair/Vertical.h"

namespace nexomap {
namespace {

constexpr int kSurfaceSamples = 3000;
constexpr int kMostHypotheses = 3;

/// The verticals of the two frames.
struct Verticals
{
    Eigen::Vector3d up_0, up_1;
};

/// Refines over the matches, then with the surfaces, unless these pull away from the matches.
RefinedPose refineBoth(const Panorama& p0, const Panorama& p1, const std::vector<Correspondence>& matches,
                       const RigidPose& start, const Verticals& stood, std::vector<int>* inliers)
{
    RefinedPose refined = refineMetricPose(matches, *inliers, start, nullptr, nullptr, nullptr, nullptr,
                                           stood.up_0, stood.up_1);
    *inliers = rangedInliers(matches, refined.pose, 1.0);
    refined = refineMetricPose(matches, *inliers, refined.pose, nullptr, nullptr, nullptr, nullptr,
                               stood.up_0, stood.up_1);
    const auto surfaces_0 = sampleSurfaces(p0.range, kSurfaceSamples);
    const auto surfaces_1 = sampleSurfaces(p1.range, kSurfaceSamples);
    const RefinedPose aligned = refineMetricPose(matches, *inliers, refined.pose, &p0.range, &p1.range,
                                                 &surfaces_0, &surfaces_1, stood.up_0, stood.up_1);
    const auto aligned_inliers = rangedInliers(matches, aligned.pose, 1.0);
    if (aligned.surface_pairs > 0 && aligned_inliers.size() * 10 >= inliers->size() * 9) {
        refined = aligned;
        *inliers = aligned_inliers;
    }
    return refined;
}

/// Refines a pose that is believed with all that the range maps hold, unless these pull away from the
/// matches.
RefinedPose refineFurther(const Panorama& p0, const Panorama& p1, const std::vector<Correspondence>& matches,
                          const RefinedPose& start, const Verticals& stood, std::vector<int>* inliers)
{
    const RefinedPose fine =
        refineDensely(matches, *inliers, start.pose, p0.range, p1.range, stood.up_0, stood.up_1);
    const auto fine_inliers = rangedInliers(matches, fine.pose, 1.0);
    if (fine.surface_pairs == 0 || fine_inliers.size() * 10 < inliers->size() * 9) return start;
    *inliers = fine_inliers;
    return fine;
}

/// A hypothesis refined, and what speaks for and against it.
PairPose verified(const Panorama& p0, const Panorama& p1, const std::vector<Correspondence>& tentative,
                  const PoseHypothesis& hypothesis, const Verticals& stood, Evidence* evidence)
{
    countPlaces(tentative, hypothesis.inliers, evidence);

    std::vector<int> inliers = hypothesis.inliers;
    const int alike = alikeDistance2(tentative, inliers);
    RefinedPose refined = refineMetricPose(tentative, inliers, hypothesis.pose, nullptr, nullptr, nullptr,
                                           nullptr, stood.up_0, stood.up_1);
    std::vector<Correspondence> matches = guidedByRange(p0.features, p1.features, refined.pose, alike);
    inliers = rangedInliers(matches, refined.pose, 1.5);
    if (inliers.size() < hypothesis.inliers.size()) {
        matches = tentative;
        inliers = hypothesis.inliers;
    }
    refined = refineBoth(p0, p1, matches, refined.pose, stood, &inliers);

    const std::vector<Correspondence> guided = guidedByRange(p0.features, p1.features, refined.pose, alike);
    evidence->guided = int(guided.size());
    evidence->silent = silentPlaces(p0, p1, refined.pose, guided);
    evidence->chance = matchesByChance(p0.features, p1.features, refined.pose, alike);
    const Eigen::Matrix3d level_0 = levelling(stood.up_0), level_1 = levelling(stood.up_1);
    evidence->lean = leanOf(level_0 * refined.pose.R * level_1.transpose());
    evidence->rms = refined.rms;
    const Eigen::Vector3d way = level_0 * refined.pose.t;
    evidence->elevation = 0.5 * kPi - polarOf(way);
    if (p0.camera_height_m > 0.0 && p1.camera_height_m > 0.0)
        evidence->floor_step_m = way.z() - p1.camera_height_m + p0.camera_height_m;
    evidence->ranges = checkRanges(p0.range, p1.range, refined.pose);
    evidence->walls = movedWalls(p0.range, p1.range, refined.pose);

    PairPose pose;
    pose.reliability = metricReliability(*evidence);
    if (pose.reliability >= kMinReliability)
        refined = refineFurther(p0, p1, matches, refined, stood, &inliers);
    pose.R_0_from_1 = refined.pose.R;
    pose.t_0_from_1 = refined.pose.t;
    pose.metric = true;
    pose.information = refined.information * kInformationShare;
    pose.inliers = pairInliers(matches, inliers);
    return pose;
}

} // namespace

std::optional<PairPose> solveMetric(const Panorama& p0, const Panorama& p1,
                                    const std::vector<Correspondence>& tentative, PairRandom& random,
                                    Evidence* evidence)
{
    const Verticals stood{uprightOf(p0.range), uprightOf(p1.range)};
    const Eigen::Matrix3d level_0 = levelling(stood.up_0), level_1 = levelling(stood.up_1);
    std::vector<bool> taken(tentative.size(), false);
    auto hypothesis = estimateMetricPose(tentative, taken, random, level_0, level_1);
    std::optional<PairPose> best;
    // Copies of a room may have more in common than the one room that both see: what walls and silence refute
    // speaks neither for nor against what the rest of the matches say.
    for (int rank = 0; rank < kMostHypotheses && hypothesis; ++rank) {
        for (const int i : rangedInliers(tentative, hypothesis->pose, 3.0))
            taken[std::size_t(i)] = true;
        const auto other = estimateMetricPose(tentative, taken, random, level_0, level_1);
        Evidence found;
        found.second_share = other ? double(other->inliers.size()) / double(hypothesis->inliers.size()) : 0.0;
        const PairPose pose = verified(p0, p1, tentative, *hypothesis, stood, &found);
        if (!best || pose.reliability >= kMinReliability) {
            best = pose;
            *evidence = found;
        }
        if (pose.reliability >= kMinReliability) break;
        hypothesis = other;
    }
    return best;
}

} // namespace nexomap
