// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A compressed cloud as a page can show it: a coloured picture from above, and an even thinning of its
// points.

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace albumd {

/// All lengths in metres of the world; z is up.
struct CloudTopView
{
    int width = 0, height = 0;      ///< of the picture, pixels; the larger side at most 1536
    std::vector<std::uint8_t> rgba; ///< row by row from the top; where no point lies all is 0
    double pixels_per_m = 0;        ///< column = x * pixels_per_m + left, row = top - y * pixels_per_m
    double left = 0, top = 0;

    static constexpr std::size_t kPointBytes = 10;
    std::size_t points = 0;
    std::vector<std::uint8_t> thinned; ///< per point x, y, z as u16 little-endian, red, green, blue, 0
    std::array<double, 3> origin{};    ///< coordinate = number * step + origin
    double step = 0, step_z = 0;
};

/// Reads chunk by chunk: takes some tens of megabytes, whatever the file says.
/// @param path  a compressed cloud file
/// @return nothing when it is no such file, is damaged, empty, or holds more than 64 million points
std::optional<CloudTopView> cloudTopView(const std::string& path);

/// The picture as PNG; empty when memory does not suffice.
std::string encodePng(const CloudTopView& view);

} // namespace albumd
