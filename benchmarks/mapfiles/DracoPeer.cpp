// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "benchmarks/mapfiles/DracoPeer.h"

#include <draco/compression/decode.h>
#include <draco/compression/encode.h>
#include <draco/point_cloud/point_cloud_builder.h>

#include <array>

struct DracoPeer::Cloud
{
    std::unique_ptr<draco::PointCloud> points;
    draco::EncoderBuffer packed;
};

DracoPeer::DracoPeer(const std::uint8_t* planes, std::size_t points)
    : m_cloud(std::make_unique<Cloud>())
{
    draco::PointCloudBuilder builder;
    builder.Start(draco::PointIndex::ValueType(points));
    const int at = builder.AddAttribute(draco::GeometryAttribute::POSITION, 3, draco::DT_UINT32);
    const int colour = builder.AddAttribute(draco::GeometryAttribute::COLOR, 3, draco::DT_UINT8);
    for (std::size_t i = 0; i < points; ++i) {
        std::array<std::uint32_t, 3> place;
        for (std::size_t axis = 0; axis < 3; ++axis)
            place[axis] =
                std::uint32_t(planes[2 * axis * points + i] | planes[(2 * axis + 1) * points + i] << 8);
        const std::array<std::uint8_t, 3> bgr{planes[6 * points + i], planes[7 * points + i],
                                              planes[8 * points + i]};
        const draco::PointIndex index{draco::PointIndex::ValueType(i)};
        builder.SetAttributeValueForPoint(at, index, place.data());
        builder.SetAttributeValueForPoint(colour, index, bgr.data());
    }
    m_cloud->points = builder.Finalize(false);
}

DracoPeer::~DracoPeer() = default;

std::size_t DracoPeer::encode(bool kd_tree, int speed)
{
    if (!m_cloud->points) return 0;
    draco::Encoder encoder;
    encoder.SetSpeedOptions(speed, speed);
    encoder.SetEncodingMethod(kd_tree ? draco::POINT_CLOUD_KD_TREE_ENCODING
                                      : draco::POINT_CLOUD_SEQUENTIAL_ENCODING);
    m_cloud->packed.Clear();
    return encoder.EncodePointCloudToBuffer(*m_cloud->points, &m_cloud->packed).ok() ? m_cloud->packed.size()
                                                                                     : 0;
}

std::size_t DracoPeer::decode() const
{
    draco::DecoderBuffer buffer;
    buffer.Init(m_cloud->packed.data(), m_cloud->packed.size());
    draco::Decoder decoder;
    const auto decoded = decoder.DecodePointCloudFromBuffer(&buffer);
    return decoded.ok() ? decoded.value()->num_points() : 0;
}
