// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Builder.h"

namespace samplescene {

Vec3 Frame::toWorld(Vec3 p) const
{
    const float c = std::cos(yaw);
    const float s = std::sin(yaw);
    return {origin.x + c * p.x - s * p.y, origin.y + s * p.x + c * p.y, origin.z + p.z};
}

Builder::Builder(World& world, std::uint32_t seed, float contrast)
    : random(seed)
    , m_world(world)
    , m_contrast(contrast)
    , m_seed(seed)
{}

void Builder::reseed(std::uint32_t seed)
{
    random = Random(seed);
    m_seed = seed;
    m_looseCount = 0;
}

int Builder::material(Material m)
{
    if (m.seed == 0) m.seed = random.bits() | 1U;
    m.contrast *= m_contrast;
    m_world.materials.push_back(m);
    return static_cast<int>(m_world.materials.size()) - 1;
}

int Builder::paint(Vec3 color, float contrast)
{
    Material m;
    m.color = color;
    m.contrast = contrast;
    return material(m);
}

int Builder::wood(Vec3 color)
{
    Material m;
    m.look = Look::Grain;
    m.color = color;
    m.second = color * 0.6f;
    return material(m);
}

int Builder::fabric(Vec3 color)
{
    Material m;
    m.look = Look::Fabric;
    m.color = color;
    m.second = color * random.uniform(0.4f, 1.6f);
    m.size = random.chance(0.3f) ? random.uniform(0.03f, 0.12f) : 0.0f;
    return material(m);
}

int Builder::metal(Vec3 color)
{
    Material m;
    m.look = Look::Metal;
    m.color = color;
    return material(m);
}

int Builder::print(Print kind, int width, int height)
{
    Material m;
    m.look = Look::Printed;
    m.picture = static_cast<int>(m_world.pictures.size());
    m_world.pictures.push_back(paintPrint(kind, width, height, random.bits()));
    return material(m);
}

int Builder::spine()
{
    constexpr int kStock = 120;
    for (std::uint32_t i = static_cast<std::uint32_t>(m_spines.size()); i < kStock; ++i) {
        Material m;
        m.look = Look::Printed;
        m.picture = static_cast<int>(m_world.pictures.size());
        m.seed = i + 1;
        m_world.pictures.push_back(
            paintPrint(i % 2 ? Print::Text : Print::Poster, 24, 160, hash(i, 0xb00c5U)));
        m_spines.push_back(material(m));
    }
    return m_spines[static_cast<std::size_t>(random.below(kStock))];
}

Vec3 Builder::anyColor(float low, float high)
{
    const float x = random.uniform(low, high);
    const float y = random.uniform(low, high);
    return {x, y, random.uniform(low, high)};
}

std::size_t Builder::add(Shape shape, int material)
{
    Surface surface;
    surface.material.fill(static_cast<std::uint32_t>(material));
    surface.part = part;
    const std::uint32_t own = hash(m_seed, random.bits());
    surface.textureOffset = {unit(own) * 40, unit(hash(own, 1)) * 40, unit(hash(own, 2)) * 40};
    m_world.shapes.push_back(shape);
    m_world.surfaces.push_back(surface);
    return m_world.shapes.size() - 1;
}

std::size_t Builder::box(const Frame& frame, Vec3 center, Vec3 size, int material, float turn, float tilt)
{
    Shape s;
    s.center = frame.toWorld(center);
    s.half = size * 0.5f;
    const float yaw = frame.yaw + turn;
    const float c = std::cos(yaw);
    const float n = std::sin(yaw);
    s.aligned = tilt == 0 && std::fabs(n) < 1e-6f && c > 0;
    const float ct = std::cos(tilt);
    const float st = std::sin(tilt);
    s.axis = {Vec3{c, n, 0}, Vec3{-n * ct, c * ct, st}, Vec3{n * st, -c * st, ct}};
    return add(s, material);
}

std::size_t Builder::standing(const Frame& frame, Vec3 foot, Vec3 size, int material, float turn)
{
    return box(frame, {foot.x, foot.y, foot.z + size.z / 2}, size, material, turn);
}

std::size_t Builder::cylinder(const Frame& frame, Vec3 foot, float radius, float height, int material)
{
    Shape s;
    s.kind = Shape::Cylinder;
    s.center = frame.toWorld({foot.x, foot.y, foot.z + height / 2});
    s.half = {radius, radius, height / 2};
    return add(s, material);
}

std::size_t Builder::ellipsoid(const Frame& frame, Vec3 center, Vec3 half, int material)
{
    Shape s;
    s.kind = Shape::Ellipsoid;
    s.center = frame.toWorld(center);
    s.half = half;
    return add(s, material);
}

void Builder::face(std::size_t shape, int face, int material)
{
    m_world.surfaces[shape].material[static_cast<std::size_t>(face)] = static_cast<std::uint32_t>(material);
}

void Builder::joinTexture(std::size_t shape, Vec3 origin, float yaw)
{
    const Vec3 d = m_world.shapes[shape].center - origin;
    const float c = std::cos(yaw);
    const float s = std::sin(yaw);
    m_world.surfaces[shape].textureOffset = {c * d.x + s * d.y, c * d.y - s * d.x, d.z};
}

void Builder::lamp(Vec3 position, Vec3 power, float radius)
{
    m_world.lamps.push_back({position, power, radius});
}

Frame Builder::loose(const Frame& frame, float reach)
{
    // A stream of its own, so that the first state's furniture does not depend on what will be moved.
    Random own(hash(m_seed, 0x10053U, ++m_looseCount));
    if (!second || !own.chance(movedShare)) return frame;
    const float angle = own.uniform(0, 6.2832f);
    const float way = reach * own.uniform(0.4f, 1.0f);
    return frame.at({way * std::cos(angle), way * std::sin(angle), 0}, own.uniform(-1.2f, 1.2f));
}

} // namespace samplescene
