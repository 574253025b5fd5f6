// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Finds the nearest of many triangles, and whether one stands between two points.

#pragma once

#include "companions/batch/truth/TrueSurfaces.h"

#include <Eigen/Geometry>

#include <functional>

/// A hierarchy of boxes, halved at the median of the longest axis.
class TriangleTree
{
public:
    /// @param surfaces  must outlive the tree
    /// @param taken     which parts it holds
    TriangleTree(const TrueSurfaces& surfaces, const std::function<bool(TruePart)>& taken);

    struct Nearest
    {
        float distance = 0.0f; ///< metres; the limit when nothing is nearer
        int triangle = -1;     ///< -1: nothing nearer than the limit
    };
    Nearest nearest(const Eigen::Vector3f& point, float limit) const;

    /// Whether a triangle crosses the way between the two, without its last `margin` metres at `to`.
    bool blocked(const Eigen::Vector3f& from, const Eigen::Vector3f& to, float margin) const;

private:
    struct Node
    {
        Eigen::AlignedBox3f box;
        std::uint32_t first = 0; ///< leaf: first of `m_order`; otherwise the second child, the first follows
        std::uint32_t count = 0; ///< leaf: triangles; otherwise 0
    };
    void build(std::uint32_t begin, std::uint32_t end);

    const TrueSurfaces& m_surfaces;
    std::vector<std::uint32_t> m_order;
    std::vector<Node> m_nodes;
};
