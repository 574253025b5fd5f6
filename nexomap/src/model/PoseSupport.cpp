// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/PoseSupport.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace nexomap {

PoseSupport::PoseSupport(const Model& model)
    : m_tree(model.nodes.size())
{
    std::vector<const Edge*> strongest;
    for (const Edge& edge : model.edges)
        strongest.push_back(&edge); // links by pose too: of a reopened tour they may be all that is left
    std::stable_sort(strongest.begin(), strongest.end(),
                     [](const Edge* a, const Edge* b) { return a->reliability > b->reliability; });
    std::vector<int> parent(model.nodes.size());
    std::iota(parent.begin(), parent.end(), 0);
    const auto root = [&parent](int node) {
        while (parent[node] != node)
            node = parent[node] = parent[parent[node]];
        return node;
    };
    for (const Edge* edge : strongest) {
        const int a = root(edge->node_0), b = root(edge->node_1);
        if (a == b) continue;
        parent[a] = b;
        m_tree[edge->node_0].push_back({edge->node_1, edge->reliability});
        m_tree[edge->node_1].push_back({edge->node_0, edge->reliability});
    }
}

double PoseSupport::between(int a, int b) const
{
    std::vector<double> support(m_tree.size(), 0.0);
    support[a] = std::numeric_limits<double>::infinity();
    std::vector<int> open{a};
    while (!open.empty()) {
        const int node = open.back();
        open.pop_back();
        if (node == b) return support[b];
        for (const Step& step : m_tree[node]) {
            if (support[step.node] > 0.0) continue;
            support[step.node] = std::min(support[node], step.reliability);
            open.push_back(step.node);
        }
    }
    return 0.0;
}

} // namespace nexomap
