// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudFile.h"

#include <cstdint>
#include <vector>

namespace nexomap {

/// A coloured sample of a surface in grid cells.
struct VoxelSample
{
    std::uint64_t key; ///< Morton code of the cell
    float weight;
    std::uint8_t red, green, blue;
};

/// One point per cell, colours averaged by weight. Kept in Morton order, which keeps neighbours together in
/// files; grows with the surface, not with the number of panoramas. Cells are numbered by 64-bit keys of
/// three 16-bit coordinates.
class VoxelCloud
{
public:
    /// Takes in one panorama's samples; reorders them.
    void add(std::vector<VoxelSample>& samples);
    std::size_t size() const { return m_voxels.size(); }
    /// In Morton order.
    std::vector<CloudPoint> points() const;

private:
    struct Voxel
    {
        std::uint64_t key;
        float weight, red, green, blue;
    };
    std::vector<Voxel> m_voxels;
};

std::uint64_t mortonKey(std::uint16_t x, std::uint16_t y, std::uint16_t z);
std::array<std::uint16_t, 3> cellOfMorton(std::uint64_t key);

} // namespace nexomap
