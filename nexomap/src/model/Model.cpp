// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/Model.h"

#include "nexomap/src/graph/GraphEdge.h"
#include "nexomap/src/graph/GroupLayout.h"

#include <algorithm>

namespace nexomap {

NodePair pairOf(int a, int b)
{
    return {std::min(a, b), std::max(a, b)};
}

int Model::findNode(const std::string& name) const
{
    for (std::size_t n = 0; n < nodes.size(); ++n)
        if (nodes[n].name == name) return int(n);
    return -1;
}

int Model::nodeNamed(const std::string& name) const
{
    const int node = findNode(name);
    if (node < 0) throw Failure(NEXOMAP_UNKNOWN_NAME, "no panorama is named " + name);
    return node;
}

std::vector<std::string> Model::names() const
{
    std::vector<std::string> all;
    for (const Node& node : nodes)
        all.push_back(node.name);
    return all;
}

const Edge* Model::edgeBetween(int a, int b) const
{
    for (const Edge& edge : edges)
        if (pairOf(edge.node_0, edge.node_1) == pairOf(a, b)) return &edge;
    return nullptr;
}

Edge* Model::edgeBetween(int a, int b)
{
    return const_cast<Edge*>(static_cast<const Model&>(*this).edgeBetween(a, b));
}

std::vector<const Edge*> Model::links() const
{
    std::vector<const Edge*> all;
    for (const Edge& edge : edges)
        if (edge.link) all.push_back(&edge);
    return all;
}

std::vector<std::vector<int>> Model::groups() const
{
    std::vector<GraphEdge> graph;
    for (const Edge* link : links())
        graph.push_back({link->node_0, link->node_1, nullptr, false});
    const std::vector<int> component =
        connectedComponents(int(nodes.size()), graph, std::vector<char>(graph.size(), 1));
    std::vector<std::vector<int>> members;
    for (const int group : componentsBySize(component)) {
        members.emplace_back();
        for (std::size_t n = 0; n < nodes.size(); ++n)
            if (component[n] == group) members.back().push_back(int(n));
    }
    return members;
}

std::string matchKey(const std::string& name_a, const std::string& name_b)
{
    return std::min(name_a, name_b) + "_" + std::max(name_a, name_b);
}

std::string matchKey(const Model& model, const Edge& edge)
{
    return matchKey(model.nodes[edge.node_0].name, model.nodes[edge.node_1].name);
}

} // namespace nexomap
