// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/PointCloud.h"

/// How neighbouring points follow each other in a made-up cloud's file.
enum class PointOrder
{
    AlongACurve, ///< as our own merge writes them: along a space-filling curve
    Shuffled,    ///< no order at all
};

/// A made-up floor with walls: 100 x 50 m in cells of 1 cm, one point a cell on the floor, walls of as many
/// points as are left.
cloud::PointCloud sampleCloud(std::size_t points, PointOrder order);
