// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/truth/TriangleTree.h"

#include <algorithm>
#include <cmath>

namespace {

using Point = Eigen::Vector3f;
constexpr std::uint32_t kLeaf = 4;
constexpr std::size_t kDepth = 64; ///< halving 2^32 triangles takes fewer

/// Nearest point of a triangle (Ericson, "Real-Time Collision Detection", 5.1.5).
Point nearestOnTriangle(const Point& p, const Point& a, const Point& b, const Point& c)
{
    const Point ab = b - a, ac = c - a, ap = p - a;
    const float d1 = ab.dot(ap), d2 = ac.dot(ap);
    if (d1 <= 0 && d2 <= 0) return a;
    const Point bp = p - b;
    const float d3 = ab.dot(bp), d4 = ac.dot(bp);
    if (d3 >= 0 && d4 <= d3) return b;
    const float vc = d1 * d4 - d3 * d2;
    if (vc <= 0 && d1 >= 0 && d3 <= 0) return a + d1 / (d1 - d3) * ab;
    const Point cp = p - c;
    const float d5 = ab.dot(cp), d6 = ac.dot(cp);
    if (d6 >= 0 && d5 <= d6) return c;
    const float vb = d5 * d2 - d1 * d6;
    if (vb <= 0 && d2 >= 0 && d6 <= 0) return a + d2 / (d2 - d6) * ac;
    const float va = d3 * d6 - d5 * d4;
    if (va <= 0 && d4 - d3 >= 0 && d5 - d6 >= 0) return b + (d4 - d3) / ((d4 - d3) + (d5 - d6)) * (c - b);
    const float scale = 1 / (va + vb + vc);
    return a + vb * scale * ab + vc * scale * ac;
}

/// Möller and Trumbore, "Fast, Minimum Storage Ray-Triangle Intersection", 1997; both sides.
bool crosses(const Point& from, const Point& way, float end, const Point& a, const Point& b, const Point& c)
{
    const Point e1 = b - a, e2 = c - a;
    const Point p = way.cross(e2);
    const float determinant = e1.dot(p);
    if (std::abs(determinant) < 1e-12f) return false;
    const Point s = from - a;
    const float u = s.dot(p) / determinant;
    if (u < 0 || u > 1) return false;
    const Point q = s.cross(e1);
    const float v = way.dot(q) / determinant;
    if (v < 0 || u + v > 1) return false;
    const float t = e2.dot(q) / determinant;
    return t > 0 && t < end;
}

bool meets(const Eigen::AlignedBox3f& box, const Point& from, const Point& inverse, float end)
{
    const Eigen::Array3f one = (box.min() - from).array() * inverse.array();
    const Eigen::Array3f other = (box.max() - from).array() * inverse.array();
    const float enter = one.min(other).maxCoeff();
    const float leave = one.max(other).minCoeff();
    return enter <= leave && leave >= 0 && enter <= end;
}

} // namespace

TriangleTree::TriangleTree(const TrueSurfaces& surfaces, const std::function<bool(TruePart)>& taken)
    : m_surfaces(surfaces)
{
    for (std::size_t i = 0; i < surfaces.triangles.size(); ++i)
        if (taken(surfaces.triangles[i].part)) m_order.push_back(static_cast<std::uint32_t>(i));
    if (!m_order.empty()) build(0, static_cast<std::uint32_t>(m_order.size()));
}

void TriangleTree::build(std::uint32_t begin, std::uint32_t end)
{
    Eigen::AlignedBox3f box, middles;
    const auto middle = [&](std::uint32_t t) -> Point {
        return (m_surfaces.at(t, 0) + m_surfaces.at(t, 1) + m_surfaces.at(t, 2)) / 3;
    };
    for (std::uint32_t i = begin; i < end; ++i) {
        for (std::size_t corner = 0; corner < 3; ++corner)
            box.extend(m_surfaces.at(m_order[i], corner));
        middles.extend(middle(m_order[i]));
    }
    const std::size_t self = m_nodes.size();
    m_nodes.push_back({box, begin, end - begin});
    if (end - begin <= kLeaf) return;
    int axis = 0;
    middles.sizes().maxCoeff(&axis);
    const std::uint32_t half = begin + (end - begin) / 2;
    std::nth_element(m_order.begin() + begin, m_order.begin() + half, m_order.begin() + end,
                     [&](std::uint32_t a, std::uint32_t b) { return middle(a)[axis] < middle(b)[axis]; });
    build(begin, half);
    m_nodes[self].first = static_cast<std::uint32_t>(m_nodes.size());
    m_nodes[self].count = 0;
    build(half, end);
}

TriangleTree::Nearest TriangleTree::nearest(const Point& point, float limit) const
{
    Nearest best{limit * limit, -1};
    std::array<std::uint32_t, kDepth> stack;
    std::size_t depth = 0;
    if (!m_nodes.empty()) stack[depth++] = 0;
    while (depth > 0) {
        const std::uint32_t current = stack[--depth];
        const Node& node = m_nodes[current];
        if (node.box.squaredExteriorDistance(point) >= best.distance) continue;
        if (node.count == 0) {
            const std::uint32_t left = current + 1;
            const bool leftFirst = m_nodes[left].box.squaredExteriorDistance(point) <
                                   m_nodes[node.first].box.squaredExteriorDistance(point);
            stack[depth++] = leftFirst ? node.first : left;
            stack[depth++] = leftFirst ? left : node.first;
            continue;
        }
        for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
            const std::uint32_t t = m_order[i];
            const Point on =
                nearestOnTriangle(point, m_surfaces.at(t, 0), m_surfaces.at(t, 1), m_surfaces.at(t, 2));
            const float distance = (point - on).squaredNorm();
            if (distance < best.distance) best = {distance, static_cast<int>(t)};
        }
    }
    best.distance = std::sqrt(best.distance);
    return best;
}

bool TriangleTree::blocked(const Point& from, const Point& to, float margin) const
{
    const Point way = to - from;
    const float end = 1 - margin / std::max(way.norm(), margin);
    const Point inverse = way.cwiseInverse();
    std::array<std::uint32_t, kDepth> stack;
    std::size_t depth = 0;
    if (!m_nodes.empty()) stack[depth++] = 0;
    while (depth > 0) {
        const std::uint32_t current = stack[--depth];
        const Node& node = m_nodes[current];
        if (!meets(node.box, from, inverse, end)) continue;
        if (node.count == 0) {
            stack[depth++] = node.first;
            stack[depth++] = current + 1;
            continue;
        }
        for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
            const std::uint32_t t = m_order[i];
            if (crosses(from, way, end, m_surfaces.at(t, 0), m_surfaces.at(t, 1), m_surfaces.at(t, 2)))
                return true;
        }
    }
    return false;
}
