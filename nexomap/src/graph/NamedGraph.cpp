// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/NamedGraph.h"

#include "nexomap/src/graph/GroupLayout.h"
#include "nexomap/src/pair/PairSolver.h"

#include <algorithm>
#include <numeric>

namespace nexomap {
namespace {

std::vector<int> counting(std::size_t count)
{
    std::vector<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

std::vector<int> inverseOf(const std::vector<int>& order)
{
    std::vector<int> places(order.size());
    for (std::size_t k = 0; k < order.size(); ++k)
        places[std::size_t(order[k])] = int(k);
    return places;
}

/// The same components, numbered by their first node.
std::vector<int> renumbered(const std::vector<int>& component)
{
    std::vector<int> numbers(component.size(), -1), result;
    int next = 0;
    for (const int c : component) {
        int& number = numbers[std::size_t(c)];
        if (number < 0) number = next++;
        result.push_back(number);
    }
    return result;
}

} // namespace

NamedGraph::NamedGraph(const std::vector<std::string>& names, const std::vector<GraphEdge>& edges)
    : m_nodes(counting(names.size()))
    , m_numbers(counting(edges.size()))
{
    std::sort(m_nodes.begin(), m_nodes.end(),
              [&](int a, int b) { return names[std::size_t(a)] < names[std::size_t(b)]; });
    const std::vector<int> place = inverseOf(m_nodes);
    const auto placed = [&](int node) { return place[std::size_t(node)]; };
    const auto ends = [&](int e) {
        const int a = placed(edges[std::size_t(e)].i), b = placed(edges[std::size_t(e)].j);
        return std::pair<int, int>(std::min(a, b), std::max(a, b));
    };
    std::stable_sort(m_numbers.begin(), m_numbers.end(), [&](int a, int b) { return ends(a) < ends(b); });
    for (const int e : m_numbers) {
        GraphEdge edge = edges[std::size_t(e)];
        edge.i = placed(edge.i);
        edge.j = placed(edge.j);
        for (GraphEdge::Tie& tie : edge.ties) {
            tie.i = placed(tie.i);
            tie.j = placed(tie.j);
        }
        if (edge.i > edge.j) {
            std::swap(edge.i, edge.j);
            m_turned.push_back(std::make_shared<const PairPose>(inverted(*edge.pose)));
            edge.pose = m_turned.back().get();
        }
        m_edges.push_back(std::move(edge));
    }
}

GraphSolution NamedGraph::solve(const std::vector<char>& held) const
{
    std::vector<char> held_here;
    for (const int e : m_numbers)
        held_here.push_back(held[std::size_t(e)]);
    const GraphSolution found = solvePoseGraph(int(m_nodes.size()), m_edges, held_here);
    GraphSolution solution = found;
    for (std::size_t k = 0; k < m_nodes.size(); ++k) {
        const std::size_t n = std::size_t(m_nodes[k]);
        solution.poses[n] = found.poses[k];
        solution.component[n] = found.component[k];
        solution.up[n] = found.up[k];
    }
    for (std::size_t k = 0; k < m_edges.size(); ++k)
        solution.kept[std::size_t(m_numbers[k])] = found.kept[k];
    solution.component = renumbered(solution.component);
    layOutGroups(solution.component, solution.poses, solution.up);
    return solution;
}

} // namespace nexomap
