// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The true floor plan of a made-up building, as its floorplan.json has it.

#pragma once

#include <Eigen/Core>
#include <QString>

#include <optional>
#include <vector>

/// A convex outline, counter-clockwise, metres.
using PlanOutline = std::vector<Eigen::Vector2d>;

struct TrueRoom
{
    Eigen::Vector2d low, high; ///< wall faces

    bool contains(const Eigen::Vector2d& point, double beyond = 0.0) const
    {
        return (point.array() >= low.array() - beyond).all() &&
               (point.array() <= high.array() + beyond).all();
    }
};

struct TrueStorey
{
    double floor = 0.0;
    std::optional<double> ceiling; ///< empty outdoors
    double cut = 1.2;              ///< height of the cut
    std::vector<TrueRoom> rooms;
    std::vector<PlanOutline> walls, openings, furniture;

    const TrueRoom* roomAt(const Eigen::Vector2d& point, double beyond = 0.0) const;
};

struct FloorPlanFile
{
    std::vector<TrueStorey> storeys;
    QString error; ///< empty when the file was read whole
};

FloorPlanFile readFloorPlan(const QString& path);

/// Distance from an outline, 0 within it.
double distanceTo(const PlanOutline& outline, const Eigen::Vector2d& point);
/// Whether any of them lies within `reach` of the point.
bool anyNear(const std::vector<PlanOutline>& outlines, const Eigen::Vector2d& point, double reach);
