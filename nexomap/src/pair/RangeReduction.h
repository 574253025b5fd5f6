// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Panorama.h"

namespace nexomap {

constexpr int kRangeWidth = 2048, kRangeHeight = 1024;

/// Median of the valid samples of each square cell, and the flag of a depth jump inside it.
/// @param raw      16-bit range samples, 0: no return; sides divisible by cell
/// @param unit_m   metres per step
/// @param cell     samples along a cell's side, 1 to 8
/// @param range_m  raw.size() / cell, written
/// @param edge     as range_m, written
void reduceRangeCells(const cv::Mat1w& raw, float unit_m, int cell, cv::Mat1f range_m, cv::Mat1b edge);

/// The library's range map from a full-sphere range picture of any size (2:1).
RangeMap rangeMapFromPicture(const cv::Mat1w& raw, float unit_m);

/// Range along a direction, interpolated on the local surface: on planes one over the range is linear across
/// the picture, so a line is fitted to it over 5 x 5 cells without those on a depth edge.
/// @return metres; 0 without a return, on an edge, or where the surface is not smooth
float surfaceRange(const RangeMap& map, const Eigen::Vector3d& direction);

/// Height of the camera above the floor: the strongest level surface below the horizon. 0 without one.
/// @param up  the vertical in the map's frame, unit vector
double cameraHeight(const RangeMap& map, const Eigen::Vector3d& up = Eigen::Vector3d::UnitZ());

} // namespace nexomap
