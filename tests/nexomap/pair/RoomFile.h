// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/nexomap/pair/MadeUpRoom.h"
#include "tests/support/PnoParts.h"

/// A picture's bytes as ".jpg" or ".png".
pnotest::Bytes encoded(const cv::Mat& tile, const char* kind);

/// A file whose level 8 shows the room, and whose depth tiles, 4 x 4 samples to a cell, hold its ranges.
/// @param shot  2048 pixels wide
pnotest::PnoOptions roomFile(const MadeUpRoom::Shot& shot, bool lidar);
