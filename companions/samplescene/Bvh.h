// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Shape.h"

#include <vector>

/// Finds the nearest shape on a ray: a bounding volume hierarchy built by the surface area heuristic with 16
/// bins (Wald 2007, "On fast Construction of SAH-based Bounding Volume Hierarchies").
namespace samplescene {

struct ShapeHit
{
    float distance = 0; ///< metres
    int shape = -1;     ///< index; -1: nothing
    int face = 0;
};

class Bvh
{
public:
    void build(const std::vector<Shape>& shapes);

    /// Nearest hit in (nearest, farthest).
    /// @param seesGlass  panes are hit like anything else; otherwise they are not there
    ShapeHit nearestHit(Vec3 origin, Vec3 direction, float nearest, float farthest,
                        bool seesGlass = true) const;

    /// Whether anything that stops light lies in (nearest, farthest).
    /// @param glassStops  glass counts as an obstacle
    bool blocked(Vec3 origin, Vec3 direction, float nearest, float farthest, bool glassStops = false) const;

    /// Whether the point lies within a solid.
    bool inside(Vec3 point) const;

private:
    struct Node
    {
        Vec3 low;
        std::uint32_t first; ///< leaf: first entry of m_order; inner: index of the second child
        Vec3 high;
        std::uint32_t count; ///< leaf: number of shapes; inner: 0
    };
    void split(std::uint32_t begin, std::uint32_t end);

    std::vector<Node> m_nodes;
    std::vector<std::uint32_t> m_order; ///< shape numbers, leaf by leaf
    std::vector<Shape> m_shapes;        ///< in that order
    std::vector<Vec3> m_low, m_high;    ///< bounds by shape number, while building
};

} // namespace samplescene
