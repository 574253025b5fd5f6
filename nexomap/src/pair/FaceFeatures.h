// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/PanoramaBuilder.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// SIFT (Lowe 2004) on six rectified cube faces that look along the walls of the building, descriptors as
/// root-SIFT (Arandjelovic and Zisserman 2012). What stands between 45 and 62 degrees from a face's axis is
/// described in that face, too, since its wall may be the one that is seen there: a place then has two or
/// three features, which samePlace() tells. Ranges are left at 0.
/// @param gray  equirectangular, rows covering extent.min to extent.max
Features extractFeatures(const cv::Mat1b& gray, const PolarExtent& extent);
/// With the first face looking along this azimuth, radians.
Features extractFeatures(const cv::Mat1b& gray, const PolarExtent& extent, double yaw);

/// Root-SIFT of one descriptor of 128 non-negative values, in bytes of at most 127.
void rootSift(const float* sift, std::uint8_t* bytes);

} // namespace nexomap
