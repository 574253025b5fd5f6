// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/VoxelCloud.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

/// Puts two zero bits between the bits of a 16-bit number.
std::uint64_t spread(std::uint64_t v)
{
    v = (v | v << 16) & 0x0000FF0000FF;
    v = (v | v << 8) & 0x00F00F00F00F;
    v = (v | v << 4) & 0x0C30C30C30C3;
    return (v | v << 2) & 0x249249249249;
}

std::uint16_t gather(std::uint64_t v)
{
    v &= 0x249249249249;
    v = (v | v >> 2) & 0x0C30C30C30C3;
    v = (v | v >> 4) & 0x00F00F00F00F;
    v = (v | v >> 8) & 0x0000FF0000FF;
    return std::uint16_t(v | v >> 16);
}

std::uint8_t byteOf(float value)
{
    return std::uint8_t(std::clamp(std::lround(value), 0l, 255l));
}

} // namespace

std::uint64_t mortonKey(std::uint16_t x, std::uint16_t y, std::uint16_t z)
{
    return spread(x) | spread(y) << 1 | spread(z) << 2;
}

std::array<std::uint16_t, 3> cellOfMorton(std::uint64_t key)
{
    return {gather(key), gather(key >> 1), gather(key >> 2)};
}

void VoxelCloud::add(std::vector<VoxelSample>& samples)
{
    std::stable_sort(samples.begin(), samples.end(),
                     [](const VoxelSample& a, const VoxelSample& b) { return a.key < b.key; });
    std::vector<Voxel> merged;
    merged.reserve(m_voxels.size() + samples.size() / 2);
    const auto take = [&](const Voxel& v) {
        if (merged.empty() || merged.back().key != v.key) {
            merged.push_back(v);
            return;
        }
        Voxel& to = merged.back();
        to.weight += v.weight;
        to.red += v.red;
        to.green += v.green;
        to.blue += v.blue;
    };
    std::size_t old = 0;
    for (const VoxelSample& s : samples) {
        while (old < m_voxels.size() && m_voxels[old].key <= s.key)
            take(m_voxels[old++]);
        take({s.key, s.weight, s.weight * s.red, s.weight * s.green, s.weight * s.blue});
    }
    while (old < m_voxels.size())
        take(m_voxels[old++]);
    m_voxels.swap(merged);
}

std::vector<CloudPoint> VoxelCloud::points() const
{
    std::vector<CloudPoint> points;
    points.reserve(m_voxels.size());
    for (const Voxel& v : m_voxels)
        points.push_back({cellOfMorton(v.key), byteOf(v.red / v.weight), byteOf(v.green / v.weight),
                          byteOf(v.blue / v.weight)});
    return points;
}

} // namespace nexomap
