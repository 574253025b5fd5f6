// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/Sphere.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// What a picture covers from pole to pole, radians from the upper pole.
struct PolarExtent
{
    double min = 0.0, max = kPi;             ///< the picture's first and last row
    double valid_min = 0.0, valid_max = kPi; ///< what the source showed; beyond it the rows are filled in
};

/// A panorama from decoded arrays: features, ranges at the features, preview, camera height.
/// @param equirect  BGR, any size, width at least 256, rows covering extent.min to extent.max
/// @param range     empty when the panorama carries none
/// @return nullptr with one line in *error when the picture is unusable
std::unique_ptr<Panorama> buildPanorama(const std::string& id, const cv::Mat3b& equirect,
                                        const PolarExtent& extent, RangeMap range, std::string* error);

} // namespace nexomap
