// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Lengths by the heights at which things stand.
#include "nexomap/src/graph/HeightLevels.h"

#include "nexomap/src/graph/LengthTies.h"
#include "nexomap/src/graph/Levels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>

namespace nexomap {
namespace {

constexpr double kClear = 9.0;  // of the log-likelihood, above what any other factor reaches
constexpr double kOther = 0.08; // of the logarithm: what counts as another factor
constexpr double kReach = 1.2, kStep = 0.01;

/// By how much heights are off for a station's own vertical, radians: a quarter of the angle between those of
/// neighbours, which hides less than the whole would and keeps false levels of leaning cameras from being
/// clear.
double leanOf(const std::vector<GraphEdge>& edges)
{
    constexpr double kShare = 0.25;
    std::vector<double> leans;
    for (const GraphEdge& edge : edges)
        if (const double cosine = edge.pose->R_0_from_1(2, 2); std::isfinite(cosine))
            leans.push_back(std::acos(std::clamp(cosine, -1.0, 1.0)));
    return leans.empty() ? 0.0 : kShare * median(leans);
}

/// Heights of an edge's points for a length of 1, or in metres where it is metric.
std::vector<LevelPoint> pointsOf(const GraphEdge& edge, double lean)
{
    const PairPose& pose = *edge.pose;
    std::vector<LevelPoint> points;
    for (const PairInlier& inlier : pose.inliers) {
        const Eigen::Vector3d ray_0 = inlier.bearing_0.cast<double>(),
                              ray_1 = inlier.bearing_1.cast<double>();
        if (!pose.metric) {
            if (const auto point = levelPoint(ray_0, ray_1, pose.R_0_from_1, pose.t_0_from_1, lean))
                points.push_back(*point);
        } else if (inlier.range_0_m > 0.f) {
            const double blur = lean * ray_0.head<2>().norm() / std::max(1e-3, std::abs(ray_0.z()));
            points.push_back({inlier.range_0_m * ray_0.z(), 0.01 + blur});
        }
    }
    return points;
}

void append(std::vector<LevelPoint>& all, const std::vector<LevelPoint>& part, double log_factor)
{
    for (const LevelPoint& p : part)
        all.push_back({p.height * std::exp(log_factor), p.spread});
}

/// Logarithm of the factor that lays points onto levels; NaN without a clear one.
/// @param usual  the logarithm that would make the lengths behind the points as long as most are
double factorOnto(const Levels& levels, const std::vector<LevelPoint>& points, double usual)
{
    constexpr int kSteps = int(2.0 * kReach / kStep) + 1;
    const std::size_t stride = std::max<std::size_t>(1, points.size() / kMostLevelPoints);
    // From the points' own spread, so that the two start about equally large.
    const double start = std::log(Levels::kSize / nearlySizeOf(points));
    std::array<double, std::size_t(kSteps)> factors{}, likelihood{};
    for (int k = 0; k < kSteps; ++k)
        factors[std::size_t(k)] = std::exp(start + k * kStep - kReach);
    std::size_t used = 0;
    for (std::size_t i = 0; i < points.size(); i += stride, ++used)
        for (int k = 0; k < kSteps; ++k) {
            const double height = points[i].height * factors[std::size_t(k)];
            likelihood[std::size_t(k)] +=
                levels.logLikelihood(height, std::abs(height) * points[i].spread) + k * kStep - kReach;
        }
    const double counting = std::min(1.0, kCountingPoints / double(used));
    for (int k = 0; k < kSteps; ++k) {
        const double unusual = (start + std::log(levels.unit()) + k * kStep - kReach - usual) / kUsualLengths;
        likelihood[std::size_t(k)] = counting * likelihood[std::size_t(k)] - 0.5 * unusual * unusual;
    }
    const auto best = std::max_element(likelihood.begin(), likelihood.end());
    const int at = int(best - likelihood.begin());
    double other = -std::numeric_limits<double>::infinity();
    for (int k = 0; k < kSteps; ++k)
        if (std::abs(k - at) * kStep > kOther) other = std::max(other, likelihood[std::size_t(k)]);
    if (at == 0 || at == kSteps - 1 || *best - other < kClear)
        return std::numeric_limits<double>::quiet_NaN();
    return start + at * kStep - kReach + std::log(levels.unit());
}

} // namespace

std::vector<double> factorsByHeights(const std::vector<GraphEdge>& edges, const std::vector<int>& component,
                                     const LengthSets& sets)
{
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    struct Group
    {
        std::vector<LevelPoint> known;
        std::vector<double> log_lengths;
        std::map<int, std::vector<LevelPoint>> open; // by set
    };
    std::vector<double> factors(std::size_t(sets.count), kNone);
    std::map<int, Group> groups;
    const double lean = leanOf(edges);
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const bool metric = sets.of[e] < 0 && edges[e].pose->metric; // ranges are right whatever the pose
        if (sets.of[e] < 0 && !metric) continue;
        Group& group = groups[component[std::size_t(edges[e].i)]];
        const int set = std::max(0, sets.of[e]);
        const bool goes_by = set == 0 || sets.held[std::size_t(set)];
        const double log_length = metric ? 0.0 : sets.log_lengths[int(e)];
        append(goes_by ? group.known : group.open[set], pointsOf(edges[e], lean), log_length);
        if (!goes_by) continue;
        factors[std::size_t(set)] = 0.0;
        group.log_lengths.push_back(log_length + std::log(std::max(1e-6, edges[e].pose->t_0_from_1.norm())));
    }
    for (auto& [number, group] : groups) {
        for (bool joined = !group.log_lengths.empty();
             joined && group.known.size() >= 4 * kFewestLevelPoints;) {
            joined = false;
            const Levels levels(group.known);
            const double usual = median(group.log_lengths);
            for (auto it = group.open.begin(); it != group.open.end();) {
                const double factor =
                    it->second.size() >= kFewestLevelPoints ? factorOnto(levels, it->second, usual) : kNone;
                if (std::isnan(factor)) {
                    ++it;
                    continue;
                }
                factors[std::size_t(it->first)] = factor;
                append(group.known, it->second, factor);
                it = group.open.erase(it);
                joined = true;
            }
        }
    }
    return factors;
}

std::vector<double> correctionsByHeights(const std::vector<GraphEdge>& edges, const std::vector<int>& set,
                                         const Eigen::VectorXd& log_lengths)
{
    constexpr std::size_t kFewestEdges = 6;
    std::vector<double> corrections(edges.size(), std::numeric_limits<double>::quiet_NaN());
    std::map<int, std::vector<std::size_t>> members;
    const double lean = leanOf(edges);
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (set[e] > 0) members[set[e]].push_back(e);
    for (const auto& [number, list] : members) {
        if (list.size() < kFewestEdges) continue;
        std::vector<std::vector<LevelPoint>> points;
        std::vector<LevelPoint> all;
        std::vector<double> lengths;
        for (const std::size_t e : list) {
            points.push_back(pointsOf(edges[e], lean));
            append(all, points.back(), log_lengths[int(e)]);
            lengths.push_back(log_lengths[int(e)]);
        }
        if (all.size() < 4 * kFewestLevelPoints) continue;
        const Levels levels(all);
        const double middle = median(lengths);
        for (std::size_t k = 0; k < list.size(); ++k) {
            if (points[k].size() < kFewestLevelPoints ||
                all.size() - points[k].size() < 4 * kFewestLevelPoints)
                continue;
            const double log_length = log_lengths[int(list[k])];
            std::vector<LevelPoint> own;
            append(own, points[k], log_length);
            corrections[list[k]] = factorOnto(levels.without(own), points[k], middle) - log_length;
        }
    }
    return corrections;
}

} // namespace nexomap
