// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/CloudFile.h"

#include "nexomap/src/files/ByteStream.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {
constexpr double kOriginUnit_m = 0.0001;
constexpr double kMostSteps = 65000.0;
constexpr double kMostCells = 1e8; // the view keeps a byte per cell
} // namespace

Eigen::Vector3d CloudGrid::originMetres() const
{
    return Eigen::Vector3d(origin[0], origin[1], origin[2]) * kOriginUnit_m;
}

CloudGrid gridFor(const Eigen::Vector3d& low, const Eigen::Vector3d& high, int cell_cm)
{
    CloudGrid grid;
    // The format subtracts its origin as an unsigned number, so a box cannot begin beyond the world's origin:
    // there the origin is 0 and the numbers grow.
    for (int axis = 0; axis < 3; ++axis)
        grid.origin[axis] = std::uint32_t(std::ceil(std::max(0.0, -low[axis]) / kOriginUnit_m));
    const Eigen::Vector3d size = high + grid.originMetres();
    // Only divisors of 100 give the steps they promise: the view divides whole numbers.
    for (const int divisor : {1, 2, 5, 10, 20, 50, 100}) {
        grid.unit_divisor = std::uint32_t(divisor);
        const double steps = grid.stepsPerMetre();
        const bool fits = size.maxCoeff() * steps <= kMostSteps &&
                          (size.x() * steps + 2) * (size.y() * steps + 2) <= kMostCells;
        if (divisor >= cell_cm && fits) break;
    }
    grid.width = std::uint32_t(std::ceil(size.x() * grid.stepsPerMetre())) + 1;
    grid.height = std::uint32_t(std::ceil(size.y() * grid.stepsPerMetre())) + 1;
    return grid;
}

Bytes encodeCloud(const CloudGrid& grid, const std::vector<CloudPoint>& points)
{
    ByteWriter out;
    for (const std::uint32_t origin : grid.origin)
        out.put(origin);
    out.put(grid.unit_divisor);
    out.put(std::uint32_t(0));
    out.put(grid.width);
    out.put(grid.height);
    out.put(std::uint32_t(0));
    out.put(grid.refinement);
    out.put(grid.refinement_z);
    out.put(std::uint64_t(0));
    const std::size_t n = points.size();
    out.put(std::uint32_t(n));
    out.put(std::uint32_t(9 * n));
    out.bytes.resize(kCloudHeaderBytes + 9 * n);
    std::uint8_t* planes = out.bytes.data() + kCloudHeaderBytes;
    for (std::size_t i = 0; i < n; ++i) {
        const CloudPoint& point = points[i];
        for (int axis = 0; axis < 3; ++axis) {
            planes[2 * axis * n + i] = std::uint8_t(point.at[axis]);
            planes[(2 * axis + 1) * n + i] = std::uint8_t(point.at[axis] >> 8);
        }
        planes[6 * n + i] = point.blue;
        planes[7 * n + i] = point.green;
        planes[8 * n + i] = point.red;
    }
    return out.bytes;
}

std::optional<std::size_t> cloudPoints(const Bytes& cloud)
{
    if (cloud.size() < kCloudHeaderBytes) return std::nullopt;
    ByteReader in(cloud.data() + 48, 8);
    const std::uint64_t points = in.get<std::uint32_t>();
    const std::uint64_t bytes = in.get<std::uint32_t>();
    if (bytes != 9 * points || cloud.size() != kCloudHeaderBytes + bytes) return std::nullopt;
    return std::size_t(points);
}

} // namespace nexomap
