// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/LevelledLengths.h"

#include "nexomap/src/graph/LengthTies.h"
#include "nexomap/src/graph/Levels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

namespace nexomap {
namespace {

constexpr int kRounds = 3;
constexpr std::size_t kFewestEdges = 6;
constexpr double kReach = 1.2, kStep = 0.01, kFineStep = 0.004; // of the logarithm of a length
constexpr double kNear = 0.08;                                  // farther off another length is meant
constexpr double kClear = 5.0;  // of the log-likelihood, above what any length farther off reaches
constexpr double kSmall = 0.04; // what asks for more has to be clearer
constexpr double kSurest = 0.004;
constexpr double kUntold = 0.015; // deviation of other lengths meanwhile: shared features know most of them

/// An edge's points by their height over the middle of its two stations, for a length of 1.
struct EdgePoints
{
    std::size_t edge = 0;
    double length = 0.0, middle = 0.0; ///< as the poses stand; height of the middle
    std::vector<LevelPoint> points;

    std::vector<LevelPoint> standing(double centre) const
    {
        std::vector<LevelPoint> result;
        for (const LevelPoint& p : points)
            result.push_back({middle - centre + length * p.height, p.spread});
        return result;
    }
};

/// @param tilt  by how much the vertical that the group's stations have in common may be off, radians
EdgePoints pointsOf(const GraphEdge& edge, const std::vector<Pose>& poses, double tilt)
{
    const Pose &a = poses[std::size_t(edge.i)], &b = poses[std::size_t(edge.j)];
    EdgePoints result;
    result.length = std::max(1e-6, (b.t - a.t).norm());
    result.middle = 0.5 * (a.t.z() + b.t.z());
    const Eigen::Vector3d base = (b.t - a.t) / result.length;
    for (const PairInlier& inlier : edge.pose->inliers)
        if (const auto point =
                levelPoint(a.R * inlier.bearing_0.cast<double>(), b.R * inlier.bearing_1.cast<double>(),
                           Eigen::Matrix3d::Identity(), base, tilt))
            result.points.push_back(*point);
    return result;
}

/// How well an edge's points lie on levels, by what its length's logarithm has added.
class Fit
{
public:
    /// @param offset  height of the stations' middle, as the levels count
    /// @param usual   logarithm of the group's usual length
    Fit(const Levels& levels, const EdgePoints& edge, double offset, double usual)
        : m_levels(levels)
        , m_edge(edge)
        , m_offset(offset / levels.unit())
        , m_unusual(std::log(edge.length) - usual)
        , m_stride(std::max<std::size_t>(1, edge.points.size() / kMostLevelPoints))
    {
        const double used = double((edge.points.size() + m_stride - 1) / m_stride);
        m_weight = std::min(1.0, kCountingPoints / used);
    }

    double at(double x) const
    {
        const double factor = std::exp(x) * m_edge.length / m_levels.unit();
        double sum = 0.0;
        for (std::size_t i = 0; i < m_edge.points.size(); i += m_stride) {
            const double height = m_edge.points[i].height * factor;
            sum += m_levels.logLikelihood(m_offset + height, std::abs(height) * m_edge.points[i].spread) + x;
        }
        return m_weight * sum - 0.5 * std::pow((m_unusual + x) / kUsualLengths, 2);
    }

private:
    const Levels& m_levels;
    const EdgePoints& m_edge;
    double m_offset, m_unusual, m_weight = 1.0;
    std::size_t m_stride;
};

struct Told
{
    double log_factor, sigma;
};

/// The length near the present one that fits clearly better than any farther off.
/// @param reach  how far off lengths are looked at, of the logarithm
std::optional<Told> bestNear(const Fit& fit, double reach)
{
    const int steps = int(std::lround(reach / kStep));
    double best = -std::numeric_limits<double>::infinity(), peak = 0.0;
    std::vector<double> coarse;
    for (int k = -steps; k <= steps; ++k) {
        coarse.push_back(fit.at(k * kStep));
        if (coarse.back() <= best) continue;
        best = coarse.back();
        peak = k * kStep;
    }
    if (std::abs(peak) > kNear) return std::nullopt;
    const double clear = kClear * std::max(1.0, std::abs(peak) / kSmall);
    for (int k = -steps; k <= steps; ++k)
        if (std::abs(k * kStep - peak) > kNear && best - coarse[std::size_t(k + steps)] < clear)
            return std::nullopt;
    // Two neighbouring peaks are one doubtful answer: the mean, and how far they lie apart.
    const int fine = int(std::lround(kNear / kFineStep));
    double weights = 0.0, mean = 0.0, square = 0.0;
    for (int k = -fine; k <= fine; ++k) {
        const double x = k * kFineStep, weight = std::exp(fit.at(peak + x) - best);
        weights += weight;
        mean += weight * x;
        square += weight * x * x;
    }
    mean /= weights;
    const double sigma = std::sqrt(std::max(0.0, square / weights - mean * mean));
    return Told{peak + mean, std::max(kSurest, sigma)};
}

/// What heights tell of the lengths of one group, by edge.
/// @param before  what they told a round ago: those are looked for nearby only
std::map<std::size_t, Told> toldLengths(const std::vector<GraphEdge>& edges,
                                        const std::vector<std::size_t>& group, const std::vector<Pose>& poses,
                                        double tilt, const std::map<std::size_t, Told>& before)
{
    std::vector<EdgePoints> all;
    std::vector<double> middles, logs;
    for (const std::size_t e : group) {
        EdgePoints points = pointsOf(edges[e], poses, tilt);
        if (!std::isfinite(points.middle) || !std::isfinite(points.length)) continue;
        all.push_back(std::move(points));
        all.back().edge = e;
        middles.push_back(all.back().middle);
        logs.push_back(std::log(all.back().length));
    }
    if (all.empty()) return {};
    const double centre = median(middles), usual = median(logs);
    std::vector<LevelPoint> standing;
    for (const EdgePoints& edge : all)
        for (const LevelPoint& p : edge.standing(centre))
            standing.push_back(p);
    std::map<std::size_t, Told> told;
    if (standing.size() < 4 * kFewestLevelPoints) return told;
    const Levels levels(standing);
    for (const EdgePoints& edge : all) {
        if (edge.points.size() < kFewestLevelPoints ||
            standing.size() - edge.points.size() < 4 * kFewestLevelPoints)
            continue;
        const Levels others = levels.without(edge.standing(centre));
        if (const auto best = bestNear(Fit(others, edge, edge.middle - centre, usual),
                                       before.count(edge.edge) ? kNear : kReach))
            told[edge.edge] = *best;
    }
    return told;
}

using Groups = std::map<int, std::vector<std::size_t>>; ///< edges without scale, by component

Groups groupsOf(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                const std::vector<int>& component)
{
    Groups groups;
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (kept[e] && !edges[e].pose->metric && !edges[e].pose->rotation_only)
            groups[component[std::size_t(edges[e].i)]].push_back(e);
    for (auto it = groups.begin(); it != groups.end();)
        it = it->second.size() < kFewestEdges ? groups.erase(it) : std::next(it);
    return groups;
}

/// Moves the stations of the groups so that their edges have the lengths told, and else those that they have.
void solveWith(const std::map<std::size_t, Told>& told, const std::vector<GraphEdge>& edges,
               const std::vector<char>& kept, const std::vector<int>& component, const Groups& groups,
               const OptimizerOptions& options, std::vector<Pose>& poses)
{
    std::vector<PairPose> scaled(edges.size());
    std::vector<GraphEdge> with = edges;
    std::vector<Matrix6d> information(edges.size(), Matrix6d::Identity());
    std::vector<double> used(edges.size(), 0.0);
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!kept[e] || groups.count(component[std::size_t(edges[e].i)]) == 0) continue;
        used[e] = 1.0;
        if (const PairPose& pose = *edges[e].pose; !pose.metric && !pose.rotation_only) {
            const double now = (poses[std::size_t(edges[e].j)].t - poses[std::size_t(edges[e].i)].t).norm();
            const auto found = told.find(e);
            const Told length = found == told.end() ? Told{0.0, kUntold} : found->second;
            scaled[e] = scaledPose(pose, std::max(1e-6, now * std::exp(length.log_factor)), length.sigma);
            with[e].pose = &scaled[e];
        }
        information[e] = graphInformation(*with[e].pose);
    }
    optimizePoses(with, information, used, component, options, poses);
}

} // namespace

std::vector<double> levelLengths(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                                 const std::vector<int>& component, const OptimizerOptions& options,
                                 std::vector<Pose>& poses)
{
    std::vector<double> deviations(edges.size(), kVagueLength);
    const Groups groups = groupsOf(edges, kept, component);
    std::map<std::size_t, Told> before;
    for (int round = 0; round < kRounds; ++round) {
        std::map<std::size_t, Told> told;
        for (const auto& [number, group] : groups) {
            // The mean vertical of many is as much better than one's own.
            const auto members = std::count(component.begin(), component.end(), number);
            const double tilt = options.tilt_sigma_rad / std::sqrt(double(members));
            told.merge(toldLengths(edges, group, poses, tilt, before));
        }
        if (told.empty()) break;
        for (const auto& [number, group] : groups)
            for (const std::size_t e : group)
                deviations[e] = told.count(e) ? told.at(e).sigma : kVagueLength;
        solveWith(told, edges, kept, component, groups, options, poses);
        before = std::move(told);
    }
    return deviations;
}

} // namespace nexomap
