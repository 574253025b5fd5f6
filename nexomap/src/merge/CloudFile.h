// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/PendingFile.h"

#include <Eigen/Core>

#include <array>
#include <optional>
#include <vector>

namespace nexomap {

constexpr std::size_t kCloudHeaderBytes = 56;

/// How a point-cloud file counts: a coordinate is (number + 0.5) / steps_per_m - origin. Horizontally and
/// vertically a number has 16 bits.
struct CloudGrid
{
    std::array<std::uint32_t, 3> origin{}; ///< x, y, z in 0.0001 m; what is subtracted
    std::uint32_t unit_divisor = 1;        ///< base resolution: 100 / unit_divisor steps per metre
    std::uint32_t width = 0, height = 0;   ///< cells at base resolution
    std::uint32_t refinement = 1;          ///< horizontal steps per base step
    std::uint32_t refinement_z = 1;

    double stepsPerMetre() const { return double(refinement) * (100 / unit_divisor); }
    double stepsPerMetreZ() const { return double(refinement_z) * (100 / unit_divisor); }
    Eigen::Vector3d originMetres() const;
};

struct CloudPoint
{
    std::array<std::uint16_t, 3> at{};
    std::uint8_t red = 0, green = 0, blue = 0;
};

/// Grid of cells of `cell_cm` for a box, coarser where 16 bits or the view's limit of cells would not
/// suffice.
/// @param low, high  corners of the box, metres; within 214 km of the world's origin
CloudGrid gridFor(const Eigen::Vector3d& low, const Eigen::Vector3d& high, int cell_cm);

class CloudBlocks;

/// World coordinates of a point of the file.
Eigen::Vector3d worldOf(const CloudPoint& point, const CloudGrid& grid);

/// Header of 56 bytes, then nine planes: x low and high byte, y, z, blue, green, red. Holds a piece of each
/// plane, never the cloud.
/// @return the whole file, not yet under its name
/// @throws Failure(NEXOMAP_CANNOT_WRITE)
[[nodiscard]] PendingFile writeCloud(const std::filesystem::path& path, const CloudBlocks& cloud);

/// Number of points that a header announces, when the file's size is what they take; nullopt otherwise.
/// @param header  kCloudHeaderBytes bytes
std::optional<std::uint32_t> cloudPoints(const std::uint8_t* header, std::uint64_t file_bytes);

} // namespace nexomap
