// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/CloudCamera.h"
#include "views/cloud/PointCloud.h"
#include "views/cloud/PointSet.h"

#include <QRect>

#include <optional>

/// Cutting points out of a cloud by a box drawn over its picture.
namespace cloud {

/// The points whose pixel (`pixelOf`) lies in the box, by QRect::contains, which also takes a box drawn
/// upwards or leftwards.
PointSet pointsInBox(const PointCloud& cloud, const Camera& camera, ViewSize size, const QRect& box);

/// The cloud without these points, the others in their old order; the header counts them.
/// @return nullopt when memory does not suffice
std::optional<PointCloud> without(const PointSet& deleted, const PointCloud& cloud);

} // namespace cloud
