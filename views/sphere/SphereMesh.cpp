// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/SphereMesh.h"

#include "views/sphere/SphereCamera.h"

#include <algorithm>
#include <cmath>

namespace sphere {

namespace {

constexpr double kRadius = 100.0;
// A quarter of a pixel of an 8192 x 4096 panorama.
constexpr double kOffset = kPi / 16384.0;
// The first and the last column overlap by this much on each side, so that no background shows at the seam.
constexpr double kSeamOverlap = 0.000001;

MeshVertex vertexAt(int ring, int column)
{
    const double polar = std::min(ring * kPi / 64.0 - kOffset, kPi - kOffset);
    double azimuth = std::min(column * kPi / 64.0 - kPi - kOffset, kPi - kOffset);
    const double v = (polar + kOffset) / kPi;
    const double u = 1.0 - (azimuth + kPi + kOffset) / (2.0 * kPi);
    if (column == 0) azimuth -= kSeamOverlap;
    if (column == kMeshColumns - 1) azimuth += kSeamOverlap;
    const auto f = [](double value) { return static_cast<float>(value); };
    return {f(kRadius * std::cos(azimuth) * std::sin(polar)),
            f(kRadius * std::sin(azimuth) * std::sin(polar)), f(kRadius * std::cos(polar)), f(u), f(v)};
}

} // namespace

std::vector<MeshVertex> meshVertices()
{
    std::vector<MeshVertex> vertices;
    vertices.reserve(kMeshRings * kMeshColumns);
    for (int ring = 0; ring < kMeshRings; ++ring) {
        for (int column = 0; column < kMeshColumns; ++column)
            vertices.push_back(vertexAt(ring, column));
    }
    return vertices;
}

std::vector<std::uint16_t> meshIndices()
{
    std::vector<std::uint16_t> indices;
    indices.reserve((kMeshRings - 1) * (kMeshColumns - 1) * 6);
    for (int ring = 0; ring < kMeshRings - 1; ++ring) {
        for (int column = 0; column < kMeshColumns - 1; ++column) {
            const int base = kMeshColumns * ring + column;
            const int below = base + kMeshColumns;
            for (const int index : {base, below, base + 1, base + 1, below, below + 1})
                indices.push_back(static_cast<std::uint16_t>(index));
        }
    }
    return indices;
}

} // namespace sphere
