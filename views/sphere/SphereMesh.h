// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

/// The textured sphere that carries the panorama: 65 rings of 129 vertices, radius 100, seen from inside.
namespace sphere {

/// As it lies in the vertex buffer: 20 bytes.
struct MeshVertex
{
    float x, y, z;
    float u, v; ///< texture coordinates: u 0.5 at azimuth 0, falling with the azimuth; v 0 at the upper pole
};
static_assert(sizeof(MeshVertex) == 20, "the buffer's layout");

constexpr int kMeshRings = 65;
constexpr int kMeshColumns = 129;

/// 8385 vertices, ring by ring from the upper pole, each ring from azimuth -pi to +pi.
std::vector<MeshVertex> meshVertices();

/// 49152 indices: two triangles for each cell between the rings and columns.
std::vector<std::uint16_t> meshIndices();

} // namespace sphere
