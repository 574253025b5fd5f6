// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What numbers that come from outside may say: beyond these bounds squares overflow, and nothing ends any
// more.
#pragma once

#include <Eigen/Core>

#include <cmath>

namespace nexomap {

constexpr double kWidest_m = 1e6;           ///< of any place or length
constexpr double kMostInformation = 1e16;   ///< of any element: a hundred millionth of a radian or metre
constexpr double kShortestDirection = 1e-6; ///< of a direction, which should have length 1
constexpr double kMostLogRatio = 20.0;      ///< of two lengths

/// False for numbers that are none, too.
inline bool isLength(double metres)
{
    return std::abs(metres) <= kWidest_m;
}

template <class Vector>
bool isPlace(const Eigen::MatrixBase<Vector>& metres)
{
    return metres.allFinite() && metres.cwiseAbs().maxCoeff() <= kWidest_m;
}

} // namespace nexomap
