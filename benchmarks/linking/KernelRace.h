// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Panorama.h"

/// Times every matching kernel of this processor against OpenCV's brute force on the same descriptors and
/// prints the ratios. @return false when a result differs
bool raceKernels(const nexomap::Features& features_0, const nexomap::Features& features_1);
