// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// From the floor of the world to the pixels of a plan seen from above.

#pragma once

#include <QPointF>

#include <optional>
#include <utility>
#include <vector>

namespace lumiscope {

/// Turns, scales and shifts. The world's y points up on a plan whose angle is 0, the picture's y down.
struct PlanarFit
{
    double a = 1.0, b = 0.0; ///< scale times cosine and sine of the turn
    QPointF shift;

    /// @param world  metres
    QPointF pixel(QPointF world) const
    {
        return {a * world.x() + b * world.y() + shift.x(), b * world.x() - a * world.y() + shift.y()};
    }

    /// Direction on the picture of a heading in the world: radians from the picture's right, clockwise as the
    /// picture's y points down.
    double pictureAngle(double heading) const;
};

/// Least squares over pairs of (world, pixel), after Umeyama (1991) with the reflection that a view from
/// above has; nothing when all places are one.
std::optional<PlanarFit> fitPlan(const std::vector<std::pair<QPointF, QPointF>>& pairs);

} // namespace lumiscope
