// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/PointCloud.h"
#include "views/cloud/PointSet.h"

#include <optional>

/// The thinned cloud that keeps a cheap draw available.
namespace cloud {

constexpr int kMostPointsPerCell = 5;
/// A counter of one byte each: 1 GiB.
constexpr std::uint64_t kMostGridCells = std::uint64_t(1) << 30;

/// Cells of one horizontal step each, as the header counts them; nullopt for more than `kMostGridCells`.
std::optional<std::uint64_t> gridCells(const Header& header);

/// The first five points of each cell, in the order of the file. A point beyond the grid's last cell belongs
/// to none and is left out.
/// @return nullopt when the grid has too many cells or memory does not suffice
std::optional<PointSet> thinnedPoints(const PointCloud& cloud);

} // namespace cloud
