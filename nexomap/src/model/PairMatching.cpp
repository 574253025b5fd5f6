// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Comparing many pairs within bounded memory.
#include "nexomap/src/model/PairMatching.h"

#include "nexomap/src/model/ParallelFor.h"

#include <algorithm>
#include <set>

namespace nexomap {
namespace {

constexpr std::size_t kAwake = 48; // panoramas; 10 MiB each

/// The end of the run of pairs from `first` on that touches at most kAwake panoramas.
std::size_t endOfRun(const std::vector<NodePair>& pairs, std::size_t first)
{
    std::set<int> touched;
    std::size_t end = first;
    for (; end < pairs.size(); ++end) {
        touched.insert(pairs[end].first);
        touched.insert(pairs[end].second);
        if (touched.size() > kAwake) break;
    }
    return end;
}

} // namespace

Edge measuredEdge(int node_0, int node_1, PairPose pose)
{
    Edge edge;
    edge.node_0 = node_0;
    edge.node_1 = node_1;
    edge.reliability = pose.reliability;
    edge.values.spacing = pose.t_0_from_1.norm();
    edge.pose = std::make_shared<const PairPose>(std::move(pose));
    return edge;
}

std::vector<Edge> comparePairs(const Model& model, const Workplace& workplace, std::vector<NodePair> pairs,
                               const PairFunction& compare)
{
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    std::vector<Edge> edges;
    const bool large = int(model.nodes.size()) > kAllPairs;
    for (std::size_t first = 0, end = 0; first < pairs.size(); first = end) {
        end = large ? endOfRun(pairs, first) : pairs.size();
        std::vector<std::pair<const Panorama*, const Panorama*>> panoramas;
        for (std::size_t k = first; k < end; ++k)
            panoramas.emplace_back(
                &model.nodes[std::size_t(pairs[k].first)].source->get(workplace.front_end),
                &model.nodes[std::size_t(pairs[k].second)].source->get(workplace.front_end));
        std::vector<std::optional<PairPose>> poses(panoramas.size());
        parallelFor(int(panoramas.size()), [&](int k) {
            const auto& [p, q] = panoramas[std::size_t(k)];
            poses[std::size_t(k)] = compare(*p, *q);
        });
        for (std::size_t k = 0; k < poses.size(); ++k)
            if (poses[k])
                edges.push_back(
                    measuredEdge(pairs[first + k].first, pairs[first + k].second, std::move(*poses[k])));
        restPanoramas(model);
    }
    return edges;
}

void restPanoramas(const Model& model)
{
    if (int(model.nodes.size()) <= kAllPairs) return;
    std::vector<PanoramaSource*> awake;
    for (const Node& node : model.nodes)
        if (node.source->awake()) awake.push_back(node.source.get());
    if (awake.size() <= kAwake) return;
    std::sort(awake.begin(), awake.end(),
              [](const PanoramaSource* a, const PanoramaSource* b) { return a->lastUse() > b->lastUse(); });
    const int surplus = int(awake.size() - kAwake);
    parallelFor(surplus, [&](int k) { awake[kAwake + std::size_t(k)]->rest(); });
}

} // namespace nexomap
