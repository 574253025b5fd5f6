// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Furnisher.h"

#include <algorithm>

namespace samplescene {

Furnisher::Furnisher(Builder& builder, const RoomSpace& roomSpace)
    : b(builder)
    , space(roomSpace)
{
    for (int side = 0; side < 4; ++side) {
        for (const RoomSpace::Gap& gap : space.gaps[side]) {
            if (!gap.window) { // who comes in must be able to stand, and the leaf to swing
                m_floor.push_back(onSide(side, gap.from - 0.1f, gap.to + 0.1f, 1.05f));
                m_wall.push_back({side, gap.from - 0.15f, gap.to + 0.15f, 0, 2.3f});
            } else {
                m_wall.push_back({side, gap.from - 0.35f, gap.to + 0.35f, 0.6f, 2.5f});
            }
        }
    }
}

Furnisher::Area Furnisher::onSide(int side, float from, float to, float depth) const
{
    const float w = space.width;
    const float d = space.depth;
    switch (side) {
    case 0:
        return {from, 0, to, depth};
    case 1:
        return {w - depth, from, w, to};
    case 2:
        return {w - to, d - depth, w - from, d};
    default:
        return {0, d - to, depth, d - from};
    }
}

bool Furnisher::taken(const Area& a) const
{
    return std::any_of(m_floor.begin(), m_floor.end(), [&](const Area& o) {
        return a.x0 < o.x1 && a.x1 > o.x0 && a.y0 < o.y1 && a.y1 > o.y0;
    });
}

std::optional<Frame> Furnisher::alongWall(float width, float depth, float front, bool tall)
{
    for (int attempt = 0; attempt < 30; ++attempt) {
        const int side = b.random.below(4);
        const float length = space.sideLength(side);
        const float across = side % 2 ? space.width : space.depth;
        const float place = b.random.uniform();
        if (width > length || depth + front > across) continue;
        // Furniture likes corners.
        const float from = place < 0.3f   ? 0.02f
                           : place > 0.7f ? length - width - 0.02f
                                          : (length - width) * (place - 0.3f) / 0.4f;
        const float to = from + width;
        if (tall && std::any_of(m_wall.begin(), m_wall.end(),
                                [&](const Patch& p) { return p.side == side && from < p.to && to > p.from; }))
            continue;
        if (taken(onSide(side, from, to, depth + front))) continue;
        m_floor.push_back(onSide(side, from, to, depth + front * 0.5f));
        if (tall) m_wall.push_back({side, from - 0.05f, to + 0.05f, 0, 2.4f});
        return space.sideFrame(side).at({(from + to) / 2, 0.02f, 0});
    }
    return std::nullopt;
}

std::optional<Frame> Furnisher::onFloor(float width, float depth, float margin)
{
    for (int attempt = 0; attempt < 25; ++attempt) {
        const bool turned = b.random.chance(0.5f);
        const float w = turned ? depth : width;
        const float d = turned ? width : depth;
        const float fx = b.random.uniform();
        const float fy = b.random.uniform();
        if (w + 2 * margin > space.width || d + 2 * margin > space.depth) continue;
        const float x = margin + w / 2 + fx * (space.width - w - 2 * margin);
        const float y = margin + d / 2 + fy * (space.depth - d - 2 * margin);
        const float ring = margin * 0.7f;
        if (taken({x - w / 2 - ring, y - d / 2 - ring, x + w / 2 + ring, y + d / 2 + ring})) continue;
        m_floor.push_back({x - w / 2, y - d / 2, x + w / 2, y + d / 2});
        return space.frame.at({x, y, 0}, turned ? 1.57079633f : 0.0f);
    }
    return std::nullopt;
}

std::optional<Frame> Furnisher::onWall(float width, float height, float z)
{
    for (int attempt = 0; attempt < 20; ++attempt) {
        const int side = b.random.below(4);
        const float length = space.sideLength(side);
        const float share = b.random.uniform();
        if (width + 0.2f > length) continue;
        const float from = 0.1f + share * (length - width - 0.2f);
        const Patch own{side, from, from + width, z - height / 2, z + height / 2};
        if (std::any_of(m_wall.begin(), m_wall.end(), [&](const Patch& p) {
                return p.side == side && own.from < p.to && own.to > p.from && own.low < p.high &&
                       own.high > p.low;
            }))
            continue;
        m_wall.push_back({side, own.from - 0.08f, own.to + 0.08f, own.low - 0.08f, own.high + 0.08f});
        return space.sideFrame(side).at({(own.from + own.to) / 2, 0, z});
    }
    return std::nullopt;
}

std::vector<Furnisher::WindowPlace> Furnisher::windows() const
{
    std::vector<WindowPlace> places;
    for (int side = 0; side < 4; ++side)
        for (const RoomSpace::Gap& gap : space.gaps[side])
            if (gap.window)
                places.push_back(
                    {space.sideFrame(side).at({(gap.from + gap.to) / 2, 0, 0}), gap.to - gap.from});
    return places;
}

} // namespace samplescene
