// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Bvh.h"

#include <array>
#include <limits>
#include <numeric>

namespace samplescene {
namespace {

constexpr float kFar = std::numeric_limits<float>::max();

float halfArea(Vec3 low, Vec3 high)
{
    const Vec3 d = high - low;
    return d.x * d.y + d.y * d.z + d.z * d.x;
}

struct Ray
{
    Vec3 origin;
    Vec3 inverse;
};

/// Distance at which the ray enters the box; kFar when it misses it.
inline float enters(Vec3 low, Vec3 high, const Ray& ray, float nearest, float farthest)
{
    const float x0 = (low.x - ray.origin.x) * ray.inverse.x;
    const float x1 = (high.x - ray.origin.x) * ray.inverse.x;
    const float y0 = (low.y - ray.origin.y) * ray.inverse.y;
    const float y1 = (high.y - ray.origin.y) * ray.inverse.y;
    const float z0 = (low.z - ray.origin.z) * ray.inverse.z;
    const float z1 = (high.z - ray.origin.z) * ray.inverse.z;
    const float enter =
        std::max(std::max(std::min(x0, x1), std::min(y0, y1)), std::max(std::min(z0, z1), nearest));
    const float leave =
        std::min(std::min(std::max(x0, x1), std::max(y0, y1)), std::min(std::max(z0, z1), farthest));
    return enter <= leave ? enter : kFar;
}

/// A direction without a zero component: the slab test divides by each of them.
Vec3 safeInverse(Vec3 d)
{
    const auto inverse = [](float v) { return 1.0f / (std::fabs(v) < 1e-9f ? (v < 0 ? -1e-9f : 1e-9f) : v); };
    return {inverse(d.x), inverse(d.y), inverse(d.z)};
}

} // namespace

void Bvh::build(const std::vector<Shape>& shapes)
{
    const auto count = static_cast<std::uint32_t>(shapes.size());
    m_nodes.clear();
    m_shapes.clear();
    m_order.resize(count);
    std::iota(m_order.begin(), m_order.end(), 0U);
    if (count == 0) return;
    m_low.resize(count);
    m_high.resize(count);
    const Vec3 skin{1e-4f, 1e-4f, 1e-4f};
    for (std::uint32_t i = 0; i < count; ++i) {
        const Vec3 e = shapes[i].extent() + skin;
        m_low[i] = shapes[i].center - e;
        m_high[i] = shapes[i].center + e;
    }
    m_nodes.reserve(2 * count);
    split(0, count);
    for (const std::uint32_t i : m_order)
        m_shapes.push_back(shapes[i]);
    m_low = {};
    m_high = {};
}

void Bvh::split(std::uint32_t begin, std::uint32_t end)
{
    constexpr int kBins = 16;
    Node node{{kFar, kFar, kFar}, begin, {-kFar, -kFar, -kFar}, end - begin};
    Vec3 centerLow = node.low;
    Vec3 centerHigh = node.high;
    for (std::uint32_t i = begin; i < end; ++i) {
        const std::uint32_t s = m_order[i];
        node.low = minimum(node.low, m_low[s]);
        node.high = maximum(node.high, m_high[s]);
        const Vec3 c = (m_low[s] + m_high[s]) * 0.5f;
        centerLow = minimum(centerLow, c);
        centerHigh = maximum(centerHigh, c);
    }
    const std::size_t own = m_nodes.size();
    m_nodes.push_back(node);
    if (node.count <= 2) return;

    float bestCost = halfArea(node.low, node.high) * static_cast<float>(node.count);
    int bestAxis = -1;
    int bestBin = 0;
    const auto binOf = [&](std::uint32_t s, int axis) {
        const float c = (m_low[s][axis] + m_high[s][axis]) * 0.5f;
        const float t = (c - centerLow[axis]) / (centerHigh[axis] - centerLow[axis]);
        return std::min(kBins - 1, static_cast<int>(t * kBins));
    };
    for (int axis = 0; axis < 3; ++axis) {
        if (centerHigh[axis] - centerLow[axis] < 1e-5f) continue;
        struct Bin
        {
            Vec3 low{kFar, kFar, kFar}, high{-kFar, -kFar, -kFar};
            float count = 0;
        };
        std::array<Bin, kBins> bins;
        for (std::uint32_t i = begin; i < end; ++i) {
            Bin& bin = bins[static_cast<std::size_t>(binOf(m_order[i], axis))];
            bin.low = minimum(bin.low, m_low[m_order[i]]);
            bin.high = maximum(bin.high, m_high[m_order[i]]);
            bin.count += 1;
        }
        std::array<float, kBins> rightCost{};
        Bin sum;
        for (int b = kBins - 1; b > 0; --b) {
            const Bin& bin = bins[static_cast<std::size_t>(b)];
            sum.low = minimum(sum.low, bin.low);
            sum.high = maximum(sum.high, bin.high);
            sum.count += bin.count;
            rightCost[static_cast<std::size_t>(b)] =
                sum.count > 0 ? halfArea(sum.low, sum.high) * sum.count : 0;
        }
        sum = {};
        for (int b = 0; b + 1 < kBins; ++b) {
            const Bin& bin = bins[static_cast<std::size_t>(b)];
            sum.low = minimum(sum.low, bin.low);
            sum.high = maximum(sum.high, bin.high);
            sum.count += bin.count;
            if (sum.count == 0 || rightCost[static_cast<std::size_t>(b + 1)] == 0) continue;
            const float cost =
                halfArea(sum.low, sum.high) * sum.count + rightCost[static_cast<std::size_t>(b + 1)];
            if (cost < bestCost) {
                bestCost = cost;
                bestAxis = axis;
                bestBin = b;
            }
        }
    }
    if (bestAxis < 0) return;
    const auto middle = std::stable_partition(m_order.begin() + begin, m_order.begin() + end,
                                              [&](std::uint32_t s) { return binOf(s, bestAxis) <= bestBin; });
    const auto cut = static_cast<std::uint32_t>(middle - m_order.begin());
    if (cut == begin || cut == end) return;
    m_nodes[own].count = 0;
    split(begin, cut);
    m_nodes[own].first = static_cast<std::uint32_t>(m_nodes.size());
    split(cut, end);
}

ShapeHit Bvh::nearestHit(Vec3 origin, Vec3 direction, float nearest, float farthest, bool seesGlass) const
{
    ShapeHit hit;
    hit.distance = farthest;
    if (m_nodes.empty()) return hit;
    const Ray ray{origin, safeInverse(direction)};
    struct Entry
    {
        std::uint32_t node;
        float enter;
    };
    std::array<Entry, 96> stack;
    std::size_t depth = 0;
    std::uint32_t current = 0;
    float enter = enters(m_nodes[0].low, m_nodes[0].high, ray, nearest, hit.distance);
    if (enter == kFar) return hit;
    for (;;) {
        const Node& node = m_nodes[current];
        if (node.count > 0) {
            for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
                if (!seesGlass && m_shapes[i].passage == Passage::Glass) continue;
                if (intersect(m_shapes[i], origin, direction, nearest, &hit.distance, &hit.face))
                    hit.shape = static_cast<int>(m_order[i]);
            }
        } else {
            std::uint32_t a = current + 1;
            std::uint32_t b = node.first;
            float enterA = enters(m_nodes[a].low, m_nodes[a].high, ray, nearest, hit.distance);
            float enterB = enters(m_nodes[b].low, m_nodes[b].high, ray, nearest, hit.distance);
            if (enterB < enterA) {
                std::swap(a, b);
                std::swap(enterA, enterB);
            }
            if (enterB != kFar && depth < stack.size()) stack[depth++] = {b, enterB};
            if (enterA != kFar) {
                current = a;
                continue;
            }
        }
        do {
            if (depth == 0) return hit;
            --depth;
        } while (stack[depth].enter >= hit.distance);
        current = stack[depth].node;
    }
}

bool Bvh::blocked(Vec3 origin, Vec3 direction, float nearest, float farthest, bool glassStops) const
{
    if (m_nodes.empty()) return false;
    const Ray ray{origin, safeInverse(direction)};
    std::array<std::uint32_t, 96> stack;
    std::size_t depth = 0;
    stack[depth++] = 0;
    while (depth > 0) {
        const std::uint32_t current = stack[--depth];
        const Node& node = m_nodes[current];
        if (enters(node.low, node.high, ray, nearest, farthest) == kFar) continue;
        if (node.count > 0) {
            for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
                if (m_shapes[i].passage == Passage::Glass && !glassStops) continue;
                float distance = farthest;
                int face = 0;
                if (intersect(m_shapes[i], origin, direction, nearest, &distance, &face)) return true;
            }
        } else if (depth + 2 <= stack.size()) {
            stack[depth++] = node.first;
            stack[depth++] = current + 1;
        }
    }
    return false;
}

bool Bvh::inside(Vec3 point) const
{
    std::array<std::uint32_t, 96> stack;
    std::size_t depth = 0;
    if (!m_nodes.empty()) stack[depth++] = 0;
    while (depth > 0) {
        const std::uint32_t current = stack[--depth];
        const Node& node = m_nodes[current];
        const bool within = point.x > node.low.x && point.y > node.low.y && point.z > node.low.z &&
                            point.x < node.high.x && point.y < node.high.y && point.z < node.high.z;
        if (!within) continue;
        if (node.count > 0) {
            for (std::uint32_t i = node.first; i < node.first + node.count; ++i)
                if (m_shapes[i].passage == Passage::Opaque && contains(m_shapes[i], point)) return true;
        } else if (depth + 2 <= stack.size()) {
            stack[depth++] = node.first;
            stack[depth++] = current + 1;
        }
    }
    return false;
}

} // namespace samplescene
