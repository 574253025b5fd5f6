// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Panorama.h"

namespace nexomap {

constexpr int kOutlineFeatures = 1024;

/// The features of the largest scale, without their ranges' pictures: what survives between distant stations,
/// and enough to tell which panoramas are worth a full comparison (preemptive matching, Wu 2013).
/// @param count  at most so many; ties by place in `features`
Features outlineOf(const Features& features, int count = kOutlineFeatures);

/// How many features two outlines share, by mutual nearest neighbours that stand alike. Hand them in the
/// order of their panoramas' ids: the ratio test looks one way.
int likeness(const Features& outline_0, const Features& outline_1);

} // namespace nexomap
