// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudFile.h"

#include <cstdint>
#include <functional>

namespace nexomap {

/// A merged cloud that may be larger than memory: its points come block by block, always in the same order,
/// which is the order of the cloud's files. Reading twice gives the same points.
class CloudBlocks
{
public:
    using Take = std::function<void(const CloudPoint* points, std::size_t count)>;

    virtual ~CloudBlocks() = default;

    virtual const CloudGrid& grid() const = 0;
    virtual std::uint64_t size() const = 0; ///< points of all blocks together; below 2^32 / 9
    /// @throws Failure(NEXOMAP_CANNOT_WRITE) when what was laid aside on disk cannot be read back
    virtual void forEachBlock(const Take& take) const = 0;
};

/// A cloud held in memory.
class CloudInMemory : public CloudBlocks
{
public:
    CloudInMemory(const CloudGrid& grid, std::vector<CloudPoint> points)
        : m_grid(grid)
        , m_points(std::move(points))
    {}
    const CloudGrid& grid() const override { return m_grid; }
    std::uint64_t size() const override { return m_points.size(); }
    void forEachBlock(const Take& take) const override { take(m_points.data(), m_points.size()); }

private:
    CloudGrid m_grid;
    std::vector<CloudPoint> m_points;
};

/// A measured point before the cells of a cloud take it in.
struct SurfacePoint
{
    float x = 0.0f, y = 0.0f, z = 0.0f; ///< world, metres
    std::uint8_t red = 0, green = 0, blue = 0;
};

/// Every kept measurement of a merge, block by block, as `CloudBlocks` gives the cells.
class SurfaceBlocks
{
public:
    using Take = std::function<void(const SurfacePoint* points, std::size_t count)>;

    virtual ~SurfaceBlocks() = default;

    virtual std::uint64_t size() const = 0;
    virtual void forEachBlock(const Take& take) const = 0;
};

} // namespace nexomap
