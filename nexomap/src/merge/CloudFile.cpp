// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/CloudFile.h"

#include "nexomap/src/Failure.h"
#include "nexomap/src/files/ByteStream.h"
#include "nexomap/src/merge/CloudBlocks.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {
constexpr double kOriginUnit_m = 0.0001;
constexpr double kMostSteps = 65000.0;
constexpr double kMostCells = 1e8; // the view keeps a byte per cell
constexpr std::size_t kPlanes = 9;
constexpr std::size_t kPiece = 1 << 18;

std::vector<std::uint8_t> header(const CloudGrid& grid, std::uint32_t points)
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
    out.put(points);
    out.put(std::uint32_t(kPlanes * points));
    return out.bytes;
}

/// The pieces of the nine planes that are not on the disk yet.
class PlaneBuffers
{
public:
    PlaneBuffers(PendingFile& file, std::uint64_t points)
        : m_file(file)
        , m_points(points)
        , m_pieces(kPlanes * kPiece)
    {}
    void put(const CloudPoint& point)
    {
        std::uint8_t* at = m_pieces.data() + m_held;
        for (const std::uint16_t number : point.at) {
            *at = std::uint8_t(number);
            at[kPiece] = std::uint8_t(number >> 8);
            at += 2 * kPiece;
        }
        *at = point.blue;
        at[kPiece] = point.green;
        at[2 * kPiece] = point.red;
        if (++m_held == kPiece) flush();
    }
    void flush()
    {
        for (std::size_t plane = 0; plane < kPlanes && m_held; ++plane)
            m_file.writeAt(kCloudHeaderBytes + plane * m_points + m_written, &m_pieces[plane * kPiece],
                           m_held);
        m_written += m_held;
        m_held = 0;
    }
    std::uint64_t written() const { return m_written + m_held; }

private:
    PendingFile& m_file;
    std::uint64_t m_points, m_written = 0;
    std::vector<std::uint8_t> m_pieces;
    std::size_t m_held = 0;
};

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

Eigen::Vector3d worldOf(const CloudPoint& point, const CloudGrid& grid)
{
    return Eigen::Vector3d((point.at[0] + 0.5) / grid.stepsPerMetre(),
                           (point.at[1] + 0.5) / grid.stepsPerMetre(),
                           (point.at[2] + 0.5) / grid.stepsPerMetreZ()) -
           grid.originMetres();
}

PendingFile writeCloud(const std::filesystem::path& path, const CloudBlocks& cloud)
{
    const std::uint64_t points = cloud.size();
    if (points > 0xFFFFFFFFu / kPlanes)
        throw Failure(NEXOMAP_CANNOT_WRITE, path.string() + ": too many points for a cloud file");
    PendingFile file(path);
    const std::vector<std::uint8_t> head = header(cloud.grid(), std::uint32_t(points));
    file.write(head.data(), head.size());
    PlaneBuffers planes(file, points);
    cloud.forEachBlock([&](const CloudPoint* block, std::size_t count) {
        // More points than announced would run into the next plane.
        if (count > points - planes.written())
            throw Failure(NEXOMAP_INTERNAL, "a cloud gives more points than it says");
        for (std::size_t i = 0; i < count; ++i)
            planes.put(block[i]);
    });
    planes.flush();
    if (planes.written() != points)
        throw Failure(NEXOMAP_INTERNAL, "a cloud gives fewer points than it says");
    file.close();
    return file;
}

std::optional<std::uint32_t> cloudPoints(const std::uint8_t* header, std::uint64_t file_bytes)
{
    ByteReader in(header + 48, 8);
    const std::uint64_t points = in.get<std::uint32_t>();
    const std::uint64_t bytes = in.get<std::uint32_t>();
    if (bytes != kPlanes * points || file_bytes != kCloudHeaderBytes + bytes) return std::nullopt;
    return std::uint32_t(points);
}

} // namespace nexomap
