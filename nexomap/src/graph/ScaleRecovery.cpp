// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/ScaleRecovery.h"

#include "nexomap/src/graph/HeightLevels.h"
#include "nexomap/src/graph/LengthTies.h"
#include "nexomap/src/graph/NormalEquations.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace nexomap {
namespace {

constexpr double kSmallestParallax = 0.6 * kDegree;

/// One set of each group that has no metre, whose factor stays 1: without it the loops of a group close best
/// when they shrink to a point. The largest, so that the weak wish for the others means what it says.
std::vector<char> heldSets(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                           const std::vector<int>& set, int sets)
{
    const std::vector<int> component = connectedComponents(nodes, edges, kept);
    std::map<int, std::map<int, int>> sizes; // of each group's sets
    std::map<int, bool> metric;
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!kept[e]) continue;
        const int group = component[edges[e].i];
        metric[group] = metric[group] || edges[e].pose->metric || set[e] == 0;
        if (set[e] > 0) ++sizes[group][set[e]];
    }
    std::vector<char> held(std::size_t(sets), 0);
    for (const auto& [group, counts] : sizes)
        if (!metric[group])
            held[std::size_t(std::max_element(counts.begin(), counts.end(), [](const auto& a, const auto& b) {
                                 return a.second < b.second;
                             })->first)] = 1;
    return held;
}

/// Factors of the tied sets by closed loops: positions and factors together, linear least squares, with a
/// wish that they stay as they are: weak, but where heights tell them.
void closeLoops(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                const LengthSets& lengths, const std::vector<double>& by_heights, Eigen::VectorXd& log_scales)
{
    constexpr double kWish = 1e-3, kWishByHeights = 10.0;
    const std::vector<int>& set = lengths.of;
    const int sets = lengths.count;
    const std::vector<double> ones(edges.size(), 1.0);
    const std::vector<Pose> start = chainPoses(nodes, edges, spanningForest(nodes, edges, kept), ones);
    const int unknowns = 3 * nodes + sets;
    Eigen::VectorXd factors = Eigen::VectorXd::Ones(sets);
    std::vector<double> weights(edges.size(), 1.0);
    for (int round = 0; round < 10; ++round) {
        NormalEquations normal(unknowns, 1e-9);
        for (int s = 0; s < sets; ++s) {
            const double w = s == 0 || lengths.held[std::size_t(s)]   ? 1e9
                             : std::isnan(by_heights[std::size_t(s)]) ? kWish
                                                                      : kWishByHeights;
            normal.add(3 * nodes + s, 3 * nodes + s, w);
            normal.right(3 * nodes + s) += w;
        }
        for (std::size_t e = 0; e < edges.size(); ++e) {
            if (!kept[e] || edges[e].pose->rotation_only) continue;
            const int i = edges[e].i, j = edges[e].j;
            const double length = edges[e].pose->metric ? 1.0 : std::exp(log_scales[int(e)]);
            const Eigen::Vector3d v = start[i].R * edges[e].pose->t_0_from_1 * length;
            const double w = weights[e] / std::max(1e-6, v.squaredNorm());
            for (int k = 0; k < 3; ++k) {
                const int a = 3 * i + k, b = 3 * j + k;
                normal.add(a, a, w), normal.add(b, b, w), normal.add(a, b, -w);
                if (set[e] < 0) {
                    normal.right(b) += w * v[k], normal.right(a) -= w * v[k];
                    continue;
                }
                const int s = 3 * nodes + set[e];
                normal.add(s, s, w * v[k] * v[k]);
                normal.add(b, s, -w * v[k]);
                normal.add(a, s, w * v[k]);
            }
        }
        const Eigen::VectorXd x = normal.solve();
        if (x.size() == 0) break;
        factors = x.tail(sets).cwiseMax(0.05);
        for (std::size_t e = 0; e < edges.size(); ++e) {
            if (!kept[e] || edges[e].pose->rotation_only) continue;
            const double factor = set[e] < 0 ? 1.0 : factors[set[e]] * std::exp(log_scales[int(e)]);
            const Eigen::Vector3d v = start[edges[e].i].R * edges[e].pose->t_0_from_1 * factor;
            const Eigen::Vector3d gap = x.segment<3>(3 * edges[e].j) - x.segment<3>(3 * edges[e].i) - v;
            weights[e] = 1.0 / std::max(0.02, gap.norm() / std::max(1e-3, v.norm()));
        }
    }
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (set[e] > 0) log_scales[int(e)] += std::log(factors[set[e]]);
}

/// Ties of edges of which heights tell more. Few features that agree by chance tie as firmly as many: where
/// heights contradict them, the edge goes by heights alone.
std::vector<Tie> withHeights(const TieIndex& index, const Eigen::VectorXd& log_scales,
                             const std::vector<double>& corrections, std::vector<Tie> ties)
{
    constexpr double kSpread = 0.06, kContradiction = 0.15;
    const auto overruled = [&](int k) {
        return k >= 0 && k < index.edges && std::abs(corrections[std::size_t(k)]) > kContradiction;
    };
    ties.erase(std::remove_if(ties.begin(), ties.end(),
                              [&](const Tie& tie) { return overruled(tie.a) || overruled(tie.b); }),
               ties.end());
    const double height = log_scales[index.height()];
    for (int e = 0; e < index.edges; ++e)
        if (!std::isnan(corrections[std::size_t(e)]))
            ties.push_back(
                {e, index.height(), log_scales[e] + corrections[std::size_t(e)] - height, 1.0 / kSpread});
    return ties;
}

} // namespace

Eigen::Vector2d rayDepths(const Eigen::Vector3d& bearing_0, const Eigen::Vector3d& bearing_1,
                          const Eigen::Matrix3d& R, const Eigen::Vector3d& t)
{
    const Eigen::Vector3d b = R * bearing_1;
    const double c = bearing_0.dot(b);
    const double determinant = 1.0 - c * c;
    if (determinant < std::pow(std::sin(kSmallestParallax), 2)) return Eigen::Vector2d::Zero();
    const double x = bearing_0.dot(t), y = b.dot(t);
    const Eigen::Vector2d depths((x - c * y) / determinant, (c * x - y) / determinant);
    return depths.minCoeff() > 0.0 ? depths : Eigen::Vector2d::Zero();
}

std::vector<double> recoverScales(int nodes, const std::vector<GraphEdge>& edges,
                                  const std::vector<char>& kept, std::vector<int>* tied)
{
    std::vector<double> scales(edges.size(), 1.0);
    if (tied) tied->assign(edges.size(), -1);
    bool any = false;
    for (std::size_t e = 0; e < edges.size(); ++e)
        any |= kept[e] && !edges[e].pose->metric;
    if (!any) return scales;
    std::vector<Tie> ties = featureTies(nodes, edges, kept);
    const std::vector<Tie> floors = floorTies(nodes, edges, kept);
    ties.insert(ties.end(), floors.begin(), floors.end());
    Eigen::VectorXd log_scales = solveTies({int(edges.size()), nodes}, ties);
    LengthSets lengths;
    lengths.of = tiedSets(nodes, edges, kept, ties, &lengths.count);
    ties = withHeights({int(edges.size()), nodes}, log_scales,
                       correctionsByHeights(edges, lengths.of, log_scales), std::move(ties));
    log_scales = solveTies({int(edges.size()), nodes}, ties);
    // Each set starts at a median length of 1, so that the wish for equal lengths means what it says.
    for (int s = 1; s < lengths.count; ++s) {
        std::vector<double> values;
        for (std::size_t e = 0; e < edges.size(); ++e)
            if (lengths.of[e] == s) values.push_back(log_scales[int(e)]);
        if (values.empty()) continue;
        const double middle = median(values);
        for (std::size_t e = 0; e < edges.size(); ++e)
            if (lengths.of[e] == s) log_scales[int(e)] -= middle;
    }
    if (lengths.count > 1) {
        lengths.held = heldSets(nodes, edges, kept, lengths.of, lengths.count);
        lengths.log_lengths = log_scales;
        const std::vector<double> by_heights =
            factorsByHeights(edges, connectedComponents(nodes, edges, kept), lengths);
        for (std::size_t e = 0; e < edges.size(); ++e)
            if (lengths.of[e] > 0 && !std::isnan(by_heights[std::size_t(lengths.of[e])]))
                log_scales[int(e)] += by_heights[std::size_t(lengths.of[e])];
        closeLoops(nodes, edges, kept, lengths, by_heights, log_scales);
    }
    if (tied) *tied = lengths.of;
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (lengths.of[e] >= 0) scales[e] = std::exp(log_scales[int(e)]);
    return scales;
}

std::optional<double> scaleByFloor(const std::vector<Pose>& poses, const std::vector<int>& members,
                                   const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    std::vector<char> member(poses.size(), 0);
    for (const int n : members)
        member[n] = 1;
    std::vector<double> lengths, drops;
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!kept[e] || !member[edges[e].i]) continue;
        const Pose &a = poses[edges[e].i], &b = poses[edges[e].j];
        const double length = (b.t - a.t).norm();
        if (length < 1e-9) continue;
        lengths.push_back(length);
        const Pose step = a.inverse() * b;
        for (const PairInlier& inlier : edges[e].pose->inliers) {
            const Eigen::Vector3d ray = inlier.bearing_0.cast<double>();
            const Eigen::Vector2d d = rayDepths(ray, inlier.bearing_1.cast<double>(), step.R, step.t);
            const Eigen::Vector3d below = a.R * (ray * d[0]);
            if (d[0] > 0.0) drops.push_back(-below.z());
        }
    }
    if (lengths.empty()) return std::nullopt;
    const double spacing = median(lengths);
    const double floor = floorDrop(drops);
    if (floor > 0.1 * spacing && floor < 10.0 * spacing) return 1.5 / floor;
    return std::nullopt;
}

double conventionalScale(const std::vector<Pose>& poses, const std::vector<int>& members,
                         const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    if (const auto scale = scaleByFloor(poses, members, edges, kept)) return *scale;
    const std::set<int> inside(members.begin(), members.end());
    std::vector<double> lengths;
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const double length = (poses[edges[e].j].t - poses[edges[e].i].t).norm();
        if (kept[e] && inside.count(edges[e].i) && length > 1e-9) lengths.push_back(length);
    }
    return lengths.empty() ? 1.0 : 2.0 / median(lengths);
}

} // namespace nexomap
