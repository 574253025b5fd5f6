// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Shape.h"

#include "companions/samplescene/Random.h"

namespace samplescene {
namespace {

bool intersectBox(const Shape& s, Vec3 o, Vec3 d, float nearest, float* distance, int* face)
{
    float enter = nearest;
    float leave = *distance;
    int entered = -1;
    for (int i = 0; i < 3; ++i) {
        const float inverse = 1.0f / d[i];
        const float toLow = (-s.half[i] - o[i]) * inverse;
        const float toHigh = (s.half[i] - o[i]) * inverse;
        const float first = std::min(toLow, toHigh);
        const float last = std::max(toLow, toHigh);
        if (first > enter) {
            enter = first;
            entered = 2 * i + (inverse < 0 ? 1 : 0);
        }
        leave = std::min(leave, last);
    }
    if (entered < 0 || enter > leave || enter >= *distance) return false;
    *distance = enter;
    *face = entered;
    return true;
}

bool intersectCylinder(const Shape& s, Vec3 o, Vec3 d, float nearest, float* distance, int* face)
{
    const float r = s.half.x;
    const float a = d.x * d.x + d.y * d.y;
    const float b = o.x * d.x + o.y * d.y;
    const float c = o.x * o.x + o.y * o.y - r * r;
    bool hit = false;
    const float disc = b * b - a * c;
    if (a > 1e-12f && disc > 0) {
        const float t = (-b - std::sqrt(disc)) / a;
        if (t > nearest && t < *distance && std::fabs(o.z + t * d.z) <= s.half.z) {
            *distance = t;
            *face = 0;
            hit = true;
        }
    }
    if (d.z != 0) {
        const float t = ((d.z < 0 ? s.half.z : -s.half.z) - o.z) / d.z;
        const float x = o.x + t * d.x;
        const float y = o.y + t * d.y;
        if (t > nearest && t < *distance && x * x + y * y <= r * r) {
            *distance = t;
            *face = d.z < 0 ? 5 : 4;
            hit = true;
        }
    }
    return hit;
}

/// Foliage: the ellipsoid's skin has holes of leaf size, fixed to the shape.
bool hole(const Shape& s, Vec3 p)
{
    const auto cell = [](float v) {
        return static_cast<std::uint32_t>(static_cast<std::int32_t>(std::floor(v * 16)));
    };
    const auto own =
        static_cast<std::uint32_t>(static_cast<std::int32_t>(s.center.x * 977 + s.center.z * 331));
    return hash(cell(p.x) * 73U + own, cell(p.y), cell(p.z)) % 100 < 45;
}

bool intersectEllipsoid(const Shape& s, Vec3 o, Vec3 d, float nearest, float* distance, int* face)
{
    const Vec3 inverse{1 / s.half.x, 1 / s.half.y, 1 / s.half.z};
    const Vec3 p = o * inverse;
    const Vec3 q = d * inverse;
    const float a = dot(q, q);
    const float b = dot(p, q);
    const float disc = b * b - a * (dot(p, p) - 1);
    if (disc <= 0) return false;
    const float root = std::sqrt(disc);
    const float first = (-b - root) / a;
    const float second = (-b + root) / a;
    for (const float t : {first, second}) {
        if (t <= nearest || t >= *distance) continue;
        if (s.passage == Passage::Cutout) {
            if (hole(s, o + d * t)) continue;
        } else if (t == second) {
            continue;
        }
        *distance = t;
        *face = 0;
        return true;
    }
    return false;
}

} // namespace

Vec3 Shape::extent() const
{
    if (aligned) return half;
    Vec3 e;
    for (int i = 0; i < 3; ++i)
        e[i] =
            std::fabs(axis[0][i]) * half.x + std::fabs(axis[1][i]) * half.y + std::fabs(axis[2][i]) * half.z;
    return e;
}

bool intersect(const Shape& shape, Vec3 origin, Vec3 direction, float nearest, float* distance, int* face)
{
    const Vec3 o = shape.toLocal(origin);
    const Vec3 d = shape.turnToLocal(direction);
    switch (shape.kind) {
    case Shape::Box:
        return intersectBox(shape, o, d, nearest, distance, face);
    case Shape::Cylinder:
        return intersectCylinder(shape, o, d, nearest, distance, face);
    case Shape::Ellipsoid:
        return intersectEllipsoid(shape, o, d, nearest, distance, face);
    }
    return false;
}

bool contains(const Shape& shape, Vec3 point)
{
    const Vec3 p = shape.toLocal(point);
    const Vec3 q{p.x / shape.half.x, p.y / shape.half.y, p.z / shape.half.z};
    switch (shape.kind) {
    case Shape::Box:
        return std::fabs(q.x) < 1 && std::fabs(q.y) < 1 && std::fabs(q.z) < 1;
    case Shape::Cylinder:
        return q.x * q.x + q.y * q.y < 1 && std::fabs(q.z) < 1;
    case Shape::Ellipsoid:
        return dot(q, q) < 1;
    }
    return false;
}

Vec3 normalAt(const Shape& shape, int face, Vec3 local)
{
    if (shape.kind == Shape::Ellipsoid) {
        const Vec3 h = shape.half;
        return shape.turnToWorld(
            normalized({local.x / (h.x * h.x), local.y / (h.y * h.y), local.z / (h.z * h.z)}));
    }
    if (shape.kind == Shape::Cylinder && face == 0)
        return shape.turnToWorld(normalized({local.x, local.y, 0}));
    Vec3 n;
    n[face / 2] = face % 2 ? 1.0f : -1.0f;
    return shape.turnToWorld(n);
}

} // namespace samplescene
