// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What a black-and-white plan is worth beside the true walls.

#pragma once

#include "companions/batch/truth/CloudScore.h"

#include <Eigen/Geometry>
#include <QImage>

/// Where the plan's pixels lie in the true world: (x, y) = rotation-and-scale * (column, -row) + shift,
/// columns and rows counted in pixels from the upper left corner, a pixel's centre at a half.
struct PlanFrame
{
    Eigen::Affine2d world_from_plan = Eigen::Affine2d::Identity();
    double pixel_m = 0.0;

    Eigen::Vector2d worldOf(double column, double row) const
    {
        return world_from_plan * Eigen::Vector2d(column, -row);
    }
};

/// The similarity that carries the stations' pixels to their places, by least squares.
/// @param pixels, places  the same at least two stations; pixels by column and row, places in metres
PlanFrame planFrame(const std::vector<Eigen::Vector2i>& pixels, const std::vector<Eigen::Vector2d>& places);

struct PlanScore
{
    Share precision; ///< black pixels within `kNear_m` of a true wall; those at doors and windows count
                     ///< neither way, those in the margin about the building (scale bar) neither
    long long onFurniture = 0; ///< of the false ones
    Share recall; ///< places on wall faces in rooms that a station sees at some height, with a black pixel
                  ///< that near
    Share recallOfAll; ///< of all wall faces in rooms

    static constexpr double kNear_m = 0.05;
};

PlanScore scorePlan(const QImage& plan, const PlanFrame& frame, const TrueStorey& storey,
                    const ScannerSight& sight);
