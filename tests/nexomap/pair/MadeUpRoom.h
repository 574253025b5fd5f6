// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/PanoramaBuilder.h"
#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/Panorama.h"

#include <cstdint>

/// A small world of boxes with painted sides, ray-cast: every pixel's range and place on the wall are known.
struct MadeUpRoom
{
    struct Box
    {
        Eigen::Vector3d low, high;
    };
    std::uint32_t seed = 1;
    Box walls{{0, 0, 0}, {6, 4.5, 2.7}}; ///< seen from inside
    std::vector<Box> furniture{{{1.0, 0.0, 0.0}, {2.2, 0.5, 1.8}},
                               {{4.0, 3.6, 0.0}, {5.5, 4.5, 0.8}},
                               {{2.8, 1.8, 0.0}, {3.6, 2.5, 0.75}}};
    double blankness = 0.0; ///< 1: bare walls

    struct Shot
    {
        cv::Mat3b picture;
        cv::Mat1w range_mm;
    };
    /// What a camera at the pose (world from panorama) records.
    /// @param noise_m  standard deviation along the ray
    Shot shoot(const nexomap::RigidPose& world_from_pano, int width, double noise_m = 0.0) const;
};

/// Painted tiles of many grey levels over cloudy stains, BGR: corners at several sizes.
/// @param u, v       metres on the surface
/// @param key        of the pattern
/// @param blankness  1: bare
cv::Vec3b paintAt(double u, double v, std::uint32_t key, double blankness);

/// Camera at a place, turned by the heading, leaning by two small angles about x and y; radians.
nexomap::RigidPose standAt(double x, double y, double z, double heading, double lean_x = 0.0,
                           double lean_y = 0.0);

/// The panorama that the library would load. Fails the test on error.
std::unique_ptr<nexomap::Panorama> panoramaOf(const std::string& id, const MadeUpRoom::Shot& shot,
                                              bool with_range);
