// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cmath>

/// Small vectors of the ray caster. Single precision: a building of 100 m is resolved to 0.01 mm.
namespace samplescene {

struct Vec2
{
    float x = 0, y = 0;
};

struct Vec3
{
    float x = 0, y = 0, z = 0;
    float operator[](int axis) const { return axis == 0 ? x : axis == 1 ? y : z; }
    float& operator[](int axis) { return axis == 0 ? x : axis == 1 ? y : z; }
    Vec3& operator+=(Vec3 b)
    {
        x += b.x;
        y += b.y;
        z += b.z;
        return *this;
    }
    Vec3& operator*=(float s)
    {
        x *= s;
        y *= s;
        z *= s;
        return *this;
    }
};

inline Vec3 operator+(Vec3 a, Vec3 b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(Vec3 a, Vec3 b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator-(Vec3 a)
{
    return {-a.x, -a.y, -a.z};
}
inline Vec3 operator*(Vec3 a, float s)
{
    return {a.x * s, a.y * s, a.z * s};
}
inline Vec3 operator*(float s, Vec3 a)
{
    return a * s;
}
/// Component by component: a colour seen through a filter.
inline Vec3 operator*(Vec3 a, Vec3 b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline float dot(Vec3 a, Vec3 b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(Vec3 a, Vec3 b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(Vec3 a)
{
    return std::sqrt(dot(a, a));
}
inline Vec3 normalized(Vec3 a)
{
    return a * (1.0f / length(a));
}
inline Vec3 minimum(Vec3 a, Vec3 b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)};
}
inline Vec3 maximum(Vec3 a, Vec3 b)
{
    return {std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)};
}
inline Vec3 mix(Vec3 a, Vec3 b, float t)
{
    return a + (b - a) * t;
}
inline float mix(float a, float b, float t)
{
    return a + (b - a) * t;
}
inline float clamp01(float v)
{
    return v < 0 ? 0.0f : v > 1 ? 1.0f : v;
}
inline float smoothstep(float low, float high, float v)
{
    const float t = clamp01((v - low) / (high - low));
    return t * t * (3 - 2 * t);
}

} // namespace samplescene
