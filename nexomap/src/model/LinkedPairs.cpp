// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/LinkedPairs.h"

namespace nexomap {

LinkedPairs::LinkedPairs(const Model& model)
    : m_at(model.nodes.size())
{
    for (const Edge& edge : model.edges)
        if (edge.link) add(edge.node_0, edge.node_1);
}

void LinkedPairs::add(int a, int b)
{
    m_at[std::size_t(a)].insert(b);
    m_at[std::size_t(b)].insert(a);
}

} // namespace nexomap
