// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/PackedRange.h"

#include <Eigen/Core>
#include <opencv2/core.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nexomap {

/// Picture features of one panorama, as parallel arrays: feature i stands at index i of each.
struct Features
{
    std::vector<std::uint8_t> descriptors; ///< 128 bytes each, root-SIFT scaled to at most 127 a byte
    std::vector<Eigen::Vector3f> bearings; ///< unit vectors, panorama frame
    std::vector<float> ranges_m;           ///< metres along the bearing; 0: none, or on a depth edge
    std::vector<float> scales;             ///< radians, the keypoint's size on the sphere
    std::vector<float> angles_rad;         ///< keypoint orientation against the local vertical

    std::size_t size() const { return bearings.size(); }
};

/// Range picture of the full sphere, columns from azimuth +pi to -pi, rows from the upper pole.
struct RangeMap
{
    cv::Mat1f range_m;  ///< 2048 x 1024; 0: no return
    cv::Mat1b edge;     ///< 255 where depths jump within the cell
    float unit_m = 0.f; ///< metres per step that the samples came in; 0: unknown
    /// In place of both pictures while the map is not worked on.
    std::shared_ptr<const PackedRange> packed;

    bool empty() const { return range_m.empty() && !packed; }
    cv::Size size() const { return packed ? packed->size() : range_m.size(); }
    /// Metres at one cell, packed or not; 0: no return.
    float cell(int row, int column) const
    {
        return packed ? packed->range(row, column) : range_m(row, column);
    }
    /// Metres along the unit vector; 0 without a return or without a map.
    float at(const Eigen::Vector3f& bearing) const;
};

/// What the library keeps of one panorama. No full-size picture stays in memory.
struct Panorama
{
    std::string id;   ///< identity text
    std::string path; ///< local 8-bit encoding
    Features features;
    RangeMap range;
    cv::Mat3b preview;            ///< 1024 x 512, BGR, for match pictures
    std::string remark;           ///< what is wrong with its lidar, and done about it; mostly empty
    double camera_height_m = 0.0; ///< above the floor, by the range map; 0: unknown
    /// Azimuth in [0, pi/2) along which the building's level edges run, by the picture; none: nothing stands out.
    std::optional<double> walls_azimuth;

    bool metric() const { return !range.empty(); }
};

/// Reads a panorama file and extracts its features. Deterministic.
/// @return nullptr on failure, with one line in *error
std::unique_ptr<Panorama> loadPanorama(const std::string& path, std::string* error);

} // namespace nexomap
