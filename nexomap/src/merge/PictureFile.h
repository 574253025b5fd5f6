// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/PendingFile.h"
#include "nexomap/src/merge/PlanRaster.h"

#include <opencv2/core.hpp>

namespace nexomap {

/// PNG of a raster's picture. Says in the text chunk "Plan" where the world lies in it: eight numbers a to h
/// with column = a x + b y + c z + d, row = e x + f y + g z + h.
/// @param picture  8-bit, one channel (grey) or three (BGR); `one_bit`: only 0 and 255, stored as bits
/// @return the file, not yet under its name
/// @throws Failure(NEXOMAP_CANNOT_WRITE)
[[nodiscard]] PendingFile writePicture(const std::filesystem::path& path, const cv::Mat& picture,
                                       const PlanRaster& raster, bool one_bit = false);

} // namespace nexomap
