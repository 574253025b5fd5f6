// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/PanoramaBuilder.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// SIFT (Lowe 2004) on six rectified cube faces of 96 degrees, each keypoint kept on the face whose axis is
/// nearest, descriptors as root-SIFT (Arandjelovic and Zisserman 2012). Ranges are left at 0.
/// @param gray  equirectangular, rows covering extent.min to extent.max
Features extractFeatures(const cv::Mat1b& gray, const PolarExtent& extent);

/// Root-SIFT of one descriptor of 128 non-negative values, in bytes of at most 127.
void rootSift(const float* sift, std::uint8_t* bytes);

} // namespace nexomap
