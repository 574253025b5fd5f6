// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudFile.h"
#include "nexomap/src/merge/MortonKey.h"

#include <Eigen/Core>

#include <array>
#include <cstdint>
#include <vector>

namespace nexomap {

/// A coloured piece of surface in the world, as it is laid aside. 20 bytes.
struct Surfel
{
    float x, y, z;                            ///< world, metres
    std::int8_t normal_x, normal_y, normal_z; ///< toward the scanner, 127 = 1
    std::uint8_t weight;                      ///< how well its place is known, logarithmic
    std::uint8_t red, green, blue;
    std::uint8_t view; ///< how well its colour is seen, logarithmic

    Eigen::Vector3f point() const { return {x, y, z}; }
    Eigen::Vector3f normal() const { return Eigen::Vector3f(normal_x, normal_y, normal_z) / 127.f; }
};
static_assert(sizeof(Surfel) == 20, "laid aside as it stands");

/// Logarithmic weights: 0 to 255 for 2^-20 to 2^11.9.
std::uint8_t weightCode(float weight);
float weightOf(std::uint8_t code);

/// Keys of the cells [from, to) that a part of a cloud owns; others about them only help.
struct KeyRange
{
    std::uint64_t from = 0, to = ~std::uint64_t(0);
    bool has(std::uint64_t key) const { return key >= from && key < to; }
};

/// What the surfels of one cell say together.
struct SurfaceCell
{
    std::uint64_t key = 0;
    Eigen::Vector3f point, normal; ///< of length 1; mean over the weights
    float weight = 0.f;
    Eigen::Vector3f colour; ///< red, green, blue; mean over the views
    float view = 0.f;
};

/// One cell each for the surfels that share it, in the order of their keys. Those outside the grid are lost.
std::vector<SurfaceCell> cellsOf(const std::vector<Surfel>& surfels, const CloudGrid& grid);

/// The keys of the cells in which points lie.
class GridKeys
{
public:
    explicit GridKeys(const CloudGrid& grid);
    /// @return false outside the grid
    bool keyAt(const Eigen::Vector3f& world, std::uint64_t* key) const
    {
        const double x = (double(world.x()) + m_origin[0]) * m_scale[0],
                     y = (double(world.y()) + m_origin[1]) * m_scale[1],
                     z = (double(world.z()) + m_origin[2]) * m_scale[2];
        if (!(x >= 0.0 && y >= 0.0 && z >= 0.0 && x < m_most[0] && y < m_most[1] && z < m_most[2]))
            return false;
        *key = mortonKey(std::uint16_t(x), std::uint16_t(y), std::uint16_t(z));
        return true;
    }

private:
    std::array<double, 3> m_origin, m_scale, m_most;
};

/// The cell of a world point; false outside the grid.
bool cellAt(const CloudGrid& grid, const Eigen::Vector3d& world, std::array<std::uint16_t, 3>* cell);

/// The owned cells as points of a cloud file.
std::vector<CloudPoint> pointsOf(const std::vector<SurfaceCell>& cells, const KeyRange& owned);

} // namespace nexomap
