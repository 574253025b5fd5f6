// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PointFiles.h"

#include "nexomap/src/Failure.h"
#include "nexomap/src/merge/PtsText.h"

#include <array>
#include <cmath>
#include <cstring>

namespace nexomap {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece = 1 << 14; // points formatted between two writes

/// Counts what comes through: a count line that lies makes readers misread the whole file.
class Promise
{
public:
    explicit Promise(std::uint64_t points)
        : m_left(points)
    {}
    void take(std::size_t count)
    {
        if (count > m_left) throw Failure(NEXOMAP_INTERNAL, "a cloud gives more points than it says");
        m_left -= count;
    }
    void keep() const
    {
        if (m_left != 0) throw Failure(NEXOMAP_INTERNAL, "a cloud gives fewer points than it says");
    }

private:
    std::uint64_t m_left;
};

/// Opens the file, writes the count and lets `put(to, point)` format every point in at most `most` bytes.
template <class Point, class Blocks, class Put>
PendingFile writePoints(const fs::path& path, const std::vector<char>& head, const Blocks& blocks,
                        std::size_t most, const Put& put)
{
    PendingFile file(path);
    file.write(head.data(), head.size());
    Promise promise(blocks.size());
    std::vector<char> piece(kPiece * most);
    blocks.forEachBlock([&](const Point* points, std::size_t count) {
        promise.take(count);
        for (std::size_t from = 0; from < count; from += kPiece) {
            char* to = piece.data();
            for (std::size_t k = from; k < std::min(count, from + kPiece); ++k)
                to = put(to, points[k]);
            file.write(piece.data(), std::size_t(to - piece.data()));
        }
    });
    promise.keep();
    file.close();
    return file;
}

/// Middles of the cells along an axis of the grid in units of 0.0001 m. Whole numbers where the cells are so
/// many units wide that their halves are whole, as they are with all grids of the merge.
class GridAxis
{
public:
    GridAxis(const CloudGrid& grid, std::size_t axis)
        : m_steps(axis < 2 ? grid.stepsPerMetre() : grid.stepsPerMetreZ())
        , m_half(std::int64_t(kHalfMetre / m_steps))
        , m_origin(grid.origin[axis])
        , m_whole(double(m_half) * m_steps == kHalfMetre)
    {}
    std::int64_t tenThousandths(std::uint16_t cell) const
    {
        if (m_whole) return (2 * std::int64_t(cell) + 1) * m_half - m_origin;
        return std::llround((cell + 0.5) * 2.0 * kHalfMetre / m_steps) - m_origin;
    }

private:
    static constexpr double kHalfMetre = 5000.0;
    double m_steps;
    std::int64_t m_half, m_origin;
    bool m_whole;
};

std::vector<char> countLine(std::uint64_t points)
{
    const std::string line = std::to_string(points) + "\n";
    return {line.begin(), line.end()};
}

char* putLittle(char* to, std::uint64_t bits, std::size_t bytes)
{
    for (std::size_t k = 0; k < bytes; ++k)
        *to++ = char(bits >> (8 * k));
    return to;
}

char* putReal(char* to, float value)
{
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return putLittle(to, bits, sizeof bits);
}

} // namespace

PendingFile writePts(const fs::path& path, const SurfaceBlocks& surface)
{
    const PtsText text;
    return writePoints<SurfacePoint>(path, countLine(surface.size()), surface, PtsText::kMostBytes,
                                     [&](char* to, const SurfacePoint& p) {
                                         for (const float metres : {p.x, p.y, p.z})
                                             to = text.putMetres(to, double(metres));
                                         return text.putColour(to, p.red, p.green, p.blue);
                                     });
}

PendingFile writePts(const fs::path& path, const CloudBlocks& cloud)
{
    const PtsText text;
    const std::array<GridAxis, 3> axes{GridAxis(cloud.grid(), 0), GridAxis(cloud.grid(), 1),
                                       GridAxis(cloud.grid(), 2)};
    return writePoints<CloudPoint>(path, countLine(cloud.size()), cloud, PtsText::kMostBytes,
                                   [&](char* to, const CloudPoint& p) {
                                       for (std::size_t k = 0; k < axes.size(); ++k)
                                           to = text.putTenThousandths(to, axes[k].tenThousandths(p.at[k]));
                                       return text.putColour(to, p.red, p.green, p.blue);
                                   });
}

PendingFile writePointBinary(const fs::path& path, const SurfaceBlocks& surface)
{
    std::vector<char> head(12);
    putLittle(std::copy_n("NXB1", 4, head.data()), surface.size(), 8);
    return writePoints<SurfacePoint>(path, head, surface, 16, [](char* to, const SurfacePoint& p) {
        for (const float metres : {p.x, p.y, p.z})
            to = putReal(to, metres);
        for (const std::uint8_t byte : {p.red, p.green, p.blue, std::uint8_t(255)})
            *to++ = char(byte);
        return to;
    });
}

} // namespace nexomap
