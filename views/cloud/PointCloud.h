// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

/// A merged point cloud as its file holds it: a header and nine byte planes. Plain numbers, no drawing.
namespace cloud {

constexpr std::size_t kHeaderBytes = 56;
constexpr std::size_t kPlanes = 9;
constexpr unsigned kQuantisedValues = 65536; ///< a quantised coordinate has 16 bits

/// The first 56 bytes of a file, little-endian, kept as they are, so that fields unknown here go back
/// unchanged when the cloud is written again.
struct Header
{
    std::array<std::uint8_t, kHeaderBytes> bytes{};

    std::uint32_t field(std::size_t offset) const;
    void setField(std::size_t offset, std::uint32_t value);

    std::uint32_t originX() const { return field(0); } ///< in 0.0001 scene units; is subtracted
    std::uint32_t originY() const { return field(4); }
    std::uint32_t originZ() const { return field(8); }
    std::uint32_t unitDivisor() const { return field(12); }
    std::uint32_t gridWidth() const { return field(20); } ///< cells of the base resolution
    std::uint32_t gridHeight() const { return field(24); }
    std::uint32_t refinement() const { return field(32); }
    std::uint32_t refinementZ() const { return field(36); }
    std::uint32_t points() const { return field(48); }
    std::uint32_t dataBytes() const { return field(52); }

    /// @param points  at most 2^32 / 9, so that their bytes can be counted
    void setPoints(std::uint32_t points);

    /// Cells of the base resolution per scene unit: 100 / unit divisor, whole; 0 where that is no resolution.
    std::uint32_t baseResolution() const { return unitDivisor() == 0 ? 0 : 100 / unitDivisor(); }
};

/// What a quantised coordinate means in the scene.
struct Quantisation
{
    double steps = 1.0;                                    ///< horizontal steps per scene unit
    double steps_z = 1.0;                                  ///< vertical ones
    double origin_x = 0.0, origin_y = 0.0, origin_z = 0.0; ///< scene units; what is subtracted

    Quantisation() = default;
    /// @param header  with a base resolution and refinements above 0
    explicit Quantisation(const Header& header);

    double x(unsigned quantised) const { return (quantised + 0.5) / steps - origin_x; }
    double y(unsigned quantised) const { return (quantised + 0.5) / steps - origin_y; }
    double z(unsigned quantised) const { return (quantised + 0.5) / steps_z - origin_z; }
};

/// Points in the order of their file, plane by plane: x low and high byte, y, z, blue, green, red. Moves,
/// does not copy.
class PointCloud
{
public:
    PointCloud() = default;

    /// Room for the points that the header counts, content not set.
    /// @return false, and the cloud as it was, when memory does not suffice
    [[nodiscard]] bool allocate(const Header& header);

    const Header& header() const { return m_header; }
    std::size_t size() const { return m_size; }
    std::size_t dataBytes() const { return kPlanes * size(); }

    const std::uint8_t* data() const { return m_data.get(); }
    std::uint8_t* data() { return m_data.get(); }
    const std::uint8_t* plane(std::size_t number) const { return data() + number * size(); }
    std::uint8_t* plane(std::size_t number) { return data() + number * size(); }

    unsigned x(std::size_t point) const { return coordinate(0, point); }
    unsigned y(std::size_t point) const { return coordinate(2, point); }
    unsigned z(std::size_t point) const { return coordinate(4, point); }
    std::uint8_t blue(std::size_t point) const { return plane(6)[point]; }
    std::uint8_t green(std::size_t point) const { return plane(7)[point]; }
    std::uint8_t red(std::size_t point) const { return plane(8)[point]; }

private:
    unsigned coordinate(std::size_t lowPlane, std::size_t point) const
    {
        return plane(lowPlane)[point] + 256u * plane(lowPlane + 1)[point];
    }

    Header m_header;
    std::size_t m_size = 0; ///< the header's, at hand
    std::unique_ptr<std::uint8_t[]> m_data;
};

} // namespace cloud
