// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

/// Draco's lossless point cloud: 16-bit coordinates and three colour bytes as whole numbers. What it takes to
/// bring points into its shape and out of it is no part of its times.
class DracoPeer
{
public:
    /// @param planes  nine planes of `points` bytes
    DracoPeer(const std::uint8_t* planes, std::size_t points);
    ~DracoPeer();

    /// @param kd_tree  its smaller way, which loses the points' order; otherwise their order is kept
    /// @param speed    0 smallest, 10 fastest
    /// @return bytes; 0 on failure
    std::size_t encode(bool kd_tree, int speed);
    /// What was encoded last. @return points; 0 on failure
    std::size_t decode() const;

private:
    struct Cloud;
    std::unique_ptr<Cloud> m_cloud;
};
