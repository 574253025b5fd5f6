// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which pairs of a large tour are worth a full comparison.
#include "nexomap/src/model/Growth.h"

#include "nexomap/src/graph/GraphEdge.h"
#include "nexomap/src/links/PredictedView.h"
#include "nexomap/src/model/PairMatching.h"
#include "nexomap/src/model/ParallelFor.h"
#include "nexomap/src/pair/CoarseMatching.h"

#include <algorithm>

namespace nexomap {
namespace {

constexpr std::size_t kMostAlike = 15; // partners of each panorama
constexpr int kTakenBefore = 3;        // whoever walks on links with what was just taken
constexpr double kNear_m = 12.0;
constexpr double kWorthwhile = 0.05; // predicted share of the view
constexpr std::size_t kPredicted = 8;
constexpr std::size_t kBetweenParts = 40; // pairs, for each part that stands apart

bool isLarge(const Model& model, const Workplace& workplace, int count)
{
    return count > kAllPairs && workplace.front_end.likeness && model.nodes.size() > 0;
}

std::shared_ptr<const Features> outlineOfPanorama(const Panorama& panorama)
{
    return std::make_shared<const Features>(outlineOf(panorama.features));
}

int likenessOf(const Workplace& workplace, const std::string& name_a, const Features& a,
               const std::string& name_b, const Features& b)
{
    return name_a < name_b ? workplace.front_end.likeness(a, b) : workplace.front_end.likeness(b, a);
}

void makeOutlines(Model& model, const Workplace& workplace)
{
    for (Node& node : model.nodes)
        if (!node.outline) node.outline = outlineOfPanorama(node.source->look(workplace.front_end));
}

bool compared(const Model& model, int a, int b)
{
    const auto [early, late] = pairOf(a, b);
    if (std::size_t(late) >= model.comparisons.size()) return true;
    const std::vector<char>& in_full = model.comparisons[std::size_t(late)].in_full;
    return in_full.empty() || in_full[std::size_t(early)];
}

void note(Model& model, const std::vector<NodePair>& pairs)
{
    for (const auto& [a, b] : pairs)
        model.comparisons[std::size_t(b)].in_full[std::size_t(a)] = 1;
}

int alike(const Model& model, int a, int b)
{
    const auto [early, late] = pairOf(a, b);
    return model.comparisons[std::size_t(late)].likeness[std::size_t(early)];
}

/// The most alike first, ties by name so that the order of adding does not matter.
void sortByLikeness(const Model& model, std::vector<std::pair<int, int>>& likeness_and_node)
{
    std::sort(likeness_and_node.begin(), likeness_and_node.end(), [&](const auto& p, const auto& q) {
        return p.first != q.first
                   ? p.first > q.first
                   : model.nodes[std::size_t(p.second)].name < model.nodes[std::size_t(q.second)].name;
    });
}

std::vector<int> partOf(const Model& model)
{
    std::vector<GraphEdge> graph;
    for (const Edge& edge : model.edges)
        graph.push_back({edge.node_0, edge.node_1, edge.pose.get(), false});
    return connectedComponents(int(model.nodes.size()), graph, std::vector<char>(graph.size(), 1));
}

/// Of each panorama the few unseen neighbours that share most of its view.
std::vector<NodePair> predictedPairs(const Model& model, const std::vector<int>& part)
{
    const int count = int(model.nodes.size());
    std::vector<std::vector<std::pair<double, int>>> worth(model.nodes.size());
    parallelFor(count, [&](int a) {
        const Node& node = model.nodes[std::size_t(a)];
        for (int b = 0; b < count; ++b) {
            const Node& other = model.nodes[std::size_t(b)];
            if (a == b || part[std::size_t(a)] != part[std::size_t(b)] || compared(model, a, b)) continue;
            const double distance = (node.pose.t - other.pose.t).norm();
            if (distance > kNear_m) continue;
            const RangeMap &map = node.source->loaded()->range, &other_map = other.source->loaded()->range;
            double share = 1.0 / (1.0 + distance); // without ranges the nearest
            if (!map.empty() && !other_map.empty())
                share = predictedCovisibility(map, other_map, node.pose.inverse() * other.pose);
            if (share >= kWorthwhile) worth[std::size_t(a)].emplace_back(share, b);
        }
    });
    std::vector<NodePair> pairs;
    for (int a = 0; a < count; ++a) {
        auto& all = worth[std::size_t(a)];
        std::stable_sort(all.begin(), all.end(),
                         [](const auto& p, const auto& q) { return p.first > q.first; });
        for (std::size_t k = 0; k < std::min(kPredicted, all.size()); ++k)
            pairs.push_back(pairOf(a, all[k].second));
    }
    return pairs;
}

/// The most alike pairs between each part but the largest and the rest.
std::vector<NodePair> pairsBetweenParts(const Model& model, const std::vector<int>& part)
{
    const int count = int(model.nodes.size());
    std::vector<int> sizes(model.nodes.size(), 0);
    for (const int p : part)
        ++sizes[std::size_t(p)];
    const int largest = int(std::max_element(sizes.begin(), sizes.end()) - sizes.begin());
    std::vector<NodePair> pairs;
    for (int p = 0; p < count && sizes[std::size_t(p)] > 0; ++p) {
        if (p == largest) continue;
        std::vector<std::pair<int, NodePair>> ranked;
        for (int a = 0; a < count; ++a) {
            if (part[std::size_t(a)] != p) continue;
            for (int b = 0; b < count; ++b)
                if (part[std::size_t(b)] != p && !compared(model, a, b))
                    ranked.emplace_back(-alike(model, a, b), pairOf(a, b));
        }
        std::sort(ranked.begin(), ranked.end());
        for (std::size_t k = 0; k < std::min(kBetweenParts, ranked.size()); ++k)
            pairs.push_back(ranked[k].second);
    }
    return pairs;
}

} // namespace

std::vector<int> partnersOf(Model& model, const Workplace& workplace, const Panorama& newcomer,
                            std::shared_ptr<const Features>* outline)
{
    const int count = int(model.nodes.size());
    std::vector<int> all(model.nodes.size());
    for (int n = 0; n < count; ++n)
        all[std::size_t(n)] = n;
    model.comparisons.resize(std::size_t(count) + 1);
    if (!isLarge(model, workplace, count + 1)) return all;
    makeOutlines(model, workplace);
    *outline = outlineOfPanorama(newcomer);
    Comparisons& row = model.comparisons.back();
    row.likeness.assign(std::size_t(count), 0);
    row.in_full.assign(std::size_t(count), 0);
    parallelFor(count, [&](int n) {
        const Node& node = model.nodes[std::size_t(n)];
        row.likeness[std::size_t(n)] = std::uint16_t(
            std::min(65535, likenessOf(workplace, node.name, *node.outline, newcomer.id, **outline)));
    });
    std::vector<std::pair<int, int>> ranked;
    for (int n = 0; n < count; ++n)
        ranked.emplace_back(row.likeness[std::size_t(n)], n);
    sortByLikeness(model, ranked);
    for (std::size_t k = 0; k < std::min(kMostAlike, ranked.size()); ++k)
        row.in_full[std::size_t(ranked[k].second)] = 1;
    for (int n = std::max(0, count - kTakenBefore); n < count; ++n)
        row.in_full[std::size_t(n)] = 1;
    std::vector<int> partners;
    for (int n = 0; n < count; ++n)
        if (row.in_full[std::size_t(n)]) partners.push_back(n);
    return partners;
}

std::vector<NodePair> pairsMissedByOrder(Model& model, const Workplace& workplace)
{
    const int count = int(model.nodes.size());
    if (!isLarge(model, workplace, count)) return {};
    makeOutlines(model, workplace);
    model.comparisons.resize(std::size_t(count));
    std::vector<NodePair> unseen;
    for (int b = 0; b < count; ++b)
        if (int(model.comparisons[std::size_t(b)].likeness.size()) < b) {
            model.comparisons[std::size_t(b)].likeness.assign(std::size_t(b), 0);
            for (int a = 0; a < b; ++a)
                unseen.emplace_back(a, b);
        }
    parallelFor(int(unseen.size()), [&](int k) {
        const auto [a, b] = unseen[std::size_t(k)];
        const Node &p = model.nodes[std::size_t(a)], &q = model.nodes[std::size_t(b)];
        model.comparisons[std::size_t(b)].likeness[std::size_t(a)] =
            std::uint16_t(std::min(65535, likenessOf(workplace, p.name, *p.outline, q.name, *q.outline)));
    });
    std::vector<NodePair> pairs;
    for (int a = 0; a < count; ++a) {
        std::vector<std::pair<int, int>> ranked;
        for (int b = 0; b < count; ++b)
            if (b != a) ranked.emplace_back(alike(model, a, b), b);
        sortByLikeness(model, ranked);
        for (std::size_t k = 0; k < std::min(kMostAlike, ranked.size()); ++k)
            if (!compared(model, a, ranked[k].second)) pairs.push_back(pairOf(a, ranked[k].second));
    }
    note(model, pairs);
    return pairs;
}

std::vector<NodePair> pairsByPoses(Model& model, const Workplace& workplace)
{
    const int count = int(model.nodes.size());
    if (!isLarge(model, workplace, count) || int(model.comparisons.size()) < count) return {};
    for (const Node& node : model.nodes)
        node.source->look(workplace.front_end);
    const std::vector<int> part = partOf(model);
    std::vector<NodePair> pairs = predictedPairs(model, part);
    for (const NodePair& pair : pairsBetweenParts(model, part))
        pairs.push_back(pair);
    note(model, pairs);
    return pairs;
}

} // namespace nexomap
