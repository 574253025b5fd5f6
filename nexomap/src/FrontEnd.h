// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Sphere.h"
#include "nexomap/src/PairPose.h"
#include "nexomap/src/Panorama.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace nexomap {

/// A panorama's colours, columns from azimuth +pi to -pi, rows between two polar angles.
struct ColourPicture
{
    cv::Mat3b pixels; ///< BGR
    double polar_min = 0.0, polar_max = kPi;
};

/// The full sphere of a panorama's ranges, columns from azimuth +pi to -pi, rows from the upper pole.
struct RangePicture
{
    cv::Mat1w steps;     ///< range along the ray in steps of unit_m; 0: no return
    float unit_m = 0.0f; ///< metres

    bool empty() const { return steps.empty(); }
};

/// Where panoramas and their relative poses come from. The library reads panorama files; tests hand in
/// made-up ones. All may be called from several threads at once.
struct FrontEnd
{
    /// Identity text of a panorama file, without reading its pictures; nullopt with one line in *error.
    std::function<std::optional<std::string>(const std::string& path, std::string* error)> identify;
    /// The whole panorama; null with one line in *error.
    std::function<std::shared_ptr<const Panorama>(const std::string& path, std::string* error)> load;
    std::function<std::optional<PairPose>(const Panorama&, const Panorama&)> match;
    /// Colours at about 4096 pixels of width; empty: there are none better than the panorama's preview.
    std::function<ColourPicture(const Panorama&)> colours;
    /// Ranges in full resolution, read anew; empty with one line in *error when the file is gone, holds
    /// another panorama, has no lidar or too little of it can be read. May be null: the small maps are all
    /// there is.
    std::function<RangePicture(const std::string& path, const std::string& id, std::string* error)> ranges;
    /// Relative pose by the range maps alone, slower than `match`; for what the pictures leave apart. May be
    /// null.
    std::function<std::optional<PairPose>(const Panorama&, const Panorama&)> align;
    /// How much two panoramas have in common at first sight, by their outlines in the order of their ids;
    /// large tours compare in full only those that are alike. May be null: all pairs are compared in full.
    std::function<int(const Features&, const Features&)> likeness;
};

/// Reads panorama files and matches their pictures and ranges.
FrontEnd panoramaFileFrontEnd();

} // namespace nexomap
