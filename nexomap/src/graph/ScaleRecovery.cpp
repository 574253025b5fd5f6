// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/ScaleRecovery.h"

#include "nexomap/src/graph/NormalEquations.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>

namespace nexomap {
namespace {

constexpr std::size_t kFewestShared = 4;
constexpr double kHeightSpread = 0.04; // of the stations' heights above the floor, as a share
constexpr double kSmallestParallax = 0.6 * kDegree;

using BearingKey = std::array<std::uint32_t, 3>;

BearingKey keyOf(const Eigen::Vector3f& v)
{
    BearingKey key;
    std::memcpy(key.data(), v.data(), sizeof key);
    return key;
}

/// log(depth) of every feature of an edge at one of its ends, for a translation of length 1.
std::map<BearingKey, double> logDepths(const GraphEdge& edge, bool at_i)
{
    std::map<BearingKey, double> depths;
    const PairPose& pose = *edge.pose;
    for (const PairInlier& inlier : pose.inliers) {
        const Eigen::Vector2d d = rayDepths(inlier.bearing_0.cast<double>(), inlier.bearing_1.cast<double>(),
                                            pose.R_0_from_1, pose.t_0_from_1);
        const double depth = at_i ? d[0] : d[1];
        if (depth > 0.0) depths[keyOf(at_i ? inlier.bearing_0 : inlier.bearing_1)] = std::log(depth);
    }
    return depths;
}

double median(std::vector<double>& values)
{
    std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
    return values[values.size() / 2];
}

/// How far below the stations the floor lies, by the heights of triangulated points: the fullest narrow level
/// that little lies below and that stands out from its surroundings; 0 without one.
/// @param drops  metres or units below a station; reordered
double floorDrop(std::vector<double>& drops)
{
    constexpr double kWindow = 1.03;
    std::sort(drops.begin(), drops.end());
    const auto within = [&](double from, double to) {
        return double(std::upper_bound(drops.begin(), drops.end(), to) -
                      std::lower_bound(drops.begin(), drops.end(), from));
    };
    double best = 0.0, floor = 0.0;
    for (std::size_t a = 0; a < drops.size(); ++a) {
        if (drops[a] <= 0.0) continue;
        const double count = within(drops[a], drops[a] * kWindow);
        const double deeper = within(drops[a] * kWindow, 1e300);
        const double about = within(drops[a] / 1.2, drops[a] * 1.2) - count;
        const bool stands_out = count >= 4.0 + 3.0 * about * (kWindow - 1.0) / 0.37;
        if (count <= best || !stands_out || deeper > std::max(2.0, 0.1 * double(drops.size()))) continue;
        best = count;
        floor = drops[a + std::size_t(count) / 2];
    }
    return floor;
}

/// log(scale_a) - log(scale_b) = difference, or log(scale_a) = difference when b is negative. The number of
/// edges stands for the stations' common height above the floor.
struct Tie
{
    int a, b;
    double difference, weight;
};

/// Difference of two edges' log lengths by the features they share at a node.
bool tieOf(const std::map<BearingKey, double>& a, const std::map<BearingKey, double>& b, double* difference,
           double* weight)
{
    std::vector<double> differences;
    for (const auto& [key, depth] : a) {
        const auto other = b.find(key);
        if (other != b.end()) differences.push_back(other->second - depth);
    }
    if (differences.size() < kFewestShared) return false;
    *difference = median(differences);
    std::vector<double> deviations;
    for (const double d : differences)
        deviations.push_back(std::abs(d - *difference));
    const double spread = 1.48 * median(deviations) + 0.01;
    if (spread > 0.5) return false;
    *weight = std::sqrt(double(differences.size())) / spread;
    return true;
}

std::vector<Tie> featureTies(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    std::vector<Tie> ties;
    std::vector<std::vector<std::pair<int, std::map<BearingKey, double>>>> at(nodes);
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const PairPose& pose = *edges[e].pose;
        if (!kept[e] || pose.metric || pose.rotation_only) continue;
        at[edges[e].i].emplace_back(int(e), logDepths(edges[e], true));
        at[edges[e].j].emplace_back(int(e), logDepths(edges[e], false));
        std::vector<double> ranges, drops;
        for (const PairInlier& inlier : pose.inliers) {
            const Eigen::Vector2d d =
                rayDepths(inlier.bearing_0.cast<double>(), inlier.bearing_1.cast<double>(), pose.R_0_from_1,
                          pose.t_0_from_1);
            drops.push_back(-d[0] * inlier.bearing_0.z());
            drops.push_back(-d[1] * inlier.bearing_1.z());
            if (d[0] > 0 && inlier.range_0_m > 0) ranges.push_back(std::log(inlier.range_0_m / d[0]));
            if (d[1] > 0 && inlier.range_1_m > 0) ranges.push_back(std::log(inlier.range_1_m / d[1]));
        }
        if (const double drop = floorDrop(drops); drop > 0.0)
            ties.push_back({int(e), int(edges.size()), -std::log(drop), 1.0 / kHeightSpread});
        if (ranges.size() >= kFewestShared)
            ties.push_back({int(e), -1, median(ranges), std::sqrt(double(ranges.size())) / 0.05});
    }
    for (const auto& here : at)
        for (std::size_t a = 0; a < here.size(); ++a)
            for (std::size_t b = a + 1; b < here.size(); ++b) {
                double difference = 0, weight = 0;
                if (tieOf(here[a].second, here[b].second, &difference, &weight))
                    ties.push_back({here[a].first, here[b].first, difference, weight});
            }
    return ties;
}

/// Least absolute deviations of the ties by reweighting; edges that nothing ties stay at length 1.
Eigen::VectorXd solveTies(int edges, const std::vector<Tie>& ties)
{
    const int unknowns = edges + 1;
    Eigen::VectorXd x = Eigen::VectorXd::Zero(unknowns);
    for (int round = 0; round < 15; ++round) {
        NormalEquations normal(unknowns, 1e-6);
        for (const Tie& tie : ties) {
            const double r = x[tie.a] - (tie.b < 0 ? 0.0 : x[tie.b]) - tie.difference;
            const double w = tie.weight / (round == 0 ? 1.0 : std::max(0.01, std::abs(r)));
            normal.add(tie.a, tie.a, w);
            normal.right(tie.a) += w * tie.difference;
            if (tie.b < 0) continue;
            normal.add(tie.b, tie.b, w);
            normal.add(tie.a, tie.b, -w);
            normal.right(tie.b) -= w * tie.difference;
        }
        const Eigen::VectorXd solved = normal.solve();
        if (solved.size() == 0) break;
        x = solved;
    }
    return x;
}

/// Edges that ties join, numbered; -1 for metric edges, 0 for what is tied to the metre.
std::vector<int> tiedSets(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                          const std::vector<Tie>& ties, int* count)
{
    const int metre = int(edges.size()) + 1;
    std::vector<int> parent(edges.size() + 2);
    for (std::size_t k = 0; k < parent.size(); ++k)
        parent[k] = int(k);
    const auto root = [&](int k) {
        while (parent[k] != k)
            k = parent[k] = parent[parent[k]];
        return k;
    };
    for (const Tie& tie : ties)
        parent[root(tie.a)] = root(tie.b < 0 ? metre : tie.b);
    std::vector<int> set(edges.size(), -1);
    std::map<int, int> numbers{{root(metre), 0}};
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (kept[e] && !edges[e].pose->metric && !edges[e].pose->rotation_only)
            set[e] = numbers.emplace(root(int(e)), int(numbers.size())).first->second;
    *count = int(numbers.size());
    return set;
}

/// Factors of the tied sets by closed loops: positions and factors together, linear least squares, with a
/// weak wish that all sets have the same median length.
void closeLoops(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                const std::vector<int>& set, int sets, Eigen::VectorXd& log_scales)
{
    const std::vector<double> ones(edges.size(), 1.0);
    const std::vector<Pose> start = chainPoses(nodes, edges, spanningForest(nodes, edges, kept), ones);
    bool metric = false;
    for (std::size_t e = 0; e < edges.size(); ++e)
        metric |= kept[e] && (edges[e].pose->metric || set[e] == 0);
    const int unknowns = 3 * nodes + sets;
    const int fixed = metric ? 0 : 1; // the set whose factor stays 1
    Eigen::VectorXd factors = Eigen::VectorXd::Ones(sets);
    std::vector<double> weights(edges.size(), 1.0);
    for (int round = 0; round < 10; ++round) {
        NormalEquations normal(unknowns, 1e-9);
        for (int s = 0; s < sets; ++s) {
            const double w = s == fixed || s == 0 ? 1e9 : 1e-3;
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

std::optional<double> logLengthRatio(const GraphEdge& a, const GraphEdge& b, int node, double* spread)
{
    double difference = 0.0, weight = 0.0;
    const auto depths_a = logDepths(a, a.i == node), depths_b = logDepths(b, b.i == node);
    if (!tieOf(depths_a, depths_b, &difference, &weight)) return std::nullopt;
    std::size_t shared = 0;
    for (const auto& [key, depth] : depths_a)
        shared += depths_b.count(key);
    *spread = std::sqrt(double(shared)) / weight;
    return difference + std::log(a.pose->t_0_from_1.norm() / b.pose->t_0_from_1.norm());
}

std::vector<double> recoverScales(int nodes, const std::vector<GraphEdge>& edges,
                                  const std::vector<char>& kept)
{
    std::vector<double> scales(edges.size(), 1.0);
    bool any = false;
    for (std::size_t e = 0; e < edges.size(); ++e)
        any |= kept[e] && !edges[e].pose->metric;
    if (!any) return scales;
    const std::vector<Tie> ties = featureTies(nodes, edges, kept);
    Eigen::VectorXd log_scales = solveTies(int(edges.size()), ties);
    int sets = 0;
    const std::vector<int> set = tiedSets(edges, kept, ties, &sets);
    // Each set starts at a median length of 1, so that the wish for equal lengths means what it says.
    for (int s = 1; s < sets; ++s) {
        std::vector<double> values;
        for (std::size_t e = 0; e < edges.size(); ++e)
            if (set[e] == s) values.push_back(log_scales[int(e)]);
        if (values.empty()) continue;
        const double middle = median(values);
        for (std::size_t e = 0; e < edges.size(); ++e)
            if (set[e] == s) log_scales[int(e)] -= middle;
    }
    if (sets > 1) closeLoops(nodes, edges, kept, set, sets, log_scales);
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (set[e] >= 0) scales[e] = std::exp(log_scales[int(e)]);
    return scales;
}

double conventionalScale(const std::vector<Pose>& poses, const std::vector<int>& members,
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
    if (lengths.empty()) return 1.0;
    const double spacing = median(lengths);
    const double floor = floorDrop(drops);
    if (floor > 0.1 * spacing && floor < 10.0 * spacing) return 1.5 / floor;
    return 2.0 / spacing;
}

} // namespace nexomap
