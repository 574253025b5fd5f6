// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/LightMap.h"

#include "companions/samplescene/Parallel.h"
#include "companions/samplescene/Random.h"
#include "companions/samplescene/World.h"

#include <array>

namespace samplescene {
namespace {

constexpr float kLift = 0.003f; ///< metres off the surface, so that a node does not meet its own face
constexpr std::size_t kRays = 48;
constexpr std::uint32_t kNothing = 0xffffffffU;
constexpr float kPi = 3.14159265f;

/// Cosine-weighted directions about +z, spread evenly (golden angle spiral on the disc). The same set
/// everywhere: the error is smooth over a wall where random sets would leave stains.
const std::array<Vec3, kRays>& hemisphere()
{
    static const std::array<Vec3, kRays> set = [] {
        std::array<Vec3, kRays> s;
        for (std::size_t i = 0; i < kRays; ++i) {
            const float r2 = (static_cast<float>(i) + 0.5f) / static_cast<float>(kRays);
            const float angle = 2.39996323f * static_cast<float>(i);
            const float r = std::sqrt(r2);
            s[i] = {r * std::cos(angle), r * std::sin(angle), std::sqrt(1 - r2)};
        }
        return s;
    }();
    return set;
}

void frameAbout(Vec3 n, Vec3* u, Vec3* v)
{
    *u = normalized(std::fabs(n.z) < 0.9f ? cross({0, 0, 1}, n) : cross({1, 0, 0}, n));
    *v = cross(n, *u);
}

Vec3 fromLamps(const World& world, Vec3 point, Vec3 normal)
{
    Vec3 sum;
    for (const Lamp& lamp : world.lamps) {
        const Vec3 to = lamp.position - point;
        const float d2 = dot(to, to);
        if (d2 > 144 || dot(to, normal) <= 0) continue;
        int free = 0;
        for (int i = 0; i < 4; ++i) {
            const float angle = 1.5708f * static_cast<float>(i) + 0.4f;
            const Vec3 shift{lamp.radius * std::cos(angle), lamp.radius * std::sin(angle), 0};
            const Vec3 ray = to + shift;
            if (!world.bvh.blocked(point, ray, 1e-4f, 0.98f)) ++free;
        }
        const float d = std::sqrt(d2);
        sum += lamp.power * (static_cast<float>(free) * 0.25f * dot(to, normal) / (d * (d2 + 0.1f)));
    }
    return sum;
}

Vec3 fromWindows(const World& world, Vec3 point, Vec3 normal)
{
    Vec3 sum;
    for (const Portal& portal : world.portals) {
        const Vec3 middle = portal.center - point;
        if (dot(middle, middle) > 120 || dot(middle, portal.inward) >= 0) continue;
        const float area = 4 * length(portal.sideways) * length(portal.upward) / 6;
        for (int i = 0; i < 6; ++i) {
            const float a = (static_cast<float>(i % 2) - 0.5f);
            const float b = (static_cast<float>(i / 2) - 1) * 0.667f;
            const Vec3 to = middle + portal.sideways * a + portal.upward * b;
            const float out = dot(to, normal);
            if (out <= 0) continue;
            const float d2 = dot(to, to) + 0.02f;
            if (world.bvh.blocked(point, to, 1e-4f, 0.98f)) continue;
            const Vec3 sky = mix(world.sky.horizon, world.sky.zenith, 0.3f) * 1.6f;
            sum += sky * (area * out * -dot(to, portal.inward) / (d2 * d2 * kPi));
        }
    }
    return sum;
}

} // namespace

void LightMap::layOut(const World& world, float least)
{
    // A lawn of a hectare must not take the nodes away from the rooms.
    const auto faceArea = [](const Shape& s, int axis) {
        return 4 * s.half[(axis + 1) % 3] * s.half[(axis + 2) % 3];
    };
    double area = 0;
    for (const Shape& s : world.shapes)
        for (int axis = 0; axis < 3; ++axis)
            area += 2.0 * static_cast<double>(std::min(faceArea(s, axis), 100.0f));
    m_spacing = std::max(least, static_cast<float>(std::sqrt(area / 400000.0)));
    m_grids.assign(world.shapes.size() * kFaces, {});
    m_places.clear();
    for (std::size_t i = 0; i < world.shapes.size(); ++i) {
        const Shape& s = world.shapes[i];
        for (int face = 0; face < kFaces; ++face) {
            Grid& grid = m_grids[i * kFaces + static_cast<std::size_t>(face)];
            const int axis = face / 2;
            const int u = axis == 0 ? 1 : 0;
            const int v = axis == 2 ? 1 : 2;
            const bool box = s.kind == Shape::Box;
            const float spacing = std::max(m_spacing, std::sqrt(faceArea(s, axis) / 30000));
            const auto nodes = [&](float half) {
                return static_cast<std::uint16_t>(
                    std::clamp(static_cast<int>(std::ceil(2 * half / spacing)) + 1, 2, 4000));
            };
            grid.first = static_cast<std::uint32_t>(m_places.size());
            grid.columns = box ? nodes(s.half[u]) : std::uint16_t{1};
            grid.rows = box                                     ? nodes(s.half[v])
                        : s.kind == Shape::Cylinder && face < 4 ? nodes(s.half.z)
                                                                : std::uint16_t{1};
            Vec3 n;
            n[axis] = face % 2 ? 1.0f : -1.0f;
            const Material& m = world.materials[world.surfaces[i].material[static_cast<std::size_t>(
                box || (s.kind == Shape::Cylinder && face >= 4) ? face : 0)]];
            for (int row = 0; row < grid.rows; ++row) {
                for (int column = 0; column < grid.columns; ++column) {
                    // The outer nodes stand a little inside the edge: on it they would see both rooms.
                    const auto place = [](int k, int count, float half) {
                        const float inset = std::min(0.012f, half * 0.3f);
                        return count < 2
                                   ? 0.0f
                                   : (half - inset) *
                                         (2 * static_cast<float>(k) / static_cast<float>(count - 1) - 1);
                    };
                    Vec3 p;
                    p[axis] = n[axis] * (s.half[axis] + kLift);
                    if (box) p[u] = place(column, grid.columns, s.half[u]);
                    if (box || (s.kind == Shape::Cylinder && axis != 2))
                        p[v] = place(row, grid.rows, s.half[v]);
                    Place node;
                    node.point = s.center + s.turnToWorld(p);
                    node.normal = s.turnToWorld(n);
                    node.albedo = world.meanColor(m);
                    m_places.push_back(node);
                }
            }
        }
    }
}

std::uint32_t LightMap::nodeNear(const World& world, const Hit& hit) const
{
    const Shape& s = world.shapes[static_cast<std::size_t>(hit.shape)];
    int face = hit.face;
    if (s.kind != Shape::Box && face < 4) {
        const Vec3 n = s.turnToLocal(hit.normal);
        const int axis = std::fabs(n.x) > std::fabs(n.y) ? (std::fabs(n.x) > std::fabs(n.z) ? 0 : 2)
                                                         : (std::fabs(n.y) > std::fabs(n.z) ? 1 : 2);
        face = 2 * axis + (n[axis] > 0 ? 1 : 0);
    }
    const Grid& grid = m_grids[static_cast<std::size_t>(hit.shape) * kFaces + static_cast<std::size_t>(face)];
    const int axis = face / 2;
    const auto index = [](float v, float half, int count) {
        return static_cast<std::uint32_t>(std::clamp(
            static_cast<int>((v / half + 1) * 0.5f * static_cast<float>(count - 1) + 0.5f), 0, count - 1));
    };
    const int u = axis == 0 ? 1 : 0;
    const int v = axis == 2 ? 1 : 2;
    return grid.first + index(hit.local[v], s.half[v], grid.rows) * grid.columns +
           index(hit.local[u], s.half[u], grid.columns);
}

void LightMap::gather(const World& world, std::size_t node, std::uint32_t* seen)
{
    Place& place = m_places[node];
    place.open = !world.bvh.inside(place.point);
    m_sun[node] = -1;
    std::fill(seen, seen + kRays, kNothing);
    if (!place.open) return;
    Vec3 light = fromLamps(world, place.point, place.normal);
    if (!world.outdoors) light += fromWindows(world, place.point, place.normal);
    const float facing = dot(world.sky.toSun, place.normal);
    m_sun[node] = facing > 0 && !world.bvh.blocked(place.point, world.sky.toSun, 1e-4f, 300) ? 1.0f : 0.0f;
    Vec3 u, v;
    frameAbout(place.normal, &u, &v);
    for (std::size_t i = 0; i < kRays; ++i) {
        const Vec3 h = hemisphere()[i];
        const Vec3 direction = u * h.x + v * h.y + place.normal * h.z;
        const Hit hit = world.trace(place.point, direction, 1e-4f, 200, false);
        if (hit.shape >= 0)
            seen[i] = nodeNear(world, hit);
        else if (world.outdoors)
            light += world.sky.color(direction) * (1.0f / static_cast<float>(kRays));
    }
    m_direct[node] = light;
}

void LightMap::bake(const World& world, float spacing, int threads)
{
    layOut(world, spacing);
    const std::size_t count = m_places.size();
    m_direct.assign(count, {});
    m_sun.assign(count, 0);
    std::vector<std::uint32_t> seen(count * kRays);
    parallelFor(count, 512, threads, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            gather(world, i, &seen[i * kRays]);
    });
    m_light = m_direct;
    std::vector<Vec3> leaving(count);
    for (int round = 0; round < 4; ++round) {
        for (std::size_t i = 0; i < count; ++i) {
            // Indoors a sunny spot is so small and bright that few rays find it, and those leave stains.
            const float sun = (world.outdoors ? 1.0f : 0.2f) * std::max(0.0f, m_sun[i]) *
                              std::max(0.0f, dot(world.sky.toSun, m_places[i].normal));
            leaving[i] = m_places[i].albedo * (m_light[i] + world.sky.sun * sun);
        }
        parallelFor(count, 4096, threads, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                Vec3 sum;
                for (std::size_t k = 0; k < kRays; ++k)
                    if (seen[i * kRays + k] != kNothing) sum += leaving[seen[i * kRays + k]];
                m_light[i] = m_direct[i] + sum * (1.0f / static_cast<float>(kRays));
            }
        });
    }
    smooth();
    fillBuried();
    lendToBuriedFaces();
    m_places = {};
    m_direct = {};
}

/// Evens out what came by way of other surfaces: it changes slowly, the rays that sampled it do not.
void LightMap::smooth()
{
    std::vector<Vec3> indirect(m_light.size());
    for (int pass = 0; pass < 3; ++pass) {
        for (std::size_t i = 0; i < m_light.size(); ++i)
            indirect[i] = m_light[i] - m_direct[i];
        for (const Grid& grid : m_grids) {
            for (int y = 0; y < grid.rows; ++y) {
                for (int x = 0; x < grid.columns; ++x) {
                    const auto at = [&](int dx, int dy) {
                        return grid.first + static_cast<std::size_t>((y + dy) * grid.columns + x + dx);
                    };
                    if (m_sun[at(0, 0)] < 0) continue;
                    Vec3 sum;
                    float count = 0;
                    for (int dy = y > 0 ? -1 : 0; dy <= (y + 1 < grid.rows ? 1 : 0); ++dy) {
                        for (int dx = x > 0 ? -1 : 0; dx <= (x + 1 < grid.columns ? 1 : 0); ++dx) {
                            if (m_sun[at(dx, dy)] < 0) continue;
                            sum += indirect[at(dx, dy)];
                            count += 1;
                        }
                    }
                    m_light[at(0, 0)] = m_direct[at(0, 0)] + sum * (1 / count);
                }
            }
        }
    }
}

/// Buried nodes take over from their neighbours: between a poster and a door frame there may be wall to see
/// but no node in the open.
void LightMap::fillBuried()
{
    for (const Grid& grid : m_grids) {
        const int columns = grid.columns;
        const int rows = grid.rows;
        std::vector<std::size_t> buried;
        for (int i = 0; i < columns * rows; ++i)
            if (m_sun[grid.first + static_cast<std::size_t>(i)] < 0)
                buried.push_back(static_cast<std::size_t>(i));
        while (!buried.empty()) {
            struct Found
            {
                std::size_t node;
                Vec3 light;
                float sun;
            };
            std::vector<Found> found;
            std::vector<std::size_t> rest;
            for (const std::size_t i : buried) {
                const int x = static_cast<int>(i) % columns;
                const int y = static_cast<int>(i) / columns;
                Found sum{i, {}, 0};
                float count = 0;
                for (int dy = -1; dy <= 1; ++dy) {
                    for (int dx = -1; dx <= 1; ++dx) {
                        if (x + dx < 0 || x + dx >= columns || y + dy < 0 || y + dy >= rows) continue;
                        const std::size_t other =
                            grid.first + static_cast<std::size_t>((y + dy) * columns + x + dx);
                        if (m_sun[other] < 0) continue;
                        sum.light += m_light[other];
                        sum.sun += m_sun[other];
                        count += 1;
                    }
                }
                if (count == 0) {
                    rest.push_back(i);
                    continue;
                }
                sum.light *= 1 / count;
                sum.sun /= count;
                found.push_back(sum);
            }
            if (found.empty()) break;
            for (const Found& f : found) {
                m_light[grid.first + f.node] = f.light;
                m_sun[grid.first + f.node] = f.sun;
            }
            buried.swap(rest);
        }
    }
}

/// A small face may show itself between nodes that are all buried: it gets the mean of its shape.
void LightMap::lendToBuriedFaces()
{
    for (std::size_t shape = 0; shape + kFaces <= m_grids.size(); shape += kFaces) {
        Vec3 sum;
        float count = 0;
        const std::size_t first = m_grids[shape].first;
        const std::size_t end =
            shape + kFaces < m_grids.size() ? m_grids[shape + kFaces].first : m_light.size();
        for (std::size_t i = first; i < end; ++i) {
            if (m_sun[i] < 0) continue;
            sum += m_light[i];
            count += 1;
        }
        const Vec3 mean = count > 0 ? sum * (0.6f / count) : Vec3{0.1f, 0.1f, 0.1f};
        for (std::size_t i = first; i < end; ++i) {
            if (m_sun[i] >= 0) continue;
            m_light[i] = mean;
            m_sun[i] = 0;
        }
    }
}

Irradiance LightMap::at(const World& world, const Hit& hit) const
{
    const Shape& s = world.shapes[static_cast<std::size_t>(hit.shape)];
    Irradiance result;
    float weights = 0;
    float low = 1;
    float high = 0;
    const auto add = [&](std::uint32_t node, float weight) {
        if (weight <= 0 || m_sun[node] < 0) return;
        result.soft += m_light[node] * weight;
        result.sunShare += m_sun[node] * weight;
        weights += weight;
        low = std::min(low, m_sun[node]);
        high = std::max(high, m_sun[node]);
    };
    const auto interpolate = [&](int face, float share) {
        const Grid& grid =
            m_grids[static_cast<std::size_t>(hit.shape) * kFaces + static_cast<std::size_t>(face)];
        const int axis = face / 2;
        const int u = axis == 0 ? 1 : 0;
        const int v = axis == 2 ? 1 : 2;
        const auto coordinate = [](float value, float half, int count) {
            return std::clamp((value / half + 1) * 0.5f, 0.0f, 0.99999f) * static_cast<float>(count - 1);
        };
        const float x = coordinate(hit.local[u], s.half[u], grid.columns);
        const float y = coordinate(hit.local[v], s.half[v], grid.rows);
        const auto x0 = static_cast<std::uint32_t>(x);
        const auto y0 = static_cast<std::uint32_t>(y);
        const float tx = x - static_cast<float>(x0);
        const float ty = y - static_cast<float>(y0);
        const std::uint32_t node = grid.first + y0 * grid.columns + x0;
        add(node, share * (1 - tx) * (1 - ty));
        if (tx > 0) add(node + 1, share * tx * (1 - ty));
        if (ty > 0) add(node + grid.columns, share * (1 - tx) * ty);
        if (tx > 0 && ty > 0) add(node + grid.columns + 1, share * tx * ty);
    };
    if (s.kind == Shape::Box || (s.kind == Shape::Cylinder && hit.face >= 4)) {
        interpolate(hit.face, 1);
    } else { // Ambient cube (Valve 2006): squared components of the normal weight the six directions
        const Vec3 n = s.turnToLocal(hit.normal);
        for (int axis = 0; axis < 3; ++axis)
            interpolate(2 * axis + (n[axis] > 0 ? 1 : 0), n[axis] * n[axis]);
    }
    if (weights > 0) {
        result.soft *= 1 / weights;
        result.sunShare /= weights;
        result.sunEdge = low != high;
    }
    return result;
}

} // namespace samplescene
