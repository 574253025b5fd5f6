// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

#include <set>

namespace nexomap {

/// The links of a model, looked up by their ends: large tours ask for each pair what lies between.
class LinkedPairs
{
public:
    explicit LinkedPairs(const Model& model);
    /// None yet.
    explicit LinkedPairs(std::size_t nodes)
        : m_at(nodes)
    {}
    void add(int a, int b);
    bool has(int a, int b) const { return m_at[std::size_t(a)].count(b) > 0; }
    const std::set<int>& of(int node) const { return m_at[std::size_t(node)]; }

private:
    std::vector<std::set<int>> m_at;
};

} // namespace nexomap
