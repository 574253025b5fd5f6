// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What ties the lengths of edges to each other.
#include "nexomap/src/graph/LengthTies.h"

#include "nexomap/src/graph/NormalEquations.h"
#include "nexomap/src/graph/ScaleRecovery.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>

namespace nexomap {
namespace {

constexpr std::size_t kFewestShared = 4;
constexpr std::size_t kFewestPooled = 3;
constexpr double kWidestSpread = 0.5;
constexpr double kHeightSpread = 0.04; // of the stations' heights above the floor, as a share
constexpr double kFloorSpread = 0.01;  // of one station's, as one edge sees it
constexpr double kFloorBand = 0.08;

using BearingKey = std::array<std::uint32_t, 3>;

BearingKey keyOf(const Eigen::Vector3f& v)
{
    BearingKey key;
    std::memcpy(key.data(), v.data(), sizeof key);
    return key;
}

Eigen::Vector2d depthsOf(const PairPose& pose, const PairInlier& inlier)
{
    return rayDepths(inlier.bearing_0.cast<double>(), inlier.bearing_1.cast<double>(), pose.R_0_from_1,
                     pose.t_0_from_1);
}

/// log(depth) of every feature of an edge at one of its ends, for a translation of length 1.
std::map<BearingKey, double> logDepths(const GraphEdge& edge, bool at_i)
{
    std::map<BearingKey, double> depths;
    const PairPose& pose = *edge.pose;
    for (const PairInlier& inlier : pose.inliers) {
        const Eigen::Vector2d d = depthsOf(pose, inlier);
        const double depth = at_i ? d[0] : d[1];
        if (depth > 0.0) depths[keyOf(at_i ? inlier.bearing_0 : inlier.bearing_1)] = std::log(depth);
    }
    return depths;
}

/// What a feature that two edges share says of their lengths, and how high it stands.
struct Shared
{
    double difference, height; ///< log(length of a) - log(length of b); sine of its elevation
};

std::vector<Shared> sharedFeatures(const std::map<BearingKey, double>& a,
                                   const std::map<BearingKey, double>& b)
{
    std::vector<Shared> shared;
    for (const auto& [key, depth] : a) {
        const auto other = b.find(key);
        if (other == b.end()) continue;
        float height = 0.f;
        std::memcpy(&height, &key[2], sizeof height);
        shared.push_back({other->second - depth, double(height)});
    }
    return shared;
}

/// The middle of several opinions on one difference; false when they are few, or disagree.
bool agree(const std::vector<Shared>& shared, double* difference, double* weight)
{
    if (shared.size() < kFewestShared) return false;
    std::vector<double> values, deviations;
    for (const Shared& s : shared)
        values.push_back(s.difference);
    *difference = median(values);
    for (const double d : values)
        deviations.push_back(std::abs(d - *difference));
    const double spread = 1.48 * median(deviations) + 0.01;
    if (spread > kWidestSpread) return false;
    *weight = std::sqrt(double(shared.size())) / spread;
    return true;
}

bool lengthUnknown(const GraphEdge& edge, char kept)
{
    return kept && !edge.pose->metric && !edge.pose->rotation_only;
}

std::vector<Tie> rangeTies(const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    std::vector<Tie> ties;
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!lengthUnknown(edges[e], kept[e])) continue;
        std::vector<double> ranges;
        for (const PairInlier& inlier : edges[e].pose->inliers) {
            const Eigen::Vector2d d = depthsOf(*edges[e].pose, inlier);
            if (d[0] > 0 && inlier.range_0_m > 0) ranges.push_back(std::log(inlier.range_0_m / d[0]));
            if (d[1] > 0 && inlier.range_1_m > 0) ranges.push_back(std::log(inlier.range_1_m / d[1]));
        }
        if (ranges.size() >= kFewestShared)
            ties.push_back({int(e), -1, median(ranges), std::sqrt(double(ranges.size())) / 0.05});
    }
    return ties;
}

/// Ties that were found otherwise and go with an edge, where the other edge is still there.
void addGivenTies(const std::vector<GraphEdge>& edges, const std::vector<char>& kept, std::vector<Tie>& ties)
{
    std::map<std::pair<int, int>, int> number;
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (lengthUnknown(edges[e], kept[e])) number.emplace(std::minmax(edges[e].i, edges[e].j), int(e));
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!lengthUnknown(edges[e], kept[e])) continue;
        for (const GraphEdge::Tie& tie : edges[e].ties) {
            const auto other = number.find(std::minmax(tie.i, tie.j));
            if (other != number.end() && other->second != int(e))
                ties.push_back({int(e), other->second, tie.log_ratio, 1.0 / tie.sigma});
        }
    }
}

/// Two edges that share a few features at a panorama, fewer than would tie them alone.
struct Sparse
{
    int a, b;
    std::vector<Shared> shared;
};

/// The middle of what few features say: three that agree closely, most of all, and do not stand on one level
/// line. What stands as high as the cameras lies on the epipolar planes of all of them, where anything fits.
bool fewAgree(const std::vector<Shared>& opinions, double* difference, double* weight)
{
    constexpr double kClosely = 0.06;
    constexpr double kLevel = 0.05; // sines of elevations
    std::vector<double> all;
    for (const Shared& s : opinions)
        all.push_back(s.difference);
    if (all.size() < kFewestPooled) return false;
    const double middle = median(all);
    std::vector<double> close, heights;
    for (const Shared& s : opinions) {
        if (std::abs(s.difference - middle) > kClosely) continue;
        close.push_back(s.difference);
        heights.push_back(s.height);
    }
    if (close.size() < kFewestPooled || 3 * close.size() < 2 * all.size()) return false;
    const auto [lowest, highest] = std::minmax_element(heights.begin(), heights.end());
    if (*highest - *lowest < kLevel) return false;
    *difference = median(close);
    *weight = std::sqrt(double(close.size())) / kClosely;
    return true;
}

/// Ties two sets of edges by what all their edges share together.
/// @return false when nothing is left to tie
bool poolSparse(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                const std::vector<Sparse>& sparse, std::vector<Tie>& ties)
{
    if (sparse.empty()) return false;
    int count = 0;
    const std::vector<int> set = tiedSets(nodes, edges, kept, ties, &count);
    std::map<std::pair<int, int>, std::vector<const Sparse*>> between;
    for (const Sparse& s : sparse)
        if (set[s.a] != set[s.b]) between[std::minmax(set[s.a], set[s.b])].push_back(&s);
    if (between.empty()) return false;
    const Eigen::VectorXd x = solveTies({int(edges.size()), nodes}, ties);
    for (const auto& [sets, pairs] : between) {
        const Sparse& first = *pairs.front();
        // As the first pair of edges would see it, the other pairs' lengths being known within their sets.
        std::vector<Shared> opinions;
        for (const Sparse* s : pairs) {
            const bool along = set[s->a] == set[first.a];
            const int like_a = along ? s->a : s->b, like_b = along ? s->b : s->a;
            const double within = x[first.a] - x[like_a] + x[like_b] - x[first.b];
            for (const Shared& one : s->shared)
                opinions.push_back({(along ? one.difference : -one.difference) + within, one.height});
        }
        double difference = 0, weight = 0;
        if (!fewAgree(opinions, &difference, &weight)) continue;
        ties.push_back({first.a, first.b, difference, weight});
        return true;
    }
    return false;
}

} // namespace

double median(std::vector<double>& values)
{
    std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
    return values[values.size() / 2];
}

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
        // A table's top has far more of the room below it than a floor has of noise.
        const double stray = std::max(2.0, std::min(0.1 * double(drops.size()), 2.0 * count));
        if (count <= best || !stands_out || deeper > stray) continue;
        best = count;
        floor = drops[a + std::size_t(count) / 2];
    }
    return floor;
}

std::optional<double> logLengthRatio(const GraphEdge& a, const GraphEdge& b, int node, double* spread)
{
    const std::vector<Shared> shared = sharedFeatures(logDepths(a, a.i == node), logDepths(b, b.i == node));
    double difference = 0.0, weight = 0.0;
    if (!agree(shared, &difference, &weight)) return std::nullopt;
    *spread = std::sqrt(double(shared.size())) / weight;
    return difference + std::log(a.pose->t_0_from_1.norm() / b.pose->t_0_from_1.norm());
}

std::vector<Tie> featureTies(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    std::vector<Tie> ties = rangeTies(edges, kept);
    std::vector<std::vector<std::pair<int, std::map<BearingKey, double>>>> at(nodes);
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!lengthUnknown(edges[e], kept[e])) continue;
        at[edges[e].i].emplace_back(int(e), logDepths(edges[e], true));
        at[edges[e].j].emplace_back(int(e), logDepths(edges[e], false));
    }
    std::vector<Sparse> sparse;
    for (const auto& here : at)
        for (std::size_t a = 0; a < here.size(); ++a)
            for (std::size_t b = a + 1; b < here.size(); ++b) {
                std::vector<Shared> shared = sharedFeatures(here[a].second, here[b].second);
                double difference = 0, weight = 0;
                if (agree(shared, &difference, &weight))
                    ties.push_back({here[a].first, here[b].first, difference, weight});
                else if (!shared.empty() && shared.size() < kFewestShared)
                    sparse.push_back({here[a].first, here[b].first, std::move(shared)});
            }
    addGivenTies(edges, kept, ties);
    while (poolSparse(nodes, edges, kept, sparse, ties))
        continue;
    return ties;
}

std::vector<Tie> floorTies(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    const TieIndex index{int(edges.size()), nodes};
    std::vector<Tie> ties;
    std::vector<char> seen(std::size_t(nodes), 0);
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!lengthUnknown(edges[e], kept[e])) continue;
        const PairPose& pose = *edges[e].pose;
        std::array<std::vector<double>, 2> drops;
        for (const PairInlier& inlier : pose.inliers) {
            const Eigen::Vector2d d = depthsOf(pose, inlier);
            drops[0].push_back(-d[0] * inlier.bearing_0.z());
            drops[1].push_back(-d[1] * inlier.bearing_1.z());
        }
        std::vector<double> both = drops[0];
        both.insert(both.end(), drops[1].begin(), drops[1].end());
        const double floor = floorDrop(both);
        if (!(floor > 0.0)) continue;
        for (const int end : {0, 1}) {
            const int node = end == 0 ? edges[e].i : edges[e].j;
            std::vector<double> level, deviations;
            for (const double d : drops[std::size_t(end)])
                if (d > 0.0 && std::abs(std::log(d / floor)) < kFloorBand) level.push_back(std::log(d));
            double drop = std::log(floor), spread = kHeightSpread;
            if (level.size() >= kFewestShared) {
                drop = median(level);
                for (const double d : level)
                    deviations.push_back(std::abs(d - drop));
                spread = kFloorSpread + 2.0 * median(deviations) / std::sqrt(double(level.size()));
            }
            ties.push_back({int(e), index.heightOf(node), -drop, 1.0 / spread});
            seen[std::size_t(node)] = 1;
        }
    }
    for (int n = 0; n < nodes; ++n)
        if (seen[std::size_t(n)])
            ties.push_back({index.heightOf(n), index.height(), 0.0, 1.0 / kHeightSpread});
    return ties;
}

Eigen::VectorXd solveTies(const TieIndex& index, const std::vector<Tie>& ties)
{
    const int unknowns = index.count();
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

std::vector<int> tiedSets(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                          const std::vector<Tie>& ties, int* count)
{
    const int metre = TieIndex{int(edges.size()), nodes}.count();
    std::vector<int> parent(std::size_t(metre) + 1);
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

} // namespace nexomap
