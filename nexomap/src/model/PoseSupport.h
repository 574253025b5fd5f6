// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

/// How well a model's edges hold each pair of panoramas together, as they are when this is made.
class PoseSupport
{
public:
    explicit PoseSupport(const Model& model);
    /// Reliability of the weakest edge on the strongest chain between two panoramas: the widest path,
    /// which lies in a maximum spanning tree (Hu 1961). 0 without a chain.
    double between(int a, int b) const;

private:
    struct Step
    {
        int node;
        double reliability;
    };
    std::vector<std::vector<Step>> m_tree; ///< by node
};

} // namespace nexomap
