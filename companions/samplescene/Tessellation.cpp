// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Tessellation.h"

#include <cmath>

namespace samplescene {
namespace {

constexpr float kPi = 3.14159265f;

/// Pieces of a circle's `arc` whose chords stay within `sag` of it.
int piecesOf(float arc, float radius, float sag)
{
    if (radius <= sag) return std::max(3, static_cast<int>(std::ceil(arc / (kPi / 2))));
    const float step = 2 * std::acos(1 - sag / radius);
    return std::max(arc > 6 ? 8 : 4, static_cast<int>(std::ceil(arc / step)));
}

class ShapeMesh
{
public:
    ShapeMesh(const World& world, std::size_t shape, Triangles& out)
        : m_world(world)
        , m_shape(world.shapes[shape])
        , m_surface(world.surfaces[shape])
        , m_out(out)
    {}

    void box()
    {
        const Vec3 h = m_shape.half;
        for (int face = 0; face < kFaces; ++face) {
            const int axis = face / 2;
            const float side = face % 2 ? 1.0f : -1.0f;
            const auto corner = [&](float u, float v) {
                Vec3 p;
                p[axis] = side * h[axis];
                p[(axis + 1) % 3] = side * u * h[(axis + 1) % 3];
                p[(axis + 2) % 3] = v * h[(axis + 2) % 3];
                return point(p);
            };
            const std::uint32_t a = corner(-1, -1), b = corner(1, -1), c = corner(1, 1), d = corner(-1, 1);
            triangle(a, b, c, face);
            triangle(a, c, d, face);
        }
    }

    void cylinder()
    {
        const Vec3 h = m_shape.half;
        const int around = piecesOf(2 * kPi, h.x, kSag);
        std::vector<std::uint32_t> low, high;
        for (int i = 0; i < around; ++i) {
            const float a = 2 * kPi * static_cast<float>(i) / static_cast<float>(around);
            low.push_back(point({h.x * std::cos(a), h.x * std::sin(a), -h.z}));
            high.push_back(point({h.x * std::cos(a), h.x * std::sin(a), h.z}));
        }
        const std::uint32_t foot = point({0, 0, -h.z}), top = point({0, 0, h.z});
        for (std::size_t i = 0; i < low.size(); ++i) {
            const std::size_t next = (i + 1) % low.size();
            triangle(low[i], low[next], high[next], 0);
            triangle(low[i], high[next], high[i], 0);
            triangle(foot, low[next], low[i], 4);
            triangle(top, high[i], high[next], 5);
        }
    }

    void ellipsoid()
    {
        const Vec3 h = m_shape.half;
        const float sag = m_shape.passage == Passage::Cutout ? kLeafSag : kSag;
        // A quad of the net sags in both directions: each gets half of it.
        const float radius = std::max({h.x, h.y, h.z});
        const int around = piecesOf(2 * kPi, radius, sag / 2);
        const int down = piecesOf(kPi, radius, sag / 2);
        std::vector<std::vector<std::uint32_t>> rings;
        for (int j = 1; j < down; ++j) {
            const float polar = kPi * static_cast<float>(j) / static_cast<float>(down);
            rings.emplace_back();
            for (int i = 0; i < around; ++i) {
                const float a = 2 * kPi * static_cast<float>(i) / static_cast<float>(around);
                rings.back().push_back(point({h.x * std::sin(polar) * std::cos(a),
                                              h.y * std::sin(polar) * std::sin(a), h.z * std::cos(polar)}));
            }
        }
        const std::uint32_t top = point({0, 0, h.z}), foot = point({0, 0, -h.z});
        for (std::size_t i = 0; i < rings.front().size(); ++i) {
            const std::size_t next = (i + 1) % rings.front().size();
            triangle(top, rings.front()[i], rings.front()[next], 0);
            triangle(foot, rings.back()[next], rings.back()[i], 0);
            for (std::size_t j = 0; j + 1 < rings.size(); ++j) {
                triangle(rings[j][i], rings[j + 1][i], rings[j + 1][next], 0);
                triangle(rings[j][i], rings[j + 1][next], rings[j][next], 0);
            }
        }
    }

private:
    static constexpr float kSag = 0.001f, kLeafSag = 0.005f; ///< metres

    std::uint32_t point(Vec3 local)
    {
        m_out.points.push_back(m_shape.center + m_shape.turnToWorld(local));
        return static_cast<std::uint32_t>(m_out.points.size() - 1);
    }

    void triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c, int face)
    {
        if (!touchesAir(m_out.points[a], m_out.points[b], m_out.points[c])) return;
        m_out.triangles.push_back({{a, b, c}, partOf(face)});
    }

    Part partOf(int face) const
    {
        const Look look = m_world.materials[m_surface.material[static_cast<std::size_t>(face)]].look;
        if (m_shape.passage == Passage::Glass) return Part::Glass;
        if (look == Look::Mirror) return Part::Mirror;
        return look == Look::Lamp ? Part::Lamp : m_surface.part;
    }

    bool touchesAir(Vec3 a, Vec3 b, Vec3 c) const
    {
        constexpr float kSpacing_m = 0.1f, kAbove_m = 0.002f;
        const Vec3 normal = cross(b - a, c - a);
        if (length(normal) <= 0) return false;
        const Vec3 above = normalized(normal) * kAbove_m;
        const float longest = std::max({length(b - a), length(c - b), length(a - c)});
        const int pieces = std::clamp(static_cast<int>(longest / kSpacing_m), 1, 400);
        const float step = 1.0f / static_cast<float>(pieces);
        for (int i = 0; i < pieces; ++i)
            for (int j = 0; i + j < pieces; ++j) {
                const float u = (static_cast<float>(i) + 1 / 3.0f) * step;
                const float v = (static_cast<float>(j) + 1 / 3.0f) * step;
                if (!m_world.bvh.inside(a + (b - a) * u + (c - a) * v + above)) return true;
            }
        return false;
    }

    const World& m_world;
    const Shape& m_shape;
    const Surface& m_surface;
    Triangles& m_out;
};

} // namespace

Triangles tessellate(const World& world)
{
    Triangles out;
    for (std::size_t i = 0; i < world.shapes.size(); ++i) {
        ShapeMesh mesh(world, i, out);
        switch (world.shapes[i].kind) {
        case Shape::Box:
            mesh.box();
            break;
        case Shape::Cylinder:
            mesh.cylinder();
            break;
        case Shape::Ellipsoid:
            mesh.ellipsoid();
            break;
        }
    }
    return out;
}

} // namespace samplescene
