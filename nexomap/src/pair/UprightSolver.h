// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/RigidPose.h"

#include <array>
#include <vector>

namespace nexomap {

/// All relative poses of two upright panoramas, R = Rz(yaw) and t of length 1 up to its sign, that satisfy
/// a . (t x (R b)) = 0 for three pairs of bearings. The three constraints are linear in t; their determinant
/// is a trigonometric polynomial of degree three in the yaw, whose roots are found by sampling and bisection
/// (Fraundorfer, Tanskanen and Pollefeys 2010 for the constraint).
/// @param a  bearings in panorama 0
/// @param b  bearings in panorama 1
std::vector<RigidPose> solveUpright(const std::array<Eigen::Vector3d, 3>& a,
                                    const std::array<Eigen::Vector3d, 3>& b);

} // namespace nexomap
