// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The true surfaces of a made-up building, as its surfaces.ply has them.

#pragma once

#include <Eigen/Core>
#include <QString>

#include <array>
#include <cstdint>
#include <vector>

/// What a triangle belongs to; the numbers are those of the file.
enum class TruePart : std::uint8_t
{
    Furniture = 0,
    Floor,
    Ceiling,
    Wall,
    Lintel,
    Door,
    Window,
    Lamp,
    Glass,
    Mirror,
    Ground, ///< from here on: outdoors
    House,
    Plant,
    Outdoor
};
constexpr int kTrueParts = 14;
const char* nameOf(TruePart part);

struct TrueSurfaces
{
    struct Triangle
    {
        std::array<std::uint32_t, 3> corner{}; ///< indices of `points`
        TruePart part = TruePart::Furniture;
    };
    std::vector<Eigen::Vector3f> points; ///< true world, metres
    std::vector<Triangle> triangles;
    QString error; ///< empty when the file was read whole

    const Eigen::Vector3f& at(std::size_t triangle, std::size_t corner) const
    {
        return points[triangles[triangle].corner[corner]];
    }
    Eigen::Vector3f areaNormal(std::size_t triangle) const; ///< as long as the area, out of the solid
};

TrueSurfaces readTrueSurfaces(const QString& path);
