// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/PlanCut.h"

#include <cmath>

namespace samplescene {
namespace {

Outline ellipse(Vec2 center, float a, float b)
{
    const float step = 2 * std::acos(1 - std::min(1.0f, 0.001f / std::max(a, b)));
    const int around = std::max(8, static_cast<int>(std::ceil(6.2831853f / step)));
    Outline outline;
    for (int i = 0; i < around; ++i) {
        const float angle = 6.2831853f * static_cast<float>(i) / static_cast<float>(around);
        outline.push_back({center.x + a * std::cos(angle), center.y + b * std::sin(angle)});
    }
    return outline;
}

Vec3 cornerOf(const Shape& s, unsigned number)
{
    const Vec3 local{number & 1U ? s.half.x : -s.half.x, number & 2U ? s.half.y : -s.half.y,
                     number & 4U ? s.half.z : -s.half.z};
    return s.center + s.turnToWorld(local);
}

/// Where the twelve edges pass the plane, in order about their middle.
Outline boxCut(const Shape& s, float height)
{
    Outline outline;
    for (unsigned corner = 0; corner < 8; ++corner)
        for (unsigned axis = 1; axis < 8; axis *= 2) {
            if (corner & axis) continue;
            const Vec3 a = cornerOf(s, corner), b = cornerOf(s, corner | axis);
            if ((a.z < height) == (b.z < height)) continue;
            const float share = (height - a.z) / (b.z - a.z);
            outline.push_back({mix(a.x, b.x, share), mix(a.y, b.y, share)});
        }
    Vec2 middle;
    for (const Vec2 p : outline)
        middle = {middle.x + p.x / static_cast<float>(outline.size()),
                  middle.y + p.y / static_cast<float>(outline.size())};
    const auto angle = [&](Vec2 p) { return std::atan2(p.y - middle.y, p.x - middle.x); };
    std::sort(outline.begin(), outline.end(), [&](Vec2 a, Vec2 b) { return angle(a) < angle(b); });
    return outline;
}

} // namespace

Outline cutAt(const Shape& s, float height)
{
    if (s.kind == Shape::Box) return boxCut(s, height);
    const float up = height - s.center.z;
    if (std::fabs(up) >= s.half.z) return {};
    const Vec2 center{s.center.x, s.center.y};
    if (s.kind == Shape::Cylinder) return ellipse(center, s.half.x, s.half.y);
    const float share = std::sqrt(1 - up * up / (s.half.z * s.half.z));
    return ellipse(center, s.half.x * share, s.half.y * share);
}

PlanCut cutAt(const World& world, float height)
{
    PlanCut cut;
    for (std::size_t i = 0; i < world.shapes.size(); ++i) {
        const Part part = world.surfaces[i].part;
        // What is seen through windows is no part of a building's plan.
        if (!world.outdoors && !indoors(part)) continue;
        Outline outline = cutAt(world.shapes[i], height);
        if (outline.size() < 3) continue;
        const bool wall = part == Part::Wall || part == Part::Lintel || part == Part::House;
        const bool opening = part == Part::Door || part == Part::Window;
        (wall ? cut.walls : opening ? cut.openings : cut.furniture).push_back(std::move(outline));
    }
    return cut;
}

} // namespace samplescene
