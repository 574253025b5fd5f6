// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/PointCloud.h"

#include "views/cloud/LargePages.h"

#include <new>

namespace cloud {
namespace {
constexpr double kOriginUnit = 0.0001;
}

std::uint32_t Header::field(std::size_t offset) const
{
    std::uint32_t value = 0;
    for (std::size_t byte = 0; byte < 4; ++byte)
        value |= std::uint32_t(bytes[offset + byte]) << (8 * byte);
    return value;
}

void Header::setField(std::size_t offset, std::uint32_t value)
{
    for (std::size_t byte = 0; byte < 4; ++byte)
        bytes[offset + byte] = static_cast<std::uint8_t>(value >> (8 * byte));
}

void Header::setPoints(std::uint32_t points)
{
    setField(48, points);
    setField(52, static_cast<std::uint32_t>(kPlanes * points));
}

// The products are taken as real numbers: whole ones of 32 bits would wrap for a hostile refinement.
Quantisation::Quantisation(const Header& header)
    : steps(double(header.refinement()) * header.baseResolution())
    , steps_z(double(header.refinementZ()) * header.baseResolution())
    , origin_x(header.originX() * kOriginUnit)
    , origin_y(header.originY() * kOriginUnit)
    , origin_z(header.originZ() * kOriginUnit)
{}

bool PointCloud::allocate(const Header& header)
{
    // Not value-initialised: the bytes are written next, and clearing them first would be a pass of its own.
    std::unique_ptr<std::uint8_t[]> data(new (std::nothrow) std::uint8_t[kPlanes * header.points()]);
    if (!data) return false;
    preferLargePages(data.get(), kPlanes * header.points());
    m_header = header;
    m_size = header.points();
    m_data = std::move(data);
    return true;
}

} // namespace cloud
