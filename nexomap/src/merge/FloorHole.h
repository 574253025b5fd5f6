// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/SurfaceSampling.h"

#include <array>
#include <vector>

namespace nexomap {

/// The floor below a tripod, which the scanner cannot see: a plane through the rim of the hole, where the
/// floor on both sides of it agrees.
class FloorHole
{
public:
    struct Patch
    {
        Eigen::Vector3f point; ///< relative to the station, world directions
        Eigen::Vector3f colour;
    };

    explicit FloorHole(const Eigen::Vector3f& up)
        : m_up(up)
    {}
    /// Whether a sample can belong to the rim.
    /// @param point, normal  relative to the station, world directions
    bool isRim(const Eigen::Vector3f& point, const Eigen::Vector3f& normal) const;
    void add(const Patch& rim);
    /// The missing floor, one patch per cell; none where the rim does not agree.
    std::vector<Patch> fill(float cell_m) const;

private:
    static constexpr int kSectors = 72;
    struct Sector
    {
        std::vector<Patch> rim;
        float distance = 0.f, height = 0.f;
        Eigen::Vector3f colour = Eigen::Vector3f::Zero();
        bool agrees = false;
    };
    int sectorOf(const Eigen::Vector3f& point) const;
    std::array<Sector, kSectors> summed(Eigen::Vector3f* plane) const;

    Eigen::Vector3f m_up;
    std::array<std::vector<Patch>, kSectors> m_rim;
};

} // namespace nexomap
